// SPDX-License-Identifier: Apache-2.0
#include "tests/replay/raw_log_notation.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace ventrik::tests {

const std::string kFirstRecord = "0000001F000000042E010000\n";
const std::string kSecondRecord = "00000020000000042F010000\n";
const std::string kBadLine = "0000002000000004\n";

std::string Raw(std::string log) {
  std::replace(log.begin(), log.end(), '@', '\xE5');
  std::replace(log.begin(), log.end(), '#', '\xE6');
  std::replace(log.begin(), log.end(), '~', '\0');
  return log;
}

std::string Shown(std::string extracted) {
  std::replace(extracted.begin(), extracted.end(), '\xE5', '@');
  std::replace(extracted.begin(), extracted.end(), '\xE6', '#');
  std::replace(extracted.begin(), extracted.end(), '\0', '~');
  return extracted;
}

RawLog InWindows(const std::string& log, std::size_t window) {
  const auto read = [&log, at = std::size_t{0}](char* to, std::size_t most) mutable {
    const std::size_t count = log.copy(to, most, at);
    at += count;
    return count;
  };
  return RawLog(read, window);
}

BatchChannel CopiedBatch(RawLog log, bool keep) {
  BatchChannel channel;
  CopyBatchChannel(
      log, keep, [&channel](std::string_view piece) { channel.log += piece; },
      [&channel](std::uint64_t position) { channel.corruptLines.push_back(position); });
  return channel;
}

std::string Copied(void (*copy)(RawLog&, const ByteSink&), RawLog log) {
  std::string copied;
  copy(log, [&copied](std::string_view piece) { copied += piece; });
  return copied;
}

BatchChannel BatchOf(const std::string& log, bool keep) {
  const std::string raw = Raw(log);
  BatchChannel channel = CopiedBatch(InWindows(raw), keep);
  channel.log = Shown(channel.log);
  return channel;
}

std::string SoundBatchOf(const std::string& log) {
  const BatchChannel channel = BatchOf(log);
  EXPECT_EQ(channel.corruptLines, Positions{}) << log;
  return channel.log;
}

std::string TextOf(const std::string& log) {
  const std::string raw = Raw(log);
  return Shown(Copied(CopyTextChannel, InWindows(raw)));
}

std::string BothOf(const std::string& log) {
  const std::string raw = Raw(log);
  return Shown(Copied(CopyBothChannels, InWindows(raw)));
}

std::string LongRecord(std::size_t length, const char* field) {
  return "00000000" + std::string(field) + std::string(2 * length, 'A') + "\n";
}

}  // namespace ventrik::tests
