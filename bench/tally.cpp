// SPDX-License-Identifier: Apache-2.0
#include "bench/tally.h"

#include <array>
#include <cstdio>
#include <limits>

#include "messages/function_ids.h"
#include "messages/message_buffer.h"

namespace ventrik::bench {
namespace {

constexpr std::int64_t kManyUnknown = std::numeric_limits<std::int64_t>::max() - 1;
constexpr std::int64_t kWithoutNumber = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t kMostLines = 1000;  // a client may send any number

std::string NameOf(std::int64_t key) {
  if (key == kWithoutNumber) return "      - (too short for a number)";
  if (key == kManyUnknown) return "      - (other unknown numbers)";
  const char* name = FunctionName(static_cast<std::int32_t>(key));
  std::array<char, 64> text = {};
  std::snprintf(text.data(), text.size(), "%7lld %s", static_cast<long long>(key),
                name != nullptr ? name : "(unknown)");
  return text.data();
}

}  // namespace

Tally::Row& Tally::RowOf(ReceivedBlock block) {
  if (block.size < kWordSize) return rows_[kWithoutNumber];
  const std::int32_t number = block.Word(0);
  const bool isNew = rows_.count(number) == 0;
  return rows_[isNew && rows_.size() >= kMostLines ? kManyUnknown : number];
}

void Tally::Received(ReceivedBlock block) {
  const std::lock_guard<std::mutex> hold(lock_);
  Count& count = RowOf(block).received;
  ++count.messages;
  count.bytes += block.size;
}

void Tally::Sent(ReceivedBlock block) {
  const std::lock_guard<std::mutex> hold(lock_);
  Count& count = RowOf(block).sent;
  ++count.messages;
  count.bytes += block.size;
}

std::uint64_t Tally::received() const {
  const std::lock_guard<std::mutex> hold(lock_);
  std::uint64_t sum = 0;
  for (const auto& [key, row] : rows_) sum += row.received.messages;
  return sum;
}

std::uint64_t Tally::sent() const {
  const std::lock_guard<std::mutex> hold(lock_);
  std::uint64_t sum = 0;
  for (const auto& [key, row] : rows_) sum += row.sent.messages;
  return sum;
}

std::string Tally::RowText(std::int64_t key, const char* way, const Count& count) {
  if (count.messages == 0) return {};
  std::array<char, 160> text = {};
  std::snprintf(text.data(), text.size(), "%-44s %-8s %7llu %9llu bytes\n", NameOf(key).c_str(),
                way, static_cast<unsigned long long>(count.messages),
                static_cast<unsigned long long>(count.bytes));
  return text.data();
}

std::string Tally::Table() const {
  const std::lock_guard<std::mutex> hold(lock_);
  std::string text;
  for (const auto& [key, row] : rows_) {
    text += RowText(key, "received", row.received) + RowText(key, "sent", row.sent);
  }
  return text;
}

}  // namespace ventrik::bench
