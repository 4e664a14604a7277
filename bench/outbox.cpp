// SPDX-License-Identifier: Apache-2.0
#include "bench/outbox.h"

#include <algorithm>

namespace ventrik::bench {
namespace {

std::size_t CostOf(const Block& block) {
  return block.size() + kMessageCost;
}

}  // namespace

Outbox::Lane& Outbox::LaneOf(IpcPeer* client) {
  for (Lane& lane : lanes_) {
    if (lane.client == client) return lane;
  }
  Lane& lane = lanes_.emplace_back();
  lane.client = client;
  return lane;
}

bool Outbox::Post(IpcPeer* client, Block block, TimePoint due) {
  Lane& lane = LaneOf(client);
  if (lane.mute || lane.retired || lane.bytes + CostOf(block) > kMaxWaitingBytes) return false;
  lane.bytes += CostOf(block);
  lane.waiting.emplace(std::make_pair(due, ++posted_), std::move(block));
  return true;
}

void Outbox::Repeat(IpcPeer* client, Block block, TimePoint first,
                    std::chrono::milliseconds period) {
  Lane& lane = LaneOf(client);
  if (lane.repeated || lane.retired) return;
  lane.repeated = Repeated{std::move(block), first, period};
}

void Outbox::Heard(IpcPeer* client) {
  Lane& lane = LaneOf(client);
  ++lane.heard;
  lane.mute = false;
}

std::size_t Outbox::Mute(IpcPeer* client, std::uint64_t heard) {
  Lane& lane = LaneOf(client);
  if (lane.heard != heard) return 0;
  const std::size_t dropped = lane.waiting.size();
  lane.mute = true;
  lane.waiting.clear();
  lane.bytes = 0;
  return dropped;
}

void Outbox::Retire(IpcPeer* client, bool sendWaiting) {
  Lane& lane = LaneOf(client);
  lane.retired = true;
  lane.repeated.reset();
  if (sendWaiting) return;
  lane.waiting.clear();
  lane.bytes = 0;
}

// The repeated message stands behind those posted for the same time.
std::optional<std::pair<TimePoint, std::uint64_t>> Outbox::FirstDue(const Lane& lane) {
  std::optional<std::pair<TimePoint, std::uint64_t>> first;
  if (!lane.waiting.empty()) first = lane.waiting.begin()->first;
  if (lane.repeated && !lane.mute && (!first || lane.repeated->due < first->first)) {
    first = std::make_pair(lane.repeated->due, UINT64_MAX);
  }
  if (!first && lane.retired) first = std::make_pair(TimePoint::min(), std::uint64_t{0});
  return first;
}

Block Outbox::TakeFirst(Lane& lane, TimePoint now) {
  const auto first = *FirstDue(lane);
  if (first.second == UINT64_MAX) {
    Repeated& repeated = *lane.repeated;
    repeated.due += repeated.period;
    if (repeated.due <= now) repeated.due = now + repeated.period;
    return repeated.block;
  }
  Block block = std::move(lane.waiting.begin()->second);
  lane.waiting.erase(lane.waiting.begin());
  lane.bytes -= CostOf(block);
  return block;
}

std::optional<Outbox::Task> Outbox::TakeDue(TimePoint now) {
  auto next = lanes_.end();
  std::optional<std::pair<TimePoint, std::uint64_t>> earliest;
  for (auto lane = lanes_.begin(); lane != lanes_.end(); ++lane) {
    const auto first = FirstDue(*lane);
    if (!first || first->first > now || (earliest && *first >= *earliest)) continue;
    earliest = first;
    next = lane;
  }
  if (next == lanes_.end()) return std::nullopt;
  Lane& lane = *next;
  Task task{lane.client, std::nullopt, lane.heard};
  if (lane.retired && lane.waiting.empty()) {
    lanes_.erase(next);
  } else {
    task.block = TakeFirst(lane, now);
  }
  return task;
}

std::optional<TimePoint> Outbox::NextDue() const {
  std::optional<TimePoint> next;
  for (const Lane& lane : lanes_) {
    const auto first = FirstDue(lane);
    if (first && (!next || first->first < *next)) next = first->first;
  }
  return next;
}

std::vector<IpcPeer*> Outbox::Clear() {
  std::vector<IpcPeer*> retired;
  for (const Lane& lane : lanes_) {
    if (lane.retired) retired.push_back(lane.client);
  }
  lanes_.clear();
  return retired;
}

}  // namespace ventrik::bench
