// SPDX-License-Identifier: Apache-2.0
#include "bench/eis.h"

#include <gtest/gtest.h>

#include <string>

namespace ventrik::bench {
namespace {

// The pairs as "TAG=value|TAG=value|".
std::string Read(std::string_view text) {
  std::string read;
  for (const EisPair& pair : ParseEis(text)) {
    read.append(pair.tag).append("=").append(pair.value).append("|");
  }
  return read;
}

TEST(ParseEis, ReadsPairsInTheirOrder) {
  EXPECT_EQ(Read("<GEOC>Germany<*><GEOS>Ba<*>"), "GEOC=Germany|GEOS=Ba|");
  EXPECT_EQ(Read("<GEOC><*>"), "GEOC=|");
  EXPECT_EQ(Read("<M3L>1<*><M3L>0<*>"), "M3L=1|M3L=0|");
  EXPECT_EQ(Read("<CTY> New York <*>"), "CTY= New York |");
  EXPECT_EQ(Read("<CTY>M\xC3\xBCnchen<*>"), "CTY=M\xC3\xBCnchen|");
}

TEST(ParseEis, EndOrNextTagClosesAValue) {
  EXPECT_EQ(Read("<GEOC>Ger"), "GEOC=Ger|");
  EXPECT_EQ(Read("<GEOC>"), "GEOC=|");
  EXPECT_EQ(Read("<GEOC>Ger<GEOS>Ba<*>"), "GEOC=Ger|GEOS=Ba|");
  EXPECT_EQ(Read("<GEOC>Ger<"), "GEOC=Ger|");
}

TEST(ParseEis, SkipsWhatIsNoPair) {
  EXPECT_EQ(Read(""), "");
  EXPECT_EQ(Read("Germany"), "");
  EXPECT_EQ(Read("x <GEOC>Ger<*> y"), "GEOC=Ger|");
  for (const char* text :
       {"<", "<>", "<*>", "<geoc>Ger<*>", "<GEOC Ger<*>", "< GEOC>Ger<*>", ">"}) {
    EXPECT_EQ(Read(text), "") << text;
  }
}

TEST(ParseEis, KeepsAGreaterSignInAValue) {
  EXPECT_EQ(Read("<A>1>0<*>"), "A=1>0|");
}

TEST(ParseEis, TagsAreBounded) {
  const std::string longest(kMaxEisTag, 'A');
  EXPECT_EQ(Read("<" + longest + ">1<*>"), longest + "=1|");
  EXPECT_EQ(Read("<A" + longest + ">1<*>"), "");
}

TEST(ParseEis, ValuesAreCut) {
  const std::string longest(kMaxEisValue, 'x');
  EXPECT_EQ(Read("<A>" + longest + "<*>"), "A=" + longest + "|");
  EXPECT_EQ(Read("<A>" + longest + "y<*><B>1<*>"), "A=" + longest + "|B=1|");
}

TEST(ParseEis, PairsAreBounded) {
  std::string text;
  for (std::size_t index = 0; index < kMaxEisPairs + 3; ++index) AppendEis(text, "A", "1");
  EXPECT_EQ(ParseEis(text).size(), kMaxEisPairs);
}

TEST(ParseEis, EveryPrefixReadsAsAPrefix) {
  const std::string text = "<GEOC>Germany<*><GEOS>Bayern<*><CTY>Passau<*>";
  const std::string whole = Read(text);
  for (std::size_t length = 0; length < text.size(); ++length) {
    std::string part = Read(text.substr(0, length));
    if (!part.empty()) part.pop_back();  // the value may go on behind the cut
    EXPECT_EQ(whole.compare(0, part.size(), part), 0) << length;
  }
}

TEST(FindEis, GivesTheFirstOfATag) {
  const auto pairs = ParseEis("<A>1<*><B><*><A>2<*>");
  EXPECT_EQ(FindEis(pairs, "A"), "1");
  EXPECT_EQ(FindEis(pairs, "B"), "");
  EXPECT_EQ(FindEis(pairs, "C"), std::nullopt);
}

TEST(AppendEis, WritesWhatTheReaderReads) {
  std::string text = "x";
  AppendEis(text, "GEOC", "Germany");
  AppendEis(text, "GEOS", "");
  EXPECT_EQ(text, "x<GEOC>Germany<*><GEOS><*>");
  EXPECT_EQ(Read(text), "GEOC=Germany|GEOS=|");
}

TEST(AppendEis, LeavesOutWhatWouldBreakThePair) {
  std::string text;
  AppendEis(text, "A", "1<*>2");
  EXPECT_EQ(text, "<A>1*>2<*>");
  EXPECT_EQ(Read(text), "A=1*>2|");
}

}  // namespace
}  // namespace ventrik::bench
