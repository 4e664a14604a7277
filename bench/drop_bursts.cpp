// SPDX-License-Identifier: Apache-2.0
#include "bench/drop_bursts.h"

#include <algorithm>

namespace ventrik::bench {
namespace {

std::string LineOf(std::uint64_t messages, std::uint32_t process) {
  const bool isOne = messages == 1;
  return std::to_string(messages) + (isOne ? " message" : " messages") + " to process " +
         std::to_string(process) + (isOne ? " was" : " were") + " dropped";
}

}  // namespace

TimePoint DropBursts::Burst::End() const {
  return std::min(last + kBurstSilence, first + kLongestBurst);
}

void DropBursts::Count(std::uint32_t process, std::uint64_t messages, TimePoint now) {
  if (messages == 0) return;
  const auto isSame = [process](const Burst& burst) { return burst.process == process; };
  const auto found = std::find_if(bursts_.begin(), bursts_.end(), isSame);
  if (found == bursts_.end()) {
    bursts_.push_back({process, messages, now, now});
  } else {
    found->messages += messages;
    found->last = now;
  }
}

std::optional<TimePoint> DropBursts::NextEnd() const {
  std::optional<TimePoint> next;
  for (const Burst& burst : bursts_) next = next ? std::min(*next, burst.End()) : burst.End();
  return next;
}

std::vector<std::string> DropBursts::TakeOver(TimePoint now) {
  std::vector<std::string> lines;
  const auto isOver = [now](const Burst& burst) { return burst.End() <= now; };
  for (const Burst& burst : bursts_) {
    if (isOver(burst)) lines.push_back(LineOf(burst.messages, burst.process));
  }
  bursts_.erase(std::remove_if(bursts_.begin(), bursts_.end(), isOver), bursts_.end());
  return lines;
}

}  // namespace ventrik::bench
