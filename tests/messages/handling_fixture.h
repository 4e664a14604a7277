// SPDX-License-Identifier: Apache-2.0
// A listener's surroundings, for tests that hand it messages: what it shows and sends is kept.
#pragma once

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "console/response_printer.h"
#include "messages/dispatch.h"
#include "messages/overlay_messages.h"
#include "state/process_state.h"
#include "tests/messages/bytes.h"
#include "tests/messages/recorded_server.h"
#include "tests/support/recorded_console.h"

namespace ventrik::tests {

class HandlingTest : public testing::Test {
 protected:
  HandlingTest() { Reset(); }
  ~HandlingTest() override { Reset(); }

  void Handle(const Bytes& message) {
    HandleServerMessage(app_, printer_, message.value.data(), message.value.size());
  }

  // Asked from a thread of its own, because the lock lets its holder in again.
  static bool CommandLockIsFree() {
    bool free = false;
    std::thread([&free] {
      const std::unique_lock<std::recursive_mutex> hold(commandLock, std::try_to_lock);
      free = hold.owns_lock();
    }).join();
    return free;
  }

  RecordedConsole console_;
  RecordedServer server_;
  ResponsePrinter printer_;
  ClientApp app_;

 private:
  static void Reset() {
    waitResponseId = 0;
    holdOutput = 0;
    autoPromptReady = 1;
    weatherOn = 0;
    packagePhase = 0;
    overlayRenderer = nullptr;
  }
};

}  // namespace ventrik::tests
