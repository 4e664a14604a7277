// SPDX-License-Identifier: Apache-2.0
#include "bench/losses.h"

#include "bench/message_name.h"

namespace ventrik::bench {
namespace {

constexpr std::size_t kMostLines = 999;  // and one for all the others

std::string KindOf(std::optional<std::int32_t> number) {
  return number ? " of " + MessageName(*number) : " without a number";
}

}  // namespace

void Losses::Count(std::optional<std::int32_t> number, const std::string& why) {
  const std::pair key(number, why);
  if (counts_.size() < kMostLines || counts_.count(key) > 0) {
    ++counts_[key];
  } else {
    ++others_;
  }
}

std::vector<std::string> Losses::Lines() const {
  std::vector<std::string> lines;
  for (const auto& [key, count] : counts_) {
    const auto& [number, why] = key;
    lines.push_back(std::to_string(count) + KindOf(number) + (why.empty() ? "" : ", " + why));
  }
  if (others_ > 0) lines.push_back(std::to_string(others_) + " of other numbers");
  return lines;
}

}  // namespace ventrik::bench
