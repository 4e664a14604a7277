// SPDX-License-Identifier: Apache-2.0
// The texts of messages that are cut short or lie. Blocks lie against unreadable memory, so a
// printer that leaves one ends the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string>
#include <vector>

#include "messages/layout_table.h"
#include "tests/messages/message_samples.h"
#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

constexpr std::int32_t kLowest = -0x7FFFFFFF - 1;
constexpr std::int32_t kHighest = 0x7FFFFFFF;

std::string TextOfPrefix(const Bytes& message, std::size_t size) {
  return TextOf(Copy(message.value.data(), size));
}

// The start of a text that no field changes: "RESP_INIT>".
std::string Label(const std::string& text) {
  const std::size_t end = text.find('>');
  return end != std::string::npos ? text.substr(0, end + 1) : text;
}

std::size_t CommonLength(const std::string& left, const std::string& right) {
  const std::size_t most = std::min(left.size(), right.size());
  return static_cast<std::size_t>(
      std::mismatch(left.begin(), left.begin() + static_cast<std::ptrdiff_t>(most), right.begin())
          .first -
      left.begin());
}

// A word that names every route mode makes the most of its four bytes; labels, numbers and
// coordinates come to less than a kilobyte.
std::size_t MostTextOf(std::size_t blockSize) {
  return 1024 + 100 * blockSize;
}

void ExpectLabelAndBound(const Bytes& message, const std::string& label) {
  const std::string text = TextOf(message);
  EXPECT_EQ(text.substr(0, label.size()), label) << message;
  EXPECT_LE(text.size(), MostTextOf(message.value.size())) << message;
}

TEST(PrintedPrefix, LongerPrefixShowsNoLessOfTheText) {
  for (const MessageSample& sample : ResponseSamples()) {
    SCOPED_TRACE(sample.golden);
    const std::string whole = TextOf(sample.golden);
    std::size_t shown = 0;
    for (std::size_t size = 4; size <= sample.golden.value.size(); ++size) {
      const std::string text = TextOfPrefix(sample.golden, size);
      const std::size_t common = CommonLength(text, whole);
      EXPECT_GE(common, std::max(shown, Label(whole).size())) << size << " bytes:\n" << text;
      EXPECT_LE(text.size(), MostTextOf(size));
      shown = common;
    }
  }
}

// Whatever of a text has arrived is shown, behind all that comes before it.
TEST(PrintedPrefix, EveryLetterOfATextAddsToWhatIsShown) {
  std::size_t letters = 0;
  for (const MessageSample& sample : ResponseSamples()) {
    const std::vector<std::uint8_t>& bytes = sample.golden.value;
    const MessageLayout* layout = FindLayout(sample.golden.Block().Word(0));
    ASSERT_NE(layout, nullptr) << sample.golden;
    if (layout->begin()->kind == FieldKind::Bytes) continue;  // nobody reads these
    SCOPED_TRACE(sample.golden);
    const std::string whole = TextOf(sample.golden);
    for (std::size_t size = layout->HeaderSize() * 4; size < bytes.size(); ++size) {
      if (std::isalpha(bytes[size]) == 0) continue;
      ++letters;
      EXPECT_GT(CommonLength(TextOfPrefix(sample.golden, size + 1), whole),
                CommonLength(TextOfPrefix(sample.golden, size), whole))
          << size << " bytes";
    }
  }
  EXPECT_GT(letters, 100u);
}

TEST(PrintedPrefix, LessThanANumberIsNoMessage) {
  for (const MessageSample& sample : ResponseSamples()) {
    for (std::size_t size = 0; size < 4; ++size) {
      EXPECT_EQ(Label(TextOfPrefix(sample.golden, size)).find("Error: Unhandled"), 7u)
          << sample.golden;
    }
  }
}

TEST(PrintedPrefix, CutHeadersReadAs0) {
  EXPECT_EQ(TextOf(Hex("2F010000 02000000 010000")), TextOf(Hex("2F010000 02000000 00000000")));
  EXPECT_EQ(TextOf(Hex("9A010000 01000000 02000000 0300")),
            "INFO_ACTIVE_ROUTE_DESC> routeDesc: (1,2,0)\n");
  EXPECT_EQ(
      TextOf(Hex("9B010000 01000000 02000000 01")),
      "INFO_NEXT_MAN_INFO> timeDist: (1, 2)\nINFO_NEXT_MAN_INFO> nextManInfo: (true, 0, 0)\n");
  EXPECT_EQ(TextOf(Hex("33010000")),
            "RESP_GET_LIST> inputEIS: \"\"\n"
            "RESP_GET_LIST> validState: invalid\n"
            "RESP_GET_LIST> startIndex: 0\n"
            "RESP_GET_LIST> resultCount: 0\n"
            "RESP_GET_LIST> fieldOptions: \n"
            "RESP_GET_LIST> itemList:\n"
            "\n"
            "RESP_GET_LIST> outputEIS: \"\"\n"
            "RESP_GET_LIST> completeState: off\n");
}

