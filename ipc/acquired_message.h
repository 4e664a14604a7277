// SPDX-License-Identifier: Apache-2.0
// Owner of a message object while it waits for its message: frees it if none comes, also when the
// thread is cancelled.
#pragma once

#include <utility>

#include "ipc/ipc.h"

namespace ventrik {

class AcquiredMessage {
 public:
  AcquiredMessage() : message_(ipc_message_acquire()) {}
  ~AcquiredMessage() { delete message_; }
  AcquiredMessage(const AcquiredMessage&) = delete;
  AcquiredMessage& operator=(const AcquiredMessage&) = delete;

  // Null if memory is exhausted.
  IpcMessage* get() const { return message_; }

  // Hands the object over.
  IpcMessage* Release() { return std::exchange(message_, nullptr); }

 private:
  IpcMessage* message_;
};

}  // namespace ventrik
