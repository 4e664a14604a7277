// SPDX-License-Identifier: Apache-2.0
#include "command/parameters.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace ventrik::tests {
namespace {

std::string Narrow(const std::wstring& text) {
  CommandParameter parameter(text);
  return ParamNarrow(parameter);
}

std::string Utf8(const std::wstring& text) {
  CommandParameter parameter(text);
  return ParamUtf8(parameter);
}

std::int32_t Int(const std::wstring& text) {
  return ParamInt(CommandParameter(text));
}

double Double(const std::wstring& text) {
  return ParamDouble(CommandParameter(text));
}

std::int32_t OnOff(const std::wstring& text) {
  return ParamOnOff(CommandParameter(text));
}

TEST(CommandParameter, TextEndsAtItsFirstZero) {
  EXPECT_EQ(CommandParameter(std::wstring(L"a\0b", 3)).text, L"a");
}

TEST(ParamNarrow, PlainCharactersPassUnchanged) {
  std::wstring wide;
  std::string narrow;
  for (int code = 1; code < 128; ++code) {
    wide += static_cast<wchar_t>(code);
    narrow += static_cast<char>(code);
  }
  EXPECT_EQ(Narrow(wide), narrow);
  EXPECT_EQ(Narrow(L""), "");
}

TEST(ParamNarrow, CharactersFrom128To255KeepTheirNumber) {
  for (int code = 128; code < 256; ++code) {
    EXPECT_EQ(Narrow(std::wstring(1, static_cast<wchar_t>(code))),
              std::string(1, static_cast<char>(code)));
  }
}

TEST(ParamNarrow, CharactersAbove255AreQuestionMarksAndNeverZero) {
  for (const std::uint32_t code : {0x100u, 0x200u, 0x20ACu, 0x10000u, 0x10FF00u, 0xFFFFFF00u}) {
    EXPECT_EQ(Narrow(std::wstring(1, static_cast<wchar_t>(code))), "?") << code;
  }
}

TEST(ParamNarrow, EachCharacterIsOneByteAndOneNameIsAlwaysTheSame) {
  CommandParameter parameter(L"\u0151\u00E9x\U0001F600");
  EXPECT_EQ(std::string(ParamNarrow(parameter)), "?\xE9x?");
  EXPECT_EQ(std::string(ParamNarrow(parameter)), "?\xE9x?");
}

TEST(ParamUtf8, TextIsEncoded) {
  EXPECT_EQ(Utf8(L"<CTY>Gy\u0151r<*>"), "<CTY>Gy\xC5\x91r<*>");
  EXPECT_EQ(Utf8(L""), "");
}

TEST(ParamInt, PrefixDecidesTheBase) {
  EXPECT_EQ(Int(L"12"), 12);
  EXPECT_EQ(Int(L"0x10"), 16);
  EXPECT_EQ(Int(L"0x1F"), 31);
  EXPECT_EQ(Int(L"0X1f"), 31);
  EXPECT_EQ(Int(L"010"), 8);
  EXPECT_EQ(Int(L"-0x10"), -16);
  EXPECT_EQ(Int(L"+7"), 7);
}

TEST(ParamInt, NumberEndsWhereItsDigitsEnd) {
  EXPECT_EQ(Int(L"-3x"), -3);
  EXPECT_EQ(Int(L"19"), 19);
  EXPECT_EQ(Int(L"019"), 1);
  EXPECT_EQ(Int(L"0x1g"), 1);
  EXPECT_EQ(Int(L"12.9"), 12);
  EXPECT_EQ(Int(L"  5"), 5);
}

TEST(ParamInt, TextWithoutANumberIs0) {
  for (const wchar_t* text :
       {L"", L" ", L"ten", L"-", L"0x", L"- 1", L"\u0661", L"RESP_GET_LIST"}) {
    EXPECT_EQ(Int(text), 0) << text;
  }
}

TEST(ParamInt, ThereIsNoBinaryPrefix) {
  for (const wchar_t* text : {L"0b101", L"0B101", L"-0b101", L"+0b1", L" 0b11"}) {
    EXPECT_EQ(Int(text), 0) << text;
  }
  EXPECT_EQ(Int(L"0x0b1"), 0xB1);
}

TEST(ParamInt, NumbersBeyond32BitsGiveTheNearest) {
  using Limits = std::numeric_limits<std::int32_t>;
  EXPECT_EQ(Int(L"2147483647"), Limits::max());
  EXPECT_EQ(Int(L"2147483648"), Limits::max());
  EXPECT_EQ(Int(L"0xFFFFFFFF"), Limits::max());
  EXPECT_EQ(Int(L"4294967297"), Limits::max());
  EXPECT_EQ(Int(L"99999999999999999999999"), Limits::max());
  EXPECT_EQ(Int(L"-2147483648"), Limits::min());
  EXPECT_EQ(Int(L"-2147483649"), Limits::min());
  EXPECT_EQ(Int(L"-99999999999999999999999"), Limits::min());
}

TEST(ParamDouble, DecimalNumberAtTheStart) {
  EXPECT_EQ(Double(L"19.0625"), 19.0625);
  EXPECT_EQ(Double(L"-0.5"), -0.5);
  EXPECT_EQ(Double(L"2"), 2.0);
  EXPECT_EQ(Double(L".25x"), 0.25);
  EXPECT_EQ(Double(L"1e3"), 1000.0);
  EXPECT_EQ(Double(L" 1.5"), 1.5);
  EXPECT_EQ(Double(L"1,5"), 1.0);
}

TEST(ParamDouble, TextWithoutANumberIs0) {
  for (const wchar_t* text : {L"", L"x", L"-", L".", L"e3"}) EXPECT_EQ(Double(text), 0.0) << text;
}

TEST(ParamOnOff, OnIs1AndEverythingElseIs2) {
  EXPECT_EQ(OnOff(L"on"), 1);
  for (const wchar_t* text : {L"off", L"", L"o", L"ON", L"On", L"oN", L" on", L"x", L"1"}) {
    EXPECT_EQ(OnOff(text), 2) << text;
  }
}

TEST(ParamOnOff, OddityOnwardIsOn) {
  EXPECT_EQ(OnOff(L"onward"), 1);
  EXPECT_EQ(OnOff(L"on "), 1);
}

}  // namespace
}  // namespace ventrik::tests
