// SPDX-License-Identifier: Apache-2.0
// Logs by chance, out of the few bytes that matter, against a reading byte by byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "replay/extraction.h"
#include "tests/replay/byte_by_byte.h"

namespace ventrik::tests {
namespace {

constexpr int kLogs = 3'000;

class LogsByChance {
 public:
  // Marks with digits behind them, records, and bytes that spoil either.
  std::string Next() {
    static const std::string pieces[] = {
        "@",  "#",  "@3",   "@4",         "@4",          "@5",       "#0",        "#1",
        "#3", "#5", "0",    "3",          "4",           "x",        "~",         "\r",
        "\n", "\n", "yz",   kFirstRecord, kSecondRecord, kBadLine,   "1F",        "@4",
        "#0", " ",  "\n\n", "\r\n",       "0000001F",    "00000004", "2E010000\n"};
    std::string log = "@4";
    for (auto count = Below(40); count > 0; --count) log += pieces[Below(std::size(pieces))];
    return Raw(log);
  }

 private:
  std::size_t Below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(generator_);
  }

  std::mt19937 generator_{20};
};

// Windows of the smallest size end in the middle of everything.
constexpr std::size_t kWindows[] = {RawLog::kUsualWindow, RawLog::kSmallestWindow, 21};

TEST(ExtractionByChance, GivesWhatAReadingByteByByteGives) {
  LogsByChance logs;
  int records = 0;
  for (int i = 0; i < kLogs; ++i) {
    const std::string log = logs.Next();
    const BatchChannel sound = BatchByteByByte(log, false);
    const BatchChannel all = BatchByteByByte(log, true);
    const std::string text = TextByteByByte(log);
    const std::string both = BothByteByByte(log);
    if (!sound.log.empty()) ++records;
    for (const std::size_t window : kWindows) {
      const BatchChannel copied = CopiedBatch(InWindows(log, window), false);
      ASSERT_EQ(copied.log, sound.log) << Shown(log);
      ASSERT_EQ(copied.corruptLines, sound.corruptLines) << Shown(log);
      ASSERT_EQ(CopiedBatch(InWindows(log, window), true).log, all.log) << Shown(log);
      ASSERT_EQ(Copied(CopyTextChannel, InWindows(log, window)), text) << Shown(log);
      ASSERT_EQ(Copied(CopyBothChannels, InWindows(log, window)), both) << Shown(log);
    }
  }
  EXPECT_GT(records, kLogs / 20) << "too few of the logs have a record";
}

TEST(ExtractionByChance, LongLogsGoThroughSeveralWindowsAndPieces) {
  LogsByChance logs;
  std::string log;
  while (log.size() < 1'000'000) log += logs.Next();
  log += Raw("@3") + std::string(600'000, 'x') + Raw("@4") + std::string(50'000, '0') + "\n";
  for (const std::size_t window : kWindows) {
    EXPECT_EQ(CopiedBatch(InWindows(log, window), false).log, BatchByteByByte(log, false).log);
    EXPECT_EQ(CopiedBatch(InWindows(log, window), true).log, BatchByteByByte(log, true).log);
    EXPECT_EQ(Copied(CopyTextChannel, InWindows(log, window)), TextByteByByte(log));
    EXPECT_EQ(Copied(CopyBothChannels, InWindows(log, window)), BothByteByByte(log));
  }
  std::size_t largest = 0;
  RawLog again = InWindows(log);
  CopyTextChannel(
      again, [&largest](std::string_view piece) { largest = std::max(largest, piece.size()); });
  EXPECT_LE(largest, RawLog::kUsualWindow);
}

}  // namespace
}  // namespace ventrik::tests
