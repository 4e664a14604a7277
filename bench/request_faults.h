// SPDX-License-Identifier: Apache-2.0
// The faults that strike handshakes and requests: what a tester's transport has to bear.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "bench/fault.h"
#include "bench/model/replies.h"
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

  // Is told of each fault that strikes, before it does what it does. Before the receiving thread
  // starts.
  std::function<void(const Strike&)> onStrike;

  // Takes the faults that strike handshakes and requests. Before the receiving thread starts.
  void Arm(const std::vector<Fault>& faults, std::uint32_t seed);

  // 0, or the error to refuse a handshake with. A slow one waits in here, open to cancellation.
  int Handshake(std::chrono::milliseconds sinceStart);

  // What to do with a message that has come in and is not read yet.
  enum class Fate { read, gone, die, restart };

  // Lets the faults strike: `read` when the caller is to read on behind `takenAhead()`, `gone` when
  // the message is no longer the caller's, `die` and `restart` when it is to end all connections
  // for `deadFor()`, and the latter to forget what it knows; the message is gone then as well. May
  // wait, open to cancellation.
  Fate Request(IpcMessage* message, std::chrono::milliseconds sinceStart,
               const platform::CancellationDisabled& disabled);

  // What the last Request took from the front of its message to know it by: a message is read only
  // once. Its number, or nothing.
  const Block& takenAhead() const { return takenAhead_; }

  std::chrono::milliseconds deadFor() const { return deadFor_; }

  // Gives back the messages that were never answered. Their senders get an error, if they still
  // wait.
  void GiveBack();

  // As Outlet::FaultsDone.
  std::string FaultsDone() const;

 private:
  struct Unread {
    IpcMessage* message;
    std::chrono::milliseconds since;  // the start
  };

  void Keep(IpcMessage* message, std::chrono::milliseconds since);
  void GiveUpOld(std::chrono::milliseconds now);
  void GiveUpOldest();

  std::vector<ArmedFault> faults_;
  std::deque<Unread> unread_;  // oldest first
  Block takenAhead_;
  std::chrono::milliseconds deadFor_{0};
};

}  // namespace ventrik::bench
