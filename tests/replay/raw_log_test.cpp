// SPDX-License-Identifier: Apache-2.0
#include "replay/raw_log.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/replay/raw_log_notation.h"

namespace ventrik::tests {
namespace {

TEST(RawLogTest, LooksAheadOverTheEndOfItsWindow) {
  const std::string bytes = "0123456789abcdef";
  RawLog log = InWindows(bytes, RawLog::kSmallestWindow);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    EXPECT_EQ(log.Position(), at);
    for (std::size_t ahead = 0; ahead < 4; ++ahead) {
      EXPECT_EQ(log.Peek(ahead), at + ahead < bytes.size() ? bytes[at + ahead] : kNoByte);
    }
    EXPECT_FALSE(log.IsAtEnd());
    log.Advance(1);
  }
  EXPECT_TRUE(log.IsAtEnd());
  EXPECT_EQ(log.Position(), bytes.size());
}

TEST(RawLogTest, TakesASourceThatGivesOneByteAtATime) {
  const std::string bytes = "0123456789";
  std::size_t at = 0;
  RawLog log(
      [&](char* to, std::size_t) { return bytes.copy(to, 1, std::min(at++, bytes.size())); });
  EXPECT_EQ(log.Peek(3), '3');
  EXPECT_EQ(log.Run(), bytes);
  log.Advance(4);
  EXPECT_EQ(log.Peek(3), '7');
}

TEST(RawLogTest, GoesNoFurtherThanItsEnd) {
  const std::string bytes = "abc";
  RawLog log = InWindows(bytes);
  log.Advance(2);
  log.Advance(4);
  EXPECT_EQ(log.Position(), 3u);
  EXPECT_TRUE(log.IsAtEnd());
  EXPECT_EQ(log.Run(), "");
  log.SkipTo('a');
  log.SkipToStretchMark('0');
  EXPECT_EQ(log.Position(), 3u);
}

TEST(RawLogTest, SkipsToAByteFarAway) {
  const std::string bytes = std::string(1000, 'x') + "a" + std::string(1000, 'x') + "b";
  for (const std::size_t window : {RawLog::kUsualWindow, RawLog::kSmallestWindow}) {
    RawLog log = InWindows(bytes, window);
    log.SkipTo('a');
    EXPECT_EQ(log.Position(), 1000u);
    log.SkipTo('a');
    EXPECT_EQ(log.Position(), 1000u);
    log.Advance(1);
    log.SkipToEither('a', 'b');
    EXPECT_EQ(log.Position(), 2001u);
    log.Advance(1);
    log.SkipToEither('a', 'b');
    EXPECT_TRUE(log.IsAtEnd());
  }
}

TEST(RawLogTest, SkipsToTheStretchMarkOfADigit) {
  const std::string bytes = Raw("x#1##0#0#");
  for (const std::size_t window : {RawLog::kUsualWindow, RawLog::kSmallestWindow}) {
    RawLog log = InWindows(bytes, window);
    EXPECT_FALSE(log.IsAtStretchMark('1'));
    log.SkipToStretchMark('0');
    EXPECT_EQ(log.Position(), 4u);
    EXPECT_TRUE(log.IsAtStretchMark('0'));
    log.Advance(1);
    log.SkipToStretchMark('0');
    EXPECT_EQ(log.Position(), 6u);
    log.Advance(1);
    log.SkipToStretchMark('0');
    EXPECT_TRUE(log.IsAtEnd());
  }
}

TEST(RawLogTest, RunGoesToTheNextMarkAndMayBeginWithOne) {
  const std::string bytes = Raw("ab#1cd@#");
  RawLog log = InWindows(bytes);
  for (const char* run : {"ab", "#1cd", "@", "#", ""}) {
    EXPECT_EQ(Shown(std::string(log.Run())), run);
    log.Advance(log.Run().size());
  }
}

TEST(RawLogTest, WithoutMemoryItIsEmpty) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer ends the process instead";
#endif
  const std::string bytes = "abc";
  RawLog log = InWindows(bytes, SIZE_MAX / 2 + 1);
  EXPECT_FALSE(log.HasMemory());
  EXPECT_TRUE(log.IsAtEnd());
  EXPECT_EQ(log.Run(), "");
  EXPECT_EQ(log.Position(), 0u);
}

}  // namespace
}  // namespace ventrik::tests
