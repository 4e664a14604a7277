// SPDX-License-Identifier: Apache-2.0
#include "messages/milli_clock.h"

#include <algorithm>
#include <chrono>
#include <mutex>

namespace ventrik {

std::uint32_t MilliClock() {
  using Clock = std::chrono::system_clock;
  static std::mutex lock;
  static const Clock::time_point start = Clock::now();
  static std::int64_t largest = 0;
  const auto elapsed =
      std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  const std::lock_guard<std::mutex> hold(lock);
  largest = std::max<std::int64_t>(largest, elapsed);
  return static_cast<std::uint32_t>(largest);
}

}  // namespace ventrik
