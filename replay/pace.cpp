// SPDX-License-Identifier: Apache-2.0
#include "replay/pace.h"

#include <cmath>
#include <limits>

namespace ventrik {
namespace {

constexpr std::uint32_t kBackwards = 1000;  // milliseconds
constexpr std::uint32_t kWorthTelling = 5000;

std::uint32_t Whole(double value) {
  using Limits = std::numeric_limits<std::uint32_t>;
  if (std::isnan(value) || value <= 0) return 0;
  if (value >= static_cast<double>(Limits::max())) return Limits::max();
  return static_cast<std::uint32_t>(value);
}

}  // namespace

ReplayDelay DelayBetween(std::uint32_t current, std::uint32_t next, double speed) {
  if (next < current) return {kBackwards, false};
  const std::uint32_t delay = Whole(static_cast<double>(next - current) / speed);
  return {delay, delay > kWorthTelling};
}

}  // namespace ventrik
