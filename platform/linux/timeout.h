// SPDX-License-Identifier: Apache-2.0
// The limit that TimerTimeout sets on a thread's next blocking call.
#pragma once

#include <time.h>

#include <cstdint>

namespace platform {

// When a wait must end, or never.
class Deadline {
 public:
  Deadline() = default;
  static Deadline After(std::uint64_t nanoseconds);

  // The time left as ppoll takes it: null for no limit, zero once it has passed. `room` holds it.
  const timespec* Left(timespec& room) const;

  // The same in whole milliseconds, rounded up; -1 for no limit.
  int LeftMilliseconds() const;

 private:
  bool limited_ = false;
  std::uint64_t end_ = 0;  // nanoseconds on the monotonic clock
};

// Takes the calling thread's limit, if one is set for any of `states`; whatever was set is used up.
Deadline TakeDeadline(int states);

}  // namespace platform
