// SPDX-License-Identifier: Apache-2.0
// The faults that strike handshakes and requests: what a tester's transport has to bear.
#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "bench/fault.h"
#include "ipc/ipc.h"
#include "platform/cancellation.h"

namespace ventrik::bench {

// Receiving thread only, but for Arm.
class RequestFaults {
 public:
  RequestFaults() = default;
  // Gives back what was never answered.
  ~RequestFaults();
  RequestFaults(const RequestFaults&) = delete;
  RequestFaults& operator=(const RequestFaults&) = delete;

  // Takes the faults that strike handshakes and requests. Before the receiving thread starts.
  void Arm(const std::vector<Fault>& faults, std::uint32_t seed);

  // 0, or the error to refuse a handshake with. A slow one waits in here, open to cancellation.
  int Handshake(std::chrono::milliseconds sinceStart);

  // What to do with a message that has come in and is not read yet.
  enum class Fate { read, gone, die };

  // Lets the faults strike: `gone` when the message is no longer the caller's, `die` when it is to
  // end all connections for `deadFor()` and the message is gone. May wait, open to cancellation.
  Fate Request(IpcMessage* message, std::chrono::milliseconds sinceStart,
               const platform::CancellationDisabled& disabled);

  std::chrono::milliseconds deadFor() const { return deadFor_; }

  // Gives back the messages that were never answered. Their senders get an error, if they still
  // wait.
  void GiveBack();

  // As Outlet::FaultsDone.
  std::string FaultsDone() const;

 private:
  void Keep(IpcMessage* message);

  std::vector<ArmedFault> faults_;
  std::deque<IpcMessage*> unanswered_;  // oldest first
  std::chrono::milliseconds deadFor_{0};
};

}  // namespace ventrik::bench
