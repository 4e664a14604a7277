// SPDX-License-Identifier: Apache-2.0
#include "messages/message_text.h"

#include <gtest/gtest.h>

namespace ventrik::tests {
namespace {

TEST(AppendFormat, AppendsAsPrintfFormats) {
  std::string text = "> ";
  AppendFormat(text, "%s: %d|%5.2f|%x\n", "count", -7, 1.5, 255u);
  EXPECT_EQ(text, "> count: -7| 1.50|ff\n");
}

TEST(AppendFormat, NothingIsAppendedByAnEmptyText) {
  std::string text = "before";
  AppendFormat(text, "%s", "");
  EXPECT_EQ(text, "before");
}

TEST(AppendFormat, TextMayBeOfAnyLength) {
  for (const std::size_t length : {253u, 254u, 255u, 256u, 100000u}) {
    const std::string longText(length, 'x');
    std::string text = "before ";
    AppendFormat(text, "<%s>", longText.c_str());
    EXPECT_TRUE(text == "before <" + longText + ">") << length;
  }
}

TEST(AppendLine, TakesItsTextsAsTheyAre) {
  std::string text = "one\n";
  AppendLine(text, "name: \"", "%s \xFF", "\"\n");
  EXPECT_EQ(text, "one\nname: \"%s \xFF\"\n");
}

TEST(AppendLine, AnyOfItsTextsMayBeEmpty) {
  std::string text;
  AppendLine(text, "", std::string_view(), "");
  EXPECT_EQ(text, "");
  AppendLine(text, "a", std::string_view(), "b");
  EXPECT_EQ(text, "ab");
}

}  // namespace
}  // namespace ventrik::tests
