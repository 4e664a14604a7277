// SPDX-License-Identifier: Apache-2.0
#include "console/utf8.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace ventrik::tests {
namespace {

std::wstring One(std::uint32_t code) {
  return std::wstring(1, static_cast<wchar_t>(code));
}

std::string TwoBytes(int first, int second) {
  return {static_cast<char>(first), static_cast<char>(second)};
}

// How many bytes a lead byte asks for; 0 if it is none.
int OwedBy(int byte) {
  if (byte < 0xC0 || byte >= 0xF8) return 0;
  if (byte < 0xE0) return 1;
  return byte < 0xF0 ? 2 : 3;
}

std::wstring DecodedAlone(int byte) {
  return byte < 0x80 ? One(static_cast<std::uint32_t>(byte)) : L"?";
}

// What a lead byte and one more byte give, at the end of the text.
std::wstring DecodedBehindLead(int lead, int byte) {
  if (byte == '\n') return L"\n?";
  if (byte < 0x80) return L"?" + DecodedAlone(byte);
  if (byte < 0xC0 && OwedBy(lead) == 1) {
    return One(static_cast<std::uint32_t>((lead & 0x1F) * 64 + (byte & 0x3F)));
  }
  return L"?";  // still waiting; or a new lead byte, which waits itself; or no byte of UTF-8
}

TEST(Utf8ToWide, EmptyTextAndNoTextAreEmpty) {
  EXPECT_EQ(Utf8ToWide(""), L"");
  EXPECT_EQ(Utf8ToWide(std::string_view()), L"");
}

TEST(Utf8ToWide, EveryByteAlone) {
  for (int byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(Utf8ToWide(std::string(1, static_cast<char>(byte))), DecodedAlone(byte)) << byte;
  }
}

TEST(Utf8ToWide, EveryPairOfBytes) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::wstring expected = OwedBy(first) == 0 ? DecodedAlone(first) + DecodedAlone(second)
                                                       : DecodedBehindLead(first, second);
      ASSERT_EQ(Utf8ToWide(TwoBytes(first, second)), expected) << first << " " << second;
    }
  }
}

TEST(Utf8ToWide, WholeSequencesOfEachLength) {
  EXPECT_EQ(Utf8ToWide("\x7F"), One(0x7F));
  EXPECT_EQ(Utf8ToWide("\xC2\x80"), One(0x80));
  EXPECT_EQ(Utf8ToWide("\xDF\xBF"), One(0x7FF));
  EXPECT_EQ(Utf8ToWide("\xE0\xA0\x80"), One(0x800));
  EXPECT_EQ(Utf8ToWide("\xEF\xBF\xBF"), One(0xFFFF));
  EXPECT_EQ(Utf8ToWide("\xF0\x90\x80\x80"), One(0x10000));
  EXPECT_EQ(Utf8ToWide("\xF4\x8F\xBF\xBF"), One(0x10FFFF));
  EXPECT_EQ(Utf8ToWide("Gy\xC5\x91r \xE2\x82\xAC"), L"Gy\u0151r \u20AC");
}

TEST(Utf8ToWide, SequenceCutShortAnywhereGivesOneQuestionMark) {
  for (const std::string whole : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"}) {
    for (std::size_t size = 1; size < whole.size(); ++size) {
      const std::string cut = whole.substr(0, size);
      EXPECT_EQ(Utf8ToWide(cut), L"?") << whole << " " << size;
      EXPECT_EQ(Utf8ToWide(cut + "A"), L"?A") << whole << " " << size;
      EXPECT_EQ(Utf8ToWide(cut + "\xF8"), L"?") << whole << " " << size;
    }
  }
}

TEST(Utf8ToWide, ContinuationWithoutALeadGivesAQuestionMarkEach) {
  EXPECT_EQ(Utf8ToWide("\x80\xBF"), L"??");
  EXPECT_EQ(Utf8ToWide("\xC3\xA9\xA9"), L"\u00E9?");
}