TEST(PrintedPrefix, CutTextIsShownAsFarAsItGoes) {
  EXPECT_EQ(TextOf(Hex("86030000 05000000 '1.'")), "RESP_GET_SW_VERSION> swVersion: 1.\n");
  EXPECT_EQ(TextOf(Hex("2C030000 02000000 'jam' 00 'clos'")),
            "INFO_TMC_NEW_EVENTS> tmcEvents:   1. (jam)\n   2. (clos)\n");
}

TEST(PrintedPrefix, NoWordLeadsOutOfTheBlock) {
  for (const MessageSample& sample : ResponseSamples()) {
    const std::string label = Label(TextOf(sample.golden));
    for (std::size_t word = 1; (word + 1) * 4 <= sample.golden.value.size(); ++word) {
      for (const std::int32_t lie : {0, 1, 2, 3, 1000, kHighest, -1, kLowest}) {
        Bytes lying = sample.golden;
        SetWord(lying, word, lie);
        ExpectLabelAndBound(lying, label);
      }
    }
  }
}

TEST(PrintedPrefix, NoPairOfWordsLeadsOutOfTheBlock) {
  for (const MessageSample& sample : ResponseSamples()) {
    const std::string label = Label(TextOf(sample.golden));
    const std::size_t words = sample.golden.value.size() / 4;
    for (std::size_t first = 1; first < words; ++first) {
      for (std::size_t second = first + 1; second < words; ++second) {
        for (const auto& [one, other] : {std::pair(kHighest, kHighest), {0, kHighest}, {-1, 1}}) {
          Bytes lying = sample.golden;
          SetWord(lying, first, one);
          SetWord(lying, second, other);
          ExpectLabelAndBound(lying, label);
        }
      }
    }
  }
}

TEST(PrintedPrefix, BlocksOfOneByteOnlyStayWithinThemselves) {
  for (const MessageSample& sample : ResponseSamples()) {
    const std::string label = Label(TextOf(sample.golden));
    for (const int filler : {0x00, 0x01, 0x78, 0x7F, 0x80, 0xFF}) {
      Bytes filled = Copy(sample.golden.value.data(), 4);
      for (int size = 4; size < 80; ++size) {
        ExpectLabelAndBound(filled, label);
        filled.value.push_back(static_cast<std::uint8_t>(filler));
      }
    }
  }
}

TEST(PrintedPrefix, TextsWithoutAnyTerminatorStayWithinTheBlock) {
  for (const MessageSample& sample : ResponseSamples()) {
    const MessageLayout* layout = FindLayout(sample.golden.Block().Word(0));
    ASSERT_NE(layout, nullptr) << sample.golden;
    const std::string label = Label(TextOf(sample.golden));
    Bytes endless = sample.golden;
    const std::size_t header = std::min(layout->HeaderSize() * 4, endless.value.size());
    std::replace(endless.value.begin() + static_cast<std::ptrdiff_t>(header), endless.value.end(),
                 std::uint8_t{0}, std::uint8_t{'x'});
    for (std::size_t size = 4; size <= endless.value.size(); ++size) {
      ExpectLabelAndBound(Copy(endless.value.data(), size), label);
    }
  }
}

// As large as messages come, with counts that promise more.
TEST(PrintedPrefix, LargestBlocksArePrintedWithinTheBound) {
  for (const MessageSample& sample : ResponseSamples()) {
    const MessageLayout* layout = FindLayout(sample.golden.Block().Word(0));
    ASSERT_NE(layout, nullptr) << sample.golden;
    const std::string label = Label(TextOf(sample.golden));
    Bytes large = Copy(sample.golden.value.data(), 4);
    for (std::size_t word = 1; word < layout->HeaderSize(); ++word) {
      large = std::move(large) + Word(kHighest);
    }
    for (const int filler : {0x00, 0x78}) {
      Bytes filled = large;
      filled.value.resize(512000, static_cast<std::uint8_t>(filler));
      const std::string text = TextOf(filled);
      EXPECT_EQ(text.substr(0, label.size()), label);
      EXPECT_TRUE(text.size() <= MostTextOf(filled.value.size())) << label;
    }
  }
}

}  // namespace
}  // namespace ventrik::tests
