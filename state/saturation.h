// SPDX-License-Identifier: Apache-2.0
// Numbers read from text have 32 bits on the target, so what is beyond that becomes the nearest
// number that fits.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ventrik {

constexpr std::int32_t Saturate(long long number) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<long long>(number, Limits::min(), Limits::max()));
}

}  // namespace ventrik