TEST(Utf8ToWide, BytesFrom248UpAreQuestionMarksAndEndASequence) {
  for (int byte = 0xF8; byte < 0x100; ++byte) {
    const std::string text = std::string("\xC3") + static_cast<char>(byte) + "\xA9";
    EXPECT_EQ(Utf8ToWide(text), L"??") << byte;
  }
}

TEST(Utf8ToWide, ZeroInsideATextIsACharacter) {
  EXPECT_EQ(Utf8ToWide(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(Utf8ToWide, OddityLineFeedPassesThroughTheMiddleOfASequence) {
  EXPECT_EQ(Utf8ToWide("\xC3\n\xA9"), L"\n\u00E9");
  EXPECT_EQ(Utf8ToWide("\xE2\n\x82\n\xAC"), L"\n\n\u20AC");
}

TEST(Utf8ToWide, OddityNewLeadByteReplacesAnUnfinishedSequenceWithoutAMark) {
  EXPECT_EQ(Utf8ToWide("\xC3\xC3\xA9"), L"\u00E9");
  EXPECT_EQ(Utf8ToWide("\xE2\x82\xC3\xA9"), L"\u00E9");
  EXPECT_EQ(Utf8ToWide("\xF0\x9F\x98\xE2\x82\xAC"), L"\u20AC");
}

TEST(Utf8ToWide, OddityOverlongFormsAreDecoded) {
  EXPECT_EQ(Utf8ToWide("\xC0\x80"), One(0));
  EXPECT_EQ(Utf8ToWide("\xC1\x81"), L"A");
  EXPECT_EQ(Utf8ToWide("\xE0\x81\x81"), L"A");
  EXPECT_EQ(Utf8ToWide("\xF0\x80\x81\x81"), L"A");
}

TEST(Utf8ToWide, OdditySurrogatesAndNumbersBeyondTheLastCodePointAreDecoded) {
  EXPECT_EQ(Utf8ToWide("\xED\xA0\x80"), One(0xD800));
  EXPECT_EQ(Utf8ToWide("\xF4\x90\x80\x80"), One(0x110000));
  EXPECT_EQ(Utf8ToWide("\xF7\xBF\xBF\xBF"), One(0x1FFFFF));
}

// The rules one by one, for a reader of single bytes.
std::wstring DecodedByteByByte(std::string_view bytes) {
  std::wstring text;
  std::uint32_t code = 0;
  int owed = 0;
  for (const char character : bytes) {
    const int byte = static_cast<unsigned char>(character);
    if (byte == '\n') {
      text += L'\n';
    } else if (OwedBy(byte) != 0) {
      owed = OwedBy(byte);
      code = static_cast<std::uint32_t>(byte & (0x3F >> owed));
    } else if (byte >= 0x80 && byte < 0xC0 && owed != 0) {
      code = code * 64 + static_cast<std::uint32_t>(byte & 0x3F);
      if (--owed == 0) text += One(code);
    } else {
      if (owed != 0 && byte < 0x80) text += L'?';
      text += DecodedAlone(byte);
      owed = 0;
    }
  }
  return owed != 0 ? text + L'?' : text;
}

// Runs of ASCII of all lengths, among them whole and broken sequences.
std::string RandomText(std::minstd_rand& random) {
  constexpr const char* kParts[] = {"\n",   "\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                    "\xC3", "\xE2\x82", "\xF0\x9F",     "\x80",
                                    "\xBF", "\xFF"};
  std::string text;
  while (random() % 8 != 0) {
    text += std::string(random() % 40, static_cast<char>('a' + random() % 26));
    for (auto parts = random() % 4; parts != 0; --parts)
      text += kParts[random() % std::size(kParts)];
  }
  return text;
}

TEST(Utf8ToWide, BlocksOfAsciiAndWholeSequencesGiveWhatSingleBytesDo) {
  std::minstd_rand random(7);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = RandomText(random);
    ASSERT_EQ(Utf8ToWide(text), DecodedByteByByte(text)) << testing::PrintToString(text);
  }
}

TEST(Utf8ToWide, NothingBehindTheTextIsRead) {
  const std::string text = "abcdefghijklmnopqrstuvwxyz\xC3\xA9\xE2\x82\xAC";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    const std::vector<char> alone(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(Utf8ToWide({alone.data(), size}), DecodedByteByByte(text.substr(0, size))) << size;
  }
}

TEST(WideToUtf8, LengthChangesAt128And2048) {
  EXPECT_EQ(WideToUtf8(L""), "");
  EXPECT_EQ(WideToUtf8(One(0x7F)), "\x7F");
  EXPECT_EQ(WideToUtf8(One(0x80)), "\xC2\x80");
  EXPECT_EQ(WideToUtf8(One(0x7FF)), "\xDF\xBF");
  EXPECT_EQ(WideToUtf8(One(0x800)), "\xE0\xA0\x80");
  EXPECT_EQ(WideToUtf8(One(0xFFFF)), "\xEF\xBF\xBF");
  EXPECT_EQ(WideToUtf8(L"Gy\u0151r \u20AC"), "Gy\xC5\x91r \xE2\x82\xAC");
}

TEST(WideToUtf8, EveryCharacterUpTo65535ComesBack) {
  for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
    ASSERT_EQ(Utf8ToWide(WideToUtf8(One(code))), One(code)) << code;
  }
}

TEST(WideToUtf8, OddityCharactersAbove65535GetAWrongFirstByteOfThree) {
  EXPECT_EQ(WideToUtf8(One(0x10000)), "\xF0\x80\x80");
  EXPECT_EQ(WideToUtf8(One(0x1F600)), "\xFF\x98\x80");
  EXPECT_EQ(WideToUtf8(One(0x20000)), std::string("\x00\x80\x80", 3));  // 256 and more start anew
  EXPECT_EQ(WideToUtf8(One(0x10FFFF)), "\xEF\xBF\xBF");
  EXPECT_EQ(WideToUtf8(One(0xFFFFFFFF)), "\xDF\xBF\xBF");
}

TEST(WideToTerminal, EachCodePointHasItsProperForm) {
  EXPECT_EQ(WideToTerminal(L""), "");
  EXPECT_EQ(WideToTerminal(One(0x7F)), "\x7F");
  EXPECT_EQ(WideToTerminal(One(0x80)), "\xC2\x80");
  EXPECT_EQ(WideToTerminal(One(0x7FF)), "\xDF\xBF");
  EXPECT_EQ(WideToTerminal(One(0x800)), "\xE0\xA0\x80");
  EXPECT_EQ(WideToTerminal(One(0xD7FF)), "\xED\x9F\xBF");
  EXPECT_EQ(WideToTerminal(One(0xE000)), "\xEE\x80\x80");
  EXPECT_EQ(WideToTerminal(One(0xFFFF)), "\xEF\xBF\xBF");
  EXPECT_EQ(WideToTerminal(One(0x10000)), "\xF0\x90\x80\x80");
  EXPECT_EQ(WideToTerminal(One(0x10FFFF)), "\xF4\x8F\xBF\xBF");
}

TEST(WideToTerminal, CharactersAreTheSameWhereverAmongOthersTheyStand) {
  const std::wstring odd = L"\u00E9\u20AC\U0001F600" + One(0xD800);
  for (const wchar_t character : odd) {
    const std::string alone = WideToTerminal(std::wstring(1, character));
    for (std::size_t at = 0; at < 20; ++at) {
      const std::wstring before(at, L'a');
      const std::wstring behind(20 - at, L'b');
      EXPECT_EQ(WideToTerminal(before + character + behind),
                std::string(at, 'a') + alone + std::string(20 - at, 'b'))
          << at;
    }
  }
}

TEST(AppendForTerminal, WhatIsThereAlreadyStays) {
  std::string bytes = "before ";
  AppendForTerminal(L"\u00E9", bytes);
  AppendForTerminal(L"", bytes);
  AppendForTerminal(L"!", bytes);
  EXPECT_EQ(bytes, "before \xC3\xA9!");
}

TEST(WideToTerminal, WhatHasNoFormIsAQuestionMark) {
  for (const std::uint32_t code : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(WideToTerminal(L"a" + One(code) + L"b"), "a?b") << code;
  }
}

}  // namespace
}  // namespace ventrik::tests
