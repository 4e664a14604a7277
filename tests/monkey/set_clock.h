// SPDX-License-Identifier: Apache-2.0
// A clock that stands until a test moves it on.
//
// set_clock.cpp defines MilliClock, so a program that has it never sees the real one.
#pragma once

#include <cstdint>

namespace ventrik::tests {

// What MilliClock reads from now on. Any thread.
void SetMilliClock(std::uint32_t milliseconds);

}  // namespace ventrik::tests
