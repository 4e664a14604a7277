// SPDX-License-Identifier: Apache-2.0
#include "platform/linux/timeout.h"

#include <algorithm>
#include <limits>

#include "platform/neutrino.h"

namespace platform {
namespace {

constexpr std::uint64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::uint64_t kNanosecondsPerMillisecond = 1'000'000;

struct PendingLimit {
  int states = 0;
  std::uint64_t nanoseconds = 0;
};
thread_local PendingLimit pendingLimit;

std::uint64_t Now() {
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * kNanosecondsPerSecond +
         static_cast<std::uint64_t>(now.tv_nsec);
}

std::uint64_t Until(std::uint64_t end) {
  const std::uint64_t now = Now();
  return end > now ? end - now : 0;
}

}  // namespace

Deadline Deadline::After(std::uint64_t nanoseconds) {
  Deadline deadline;
  deadline.limited_ = true;
  const std::uint64_t now = Now();
  deadline.end_ = now + std::min(nanoseconds, std::numeric_limits<std::uint64_t>::max() - now);
  return deadline;
}

const timespec* Deadline::Left(timespec& room) const {
  if (!limited_) return nullptr;
  const std::uint64_t left = Until(end_);
  room.tv_sec = static_cast<time_t>(left / kNanosecondsPerSecond);
  room.tv_nsec = static_cast<long>(left % kNanosecondsPerSecond);
  return &room;
}

int Deadline::LeftMilliseconds() const {
  if (!limited_) return -1;
  const std::uint64_t left = Until(end_);
  const std::uint64_t whole = (left + kNanosecondsPerMillisecond - 1) / kNanosecondsPerMillisecond;
  return static_cast<int>(
      std::min<std::uint64_t>(whole, static_cast<std::uint64_t>(std::numeric_limits<int>::max())));
}

Deadline TakeDeadline(int states) {
  const PendingLimit limit = pendingLimit;
  pendingLimit = {};
  return (limit.states & states) != 0 ? Deadline::After(limit.nanoseconds) : Deadline();
}

}  // namespace platform

int TimerTimeout(clockid_t, int flags, const struct sigevent*, const std::uint64_t* ntime,
                 std::uint64_t*) {
  platform::pendingLimit = {};
  if (ntime != nullptr) platform::pendingLimit = {flags, *ntime};
  return 0;
}
