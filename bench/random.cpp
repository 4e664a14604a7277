// SPDX-License-Identifier: Apache-2.0
// std::mt19937 and std::seed_seq are the same with every library; the distributions of <random>
// are not, so numbers are mapped here.
#include "bench/random.h"

#include <chrono>
#include <vector>

namespace ventrik::bench {
namespace {

constexpr std::uint64_t kDraws = std::uint64_t{1} << 32;  // that one call of the engine can give

std::mt19937 StartSeries(std::uint32_t seed, std::string_view series) {
  std::vector<std::uint32_t> words = {seed};
  for (const char character : series) words.push_back(static_cast<unsigned char>(character));
  std::seed_seq sequence(words.begin(), words.end());
  return std::mt19937(sequence);
}

}  // namespace

Random::Random(std::uint32_t seed, std::string_view series) : engine_(StartSeries(seed, series)) {}

// Draws above the last whole multiple of the range are drawn again, or its low numbers would come
// more often.
std::int64_t Random::Between(std::int64_t least, std::int64_t most) {
  const std::uint64_t range =
      static_cast<std::uint64_t>(most) - static_cast<std::uint64_t>(least) + 1;
  const std::uint64_t limit = kDraws - kDraws % range;
  std::uint64_t draw = engine_();
  while (draw >= limit) draw = engine_();
  return least + static_cast<std::int64_t>(draw % range);
}

bool Random::Happens(double probability) {
  if (!(probability > 0)) return false;
  if (probability >= 1) return true;
  return static_cast<double>(engine_()) < probability * static_cast<double>(kDraws);
}

std::uint32_t SeedFromClock() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto ticks = static_cast<std::uint64_t>(now.count());
  return static_cast<std::uint32_t>(ticks ^ (ticks >> 32));
}

}  // namespace ventrik::bench
