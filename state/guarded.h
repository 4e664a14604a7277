// SPDX-License-Identifier: Apache-2.0
// A value that several threads touch, with the leaf lock that keeps it sound.
//
// The lock is held for the touch alone: the function handed to With() must not print, send, sleep,
// take another lock or reach a cancellation point. Nothing of the program's order depends on these
// locks; they only keep containers from being torn.
#pragma once

#include <mutex>
#include <utility>

namespace ventrik {

template <class Value>
class Guarded {
 public:
  Guarded() = default;
  explicit Guarded(Value value) : value_(std::move(value)) {}

  // Calls `touch(value)` under the lock and returns its result. Any thread.
  template <class Touch>
  decltype(auto) With(Touch&& touch) {
    std::lock_guard<std::mutex> hold(lock_);
    return std::forward<Touch>(touch)(value_);
  }
  template <class Touch>
  decltype(auto) With(Touch&& touch) const {
    std::lock_guard<std::mutex> hold(lock_);
    return std::forward<Touch>(touch)(value_);
  }

  // A copy of the value as it stands. Any thread.
  Value Copy() const {
    std::lock_guard<std::mutex> hold(lock_);
    return value_;
  }

  // Replaces the value; the old one is destroyed after the lock is released. Any thread.
  void Store(Value value) {
    std::lock_guard<std::mutex> hold(lock_);
    using std::swap;
    swap(value_, value);  // parameters outlive locals, so the old value goes after the lock
  }

 private:
  mutable std::mutex lock_;
  Value value_{};
};

}  // namespace ventrik
