// SPDX-License-Identifier: Apache-2.0
#include "bench/damage.h"

#include <cstring>
#include <iterator>

#include "messages/message_buffer.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kLies[] = {-1, 0, 1, 2, 1000, 0x7FFFFFFF, -0x7FFFFFFF - 1};
constexpr std::int32_t kUnknown = 0x40000000;  // plus the number; far from the catalogue

void PutWord(Block& block, std::size_t index, std::int32_t value) {
  std::memcpy(block.data() + index * kWordSize, &value, sizeof value);
}

}  // namespace

Block Truncated(Block block, Random& random) {
  if (block.empty()) return block;
  const auto longest = static_cast<std::int64_t>(block.size()) - 1;
  block.resize(static_cast<std::size_t>(random.Between(0, longest)));
  return block;
}

Block WithALie(Block block, Random& random) {
  const std::size_t words = block.size() / kWordSize;
  if (words < 2) return block;
  const auto index = random.Between(1, static_cast<std::int64_t>(words) - 1);
  const auto lie = random.Between(0, static_cast<std::int64_t>(std::size(kLies)) - 1);
  PutWord(block, static_cast<std::size_t>(index), kLies[lie]);
  return block;
}

Block WithoutAnEnd(Block block) {
  while (block.size() > kWordSize && block.back() == 0) block.pop_back();
  return block;
}

Block WithUnknownNumber(Block block) {
  if (block.size() < kWordSize) return block;
  std::uint32_t number = 0;
  std::memcpy(&number, block.data(), sizeof number);
  PutWord(block, 0, static_cast<std::int32_t>(number | static_cast<std::uint32_t>(kUnknown)));
  return block;
}

Block Oversized(Block block) {
  if (block.size() <= kMaxAnswer) block.resize(kMaxAnswer + 1, 'x');
  return block;
}

}  // namespace ventrik::bench
