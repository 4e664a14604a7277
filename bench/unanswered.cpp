// SPDX-License-Identifier: Apache-2.0
#include "bench/unanswered.h"

#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

constexpr std::size_t kMostNumbers = 999;

std::string NameOf(std::int32_t number) {
  const char* name = FunctionName(number);
  return name != nullptr ? name : std::to_string(number);
}

}  // namespace

void Unanswered::Count(std::int32_t number) {
  if (counts_.size() < kMostNumbers || counts_.count(number) > 0) {
    ++counts_[number];
  } else {
    ++others_;
  }
}

std::vector<std::string> Unanswered::Lines() const {
  std::vector<std::string> lines;
  for (const auto& [number, count] : counts_) {
    lines.push_back(std::to_string(count) + " of " + NameOf(number));
  }
  if (others_ > 0) lines.push_back(std::to_string(others_) + " of other numbers");
  return lines;
}

}  // namespace ventrik::bench
