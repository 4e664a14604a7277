// SPDX-License-Identifier: Apache-2.0
// Stands in for the server and the way there: what is done with them is kept, in order.
//
// recorded_server.cpp defines StartListener and the operations of COMMUNICATION_LAYER that builders
// and commands use, so a program that has it must not use the real ones.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ipc/client_communication_layer_posix.h"
#include "tests/messages/bytes.h"

namespace ventrik::tests {

// The process-wide layer for a scope.
class RecordedServer {
 public:
  RecordedServer();
  ~RecordedServer();
  RecordedServer(const RecordedServer&) = delete;
  RecordedServer& operator=(const RecordedServer&) = delete;

  // What happened since the last call: "send 302", "listen", "name synctool", "disconnect".
  std::vector<std::string> TakeEvents();

  // The blocks sent since the last call, oldest first.
  std::vector<Bytes> TakeSent();

  // Called by each send, before it is kept.
  std::function<void()> onSend;

  // What each send returns.
  int sendResult = 0;

 private:
  COMMUNICATION_LAYER layer_;
};

}  // namespace ventrik::tests
