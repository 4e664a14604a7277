// SPDX-License-Identifier: Apache-2.0
// Scopes that say where a thread may be cancelled.
//
// A cancelled thread unwinds its stack, so guards release what it holds. What must not be cut short
// (a lock, a stream's inner state, the bookkeeping around a wait) runs inside CancellationDisabled;
// a wait inside such a stretch opens the door again with CancellationAllowed, for itself alone.
// Destructors must never reach an open cancellation point: unwinding out of one ends the process.
#pragma once

#include <pthread.h>

namespace platform {

class CancellationDisabled {
 public:
  CancellationDisabled() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &before_); }
  ~CancellationDisabled() { pthread_setcancelstate(before_, nullptr); }
  CancellationDisabled(const CancellationDisabled&) = delete;
  CancellationDisabled& operator=(const CancellationDisabled&) = delete;

 private:
  friend class CancellationAllowed;
  int before_ = PTHREAD_CANCEL_ENABLE;
};

// Restores, for a scope inside `disabled`, the state that the thread was in before it.
class CancellationAllowed {
 public:
  explicit CancellationAllowed(const CancellationDisabled& disabled) {
    pthread_setcancelstate(disabled.before_, nullptr);
  }
  ~CancellationAllowed() { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr); }
  CancellationAllowed(const CancellationAllowed&) = delete;
  CancellationAllowed& operator=(const CancellationAllowed&) = delete;
};

}  // namespace platform
