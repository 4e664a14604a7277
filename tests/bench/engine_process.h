// SPDX-License-Identifier: Apache-2.0
// The bench engine's program as a child process, and a client to talk to it with.
#pragma once

#include <signal.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/outbox.h"
#include "ipc/ipc.h"
#include "messages/encoders.h"
#include "messages/message_layout.h"
#include "tests/support/child_process.h"

namespace ventrik::bench {

using Arguments = std::vector<std::string>;

class EngineProcess {
 public:
  explicit EngineProcess(const Arguments& arguments = {});
  ~EngineProcess();
  EngineProcess(const EngineProcess&) = delete;
  EngineProcess& operator=(const EngineProcess&) = delete;

  // The next line of its standard output without the line end; waits for it.
  std::string ReadLine();

  // Waits for its end, after sending it a signal if `number` isn't 0. Returns the exit status, or
  // minus the signal that ended it.
  int End(int number = SIGTERM);

  // The descriptors that it has open.
  std::size_t Descriptors() const;

  // What is left of its outputs once it has ended.
  std::string output();
  std::string errors();

 private:
  int output_;
  int errors_;
  std::unique_ptr<tests::ChildProcess> process_;
};

// The client half, on one thread: sends at once, receives when told to.
class TestClient {
 public:
  // With `isConnected` false if nobody serves under the name.
  explicit TestClient(const char* name = "navigation") : peer_(ipc_open(name)) {}
  ~TestClient() { Close(); }
  TestClient(const TestClient&) = delete;
  TestClient& operator=(const TestClient&) = delete;

  bool isConnected() const { return peer_ != nullptr; }
  IpcPeer* peer() const { return peer_; }
  void Close();

  // Returns whether the message was taken, end marker and all.
  bool Send(const void* data, std::size_t size) const;
  template <class Request>
  bool Send(const Request& request) const {
    return Send(request.data(), request.size());
  }

  // Waits for the next message.
  Block Receive() const;
  // The same: the message's name, and the value of one of its fields behind a blank if it is given.
  //   "RESP_INIT", "RESP_GET_SPELL m" for "nextAvailableCharacters"
  std::string ReceiveName(const std::string& field = "") const;

 private:
  IpcPeer* peer_;
};

}  // namespace ventrik::bench
