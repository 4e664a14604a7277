// SPDX-License-Identifier: Apache-2.0
// Limits on the sends that this room makes.
#pragma once

#include <cstdint>

#include "platform/neutrino.h"

namespace ventrik {

// How long a data part may wait for its receiver.
inline constexpr std::uint64_t kIpcDataTimeout = 15'000'000'000;  // nanoseconds

// What a thread that is being cancelled grants its last end marker.
inline constexpr std::uint64_t kPartingTimeout = 1'000'000'000;  // nanoseconds

// Limits the calling thread's next send to `nanoseconds`.
inline void LimitNextSend(const std::uint64_t& nanoseconds) {
  struct sigevent unblock = {};
  unblock.sigev_notify = SIGEV_UNBLOCK;
  TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_SEND | _NTO_TIMEOUT_REPLY, &unblock, &nanoseconds,
               nullptr);
}

}  // namespace ventrik
