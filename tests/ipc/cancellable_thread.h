// SPDX-License-Identifier: Apache-2.0
// A plain thread that a test cancels and joins.
#pragma once

#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <random>
#include <utility>

namespace ventrik::tests {

class CancellableThread {
 public:
  explicit CancellableThread(std::function<void()> body) : body_(std::move(body)) {
    if (pthread_create(&thread_, nullptr, Enter, this) != 0) std::abort();
  }
  ~CancellableThread() {
    if (thread_ != 0) Join();
  }
  CancellableThread(const CancellableThread&) = delete;
  CancellableThread& operator=(const CancellableThread&) = delete;

  void Cancel() { pthread_cancel(thread_); }

  // Waits for its end. Returns whether it was cancelled.
  bool Join() {
    void* result = nullptr;
    pthread_join(thread_, &result);
    thread_ = 0;
    return result == PTHREAD_CANCELED;
  }

  bool CancelAndJoin() {
    Cancel();
    return Join();
  }

 private:
  static void* Enter(void* self) {
    static_cast<CancellableThread*>(self)->body_();
    return nullptr;
  }

  const std::function<void()> body_;
  pthread_t thread_ = 0;
};

// Lets a while pass, another each time and the same in every run.
class RandomPause {
 public:
  explicit RandomPause(unsigned longest) : length_(0, longest) {}
  void Take() { usleep(length_(random_)); }

 private:
  std::minstd_rand random_;
  std::uniform_int_distribution<unsigned> length_;  // microseconds
};

}  // namespace ventrik::tests
