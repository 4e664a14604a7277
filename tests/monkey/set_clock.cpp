// SPDX-License-Identifier: Apache-2.0
#include "tests/monkey/set_clock.h"

#include <atomic>

#include "messages/milli_clock.h"

namespace ventrik {
namespace {

std::atomic<std::uint32_t> now = 0;

}  // namespace

std::uint32_t MilliClock() {
  return now;
}

namespace tests {

void SetMilliClock(std::uint32_t milliseconds) {
  now = milliseconds;
}

}  // namespace tests
}  // namespace ventrik
