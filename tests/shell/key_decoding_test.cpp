// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <vector>

#include "shell/terminal.h"

namespace ventrik {
namespace {

struct Decoded {
  std::optional<std::uint32_t> key;
  std::vector<std::uint32_t> printed;
  std::size_t used;  // bytes read
};

// Nothing in `bytes` stands for the signal that ends the program.
Decoded Decode(const std::vector<std::optional<int>>& bytes) {
  Decoded decoded = {};
  decoded.key = DecodeKey(
      [&]() -> std::optional<int> {
        return decoded.used < bytes.size() ? bytes[decoded.used++] : std::nullopt;
      },
      [&](std::uint32_t byte) { decoded.printed.push_back(byte); });
  return decoded;
}

TEST(KeyDecoding, AsciiIsItself) {
  for (int byte = 0; byte < 128; ++byte) {
    const Decoded decoded = Decode({byte, 'x'});
    EXPECT_EQ(decoded.key, static_cast<std::uint32_t>(byte));
    EXPECT_EQ(decoded.used, 1u);
  }
}

TEST(KeyDecoding, SequencesOfTwoToSixBytes) {
  EXPECT_EQ(Decode({0xC3, 0xA9}).key, 0xE9u);
  EXPECT_EQ(Decode({0xE2, 0x82, 0xAC}).key, 0x20ACu);
  EXPECT_EQ(Decode({0xF0, 0x9F, 0x98, 0x80}).key, 0x1F600u);
  EXPECT_EQ(Decode({0xF8, 0x88, 0x80, 0x80, 0x80}).key, 0x200000u);
  EXPECT_EQ(Decode({0xFC, 0x84, 0x80, 0x80, 0x80, 0x80}).key, 0x4000000u);
}

TEST(KeyDecoding, OddityContinuationBytesArePrinted) {
  EXPECT_EQ(Decode({0xE2, 0x82, 0xAC}).printed, (std::vector<std::uint32_t>{0x82, 0xAC}));
  EXPECT_TRUE(Decode({'a'}).printed.empty());
}

TEST(KeyDecoding, AllBitsSetGiveZeroAndReadNoMore) {
  EXPECT_EQ(Decode({0xFF, 'x'}).key, 0u);
  EXPECT_EQ(Decode({0xFF, 'x'}).used, 1u);
  EXPECT_EQ(Decode({-1, 'x'}).key, 0u) << "the end of the input";
  EXPECT_EQ(Decode({-1, 'x'}).used, 1u);
}

TEST(KeyDecoding, SixFollowingBytesWrapAtThirtyTwoBits) {
  EXPECT_EQ(Decode({0xFE, 0xBF, 0xBF, 0xBF, 0xBF, 0xBF, 0xBF}).key, 0xFFFFFFFFu);
  EXPECT_EQ(Decode({0xBF, 'x'}).key, 0u) << "bits 5 to 0 set";
  EXPECT_EQ(Decode({0xBF, 'x'}).used, 1u);
}

TEST(KeyDecoding, LoneContinuationBytesLeadTooAsTheBitsSay) {
  EXPECT_EQ(Decode({0x81, 0x82}).key, 1u * 64 + 2) << "bit 5 clear: one more byte";
  EXPECT_EQ(Decode({0xA1, 0x82, 0x83}).key, (1u * 64 + 2) * 64 + 3) << "bit 4 clear: two more";
}

TEST(KeyDecoding, OverlongFormsActAsTheKeyTheyMean) {
  EXPECT_EQ(Decode({0xC0, 0x8A}).key, 10u);
  EXPECT_EQ(Decode({0xC1, 0xBF}).key, 127u);
  EXPECT_EQ(Decode({0xC0, 0x9B}).key, 27u);
}

TEST(KeyDecoding, SignalInTheMiddleGivesNothing) {
  EXPECT_FALSE(Decode({}).key);
  EXPECT_FALSE(Decode({0xE2, 0x82}).key);
}

TEST(KeyDecoding, EndOfInputInTheMiddleCountsAsItsLowBits) {
  EXPECT_EQ(Decode({0xC3, -1}).key, 3u * 64 + 63);
  EXPECT_EQ(Decode({0xC3, -1}).printed, (std::vector<std::uint32_t>{0xFFFFFFFF}));
}

}  // namespace
}  // namespace ventrik
