// SPDX-License-Identifier: Apache-2.0
// The texts of searches, lists and data sources.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

TEST(RespGetAvailableInfo, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("2D010000 02000000 04000000 'in' 0000 'avai' 00000000")),
            "RESP_GET_AVAILABLE_INFO> inputEIS: \"in\"\n"
            "RESP_GET_AVAILABLE_INFO> availableTypesEIS: \"avai\"\n");
}

TEST(RespGetAvailableInfo, WithoutTextsShowsBothLines) {
  EXPECT_EQ(TextOf(Hex("2D010000 00000000 00000000")),
            "RESP_GET_AVAILABLE_INFO> inputEIS: \"\"\n"
            "RESP_GET_AVAILABLE_INFO> availableTypesEIS: \"\"\n");
}

std::string Spell(const std::string& input, const std::string& valid, const std::string& next,
                  const std::string& offered, const std::string& count,
                  const std::string& fullMatch) {
  return "RESP_GET_SPELL> inputEIS: \"" + input + "\"\nRESP_GET_SPELL> validState: " + valid +
         "\nRESP_GET_SPELL> nextAvailableCharacters: \"" + next +
         "\"\nRESP_GET_SPELL> offeredCharacters: \"" + offered +
         "\"\nRESP_GET_SPELL> count: " + count + "\nRESP_GET_SPELL> isFullMatch: " + fullMatch +
         "\n";
}

TEST(RespGetSpell, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("2F010000 02000000 01000000 03000000 01000000 0C000000 01000000 'in' 0000 "
                       "'ABC' 00 'D' 000000")),
            Spell("in", "valid", "ABC", "D", "12", "on"));
}

TEST(RespGetSpell, AbsentStringsTakeNoRoom) {
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 01000000 00000000 01000000 00000000 00000000 "
                       "'D' 000000")),
            Spell("", "valid", "", "D", "0", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 01000000 03000000 00000000 00000000 00000000 "
                       "'ABC' 00")),
            Spell("", "valid", "ABC", "", "0", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 00000000 00000000 00000000 00000000 00000000")),
            Spell("", "invalid", "", "", "0", "off"));
}

TEST(RespGetSpell, OnlyOneIsValidAndOnlyOneIsOn) {
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 02000000 00000000 00000000 FFFFFFFF 02000000")),
            Spell("", "invalid", "", "", "-1", "off"));
  EXPECT_EQ(TextOf(Hex("2F010000 00000000 FFFFFFFF 00000000 00000000 00000000 FFFFFFFF")),
            Spell("", "invalid", "", "", "0", "off"));
}

// `sorts` and `fields` as they stand between their label and the line end.
std::string ListInfo(const std::string& input, const std::string& valid, const std::string& sorts,
                     const std::string& fields, const std::string& output) {
  return "RESP_GET_LIST_INFO> inputEIS: \"" + input +
         "\"\nRESP_GET_LIST_INFO> validState: " + valid +
         "\nRESP_GET_LIST_INFO> sortOptions: " + sorts +
         "\nRESP_GET_LIST_INFO> fieldOptions: " + fields + "\nRESP_GET_LIST_INFO> outputEIS: \"" +
         output + "\"\n";
}

TEST(RespGetListInfo, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("31010000 02000000 01000000 02000000 02000000 03000000 'in' 0000 01000000 "
                       "10000000 'name' 00000000 'geo' 00 'out' 00")),
            ListInfo("in", "valid", "ascending|hierarchicalSort", "\"name\" \"geo\" ", "out"));
}

TEST(RespGetListInfo, WithoutOptionsTheLabelsStandAlone) {
  EXPECT_EQ(TextOf(Hex("31010000 00000000 00000000 00000000 00000000 00000000")),
            ListInfo("", "invalid", "", "", ""));
}

TEST(RespGetListInfo, SortOptionsWithoutANameAreNumbers) {
  EXPECT_EQ(TextOf(Hex("31010000 00000000 02000000 05000000 00000000 00000000 00000000 03000000 "
                       "40000000 FFFFFFFF 20000000")),
            ListInfo("", "invalid", "defaultSort|3|64|-1|hierarchicalDescSort", "", ""));
}

TEST(RespGetListInfo, SortOptionsAreWordsWithNoTerminatorBetweenThem) {
  EXPECT_EQ(TextOf(Hex("31010000 00000000 01000000 01000000 01000000 00000000 'abcd' 'efgh' "
                       "00000000")),
            ListInfo("", "valid", "1684234849", "\"efgh\" ", ""));
}

TEST(RespGetListInfo, CountsThatLieEndWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("31010000 00000000 01000000 FFFFFF7F FFFFFF7F 01000000 01000000 02000000")),
            ListInfo("", "valid", "ascending|descending", "", ""));
  EXPECT_EQ(TextOf(Hex("31010000 00000000 01000000 FFFFFFFF FFFFFF7F 01000000 'a' 000000 'b'")),
            ListInfo("", "valid", "", "\"a\" \"b\" ", ""));
  EXPECT_EQ(TextOf(Hex("31010000 00000000 01000000 00000080 00000080 01000000 'out' 00")),
            ListInfo("", "valid", "", "", "out"));
}

TEST(RespGetListInfo, ManyOptionsAreAllShown) {
  Bytes sorts;
  Bytes fields;
  std::string sortTexts;
  std::string fieldTexts;
  for (int i = 0; i < 3000; ++i) {
    sorts = std::move(sorts) + Word(8);
    sortTexts += i == 0 ? "farFirst" : "|farFirst";
    fields = std::move(fields) + Packed("field" + std::to_string(i));
    fieldTexts += "\"field" + std::to_string(i) + "\" ";
  }
  const std::string text = TextOf(Hex("31010000 00000000 01000000 B80B0000 B80B0000 03000000") +
                                  sorts + fields + Packed("out"));
  EXPECT_TRUE(text == ListInfo("", "valid", sortTexts, fieldTexts, "out"));
}

// `options` and `items` as they stand between their label and the next.
std::string List(const std::string& input, const std::string& valid, const std::string& start,
                 const std::string& count, const std::string& options, const std::string& items,
                 const std::string& output, const std::string& complete) {
  return "RESP_GET_LIST> inputEIS: \"" + input + "\"\nRESP_GET_LIST> validState: " + valid +
         "\nRESP_GET_LIST> startIndex: " + start + "\nRESP_GET_LIST> resultCount: " + count +
         "\nRESP_GET_LIST> fieldOptions: " + options + "\nRESP_GET_LIST> itemList:\n" + items +
         "\nRESP_GET_LIST> outputEIS: \"" + output +
         "\"\nRESP_GET_LIST> completeState: " + complete + "\n";
}

TEST(RespGetList, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("33010000 02000000 01000000 01000000 32000000 4D000000 02000000 02000000 "
                       "03000000 01000000 'in' 0000 'opt' 00 'more' 00000000 'row1' 00000000 "
                       "'r2' 0000 'out' 00")),
            List("in", "valid", "1", "50", "\"opt\" \"more\" ", "   1. (row1)\n   2. (r2)\n", "out",
                 "on"));
}

TEST(RespGetList, WithoutItemsShowsTheLabelAndAnEmptyLine) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 02000000 01000000 00000000 00000000 00000000 00000000 "
                       "00000000 02000000")),
            List("", "invalid", "1", "0", "", "", "", "off"));
}

TEST(RespGetList, NumbersGoOnFromTheStartIndex) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 33000000 02000000 00000000 00000000 02000000 "
                       "00000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "51", "2", "", "   51. (a)\n   52. (b)\n", "", "on"));
}

TEST(RespGetList, NumbersMayBeNegative) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 FFFFFFFF FFFFFFFF FEFFFFFF 00000000 00000000 02000000 "
                       "00000000 FFFFFFFF 'a' 000000 'b' 000000")),
            List("", "invalid", "-1", "-2", "", "   -1. (a)\n   0. (b)\n", "", "off"));
}

TEST(RespGetList, NumbersWrapRoundAsAWordDoes) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 FFFFFF7F 02000000 00000000 00000000 02000000 "
                       "00000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "2147483647", "2", "", "   2147483647. (a)\n   -2147483648. (b)\n",
                 "", "on"));
}

TEST(RespGetList, EmptyItemsAreItems) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 01000000 02000000 "
                       "01000000 01000000 00000000 00000000 00000000 'x' 000000")),
            List("", "valid", "1", "2", "\"\" ", "   1. ()\n   2. ()\n", "x", "on"));
}

TEST(RespGetList, ManyLongItemsAreAllShown) {
  Bytes message =
      Hex("33010000 00000000 01000000 01000000 E8030000 00000000 00000000 E8030000 "
          "00000000 01000000");
  std::string items;
  for (int i = 1; i <= 1000; ++i) {
    const std::string item(static_cast<std::size_t>(i * 4 - 1), 'x');
    message = std::move(message) + Packed(item);
    items += "   " + std::to_string(i) + ". (" + item + ")\n";
  }
  EXPECT_TRUE(TextOf(message) == List("", "valid", "1", "1000", "", items, "", "on"));
}

TEST(RespGetList, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 00000000 FFFFFF7F "
                       "01000000 01000000 'a' 000000 'b' 000000")),
            List("", "valid", "1", "2", "", "   1. (a)\n   2. (b)\n", "", "on"));
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 FFFFFFFF FFFFFFFF "
                       "01000000 01000000 'a' 000000")),
            List("", "valid", "1", "2", "", "", "a", "on"));
}

TEST(RespGetList, LastTextMayLackItsTerminator) {
  EXPECT_EQ(TextOf(Hex("33010000 00000000 01000000 01000000 02000000 00000000 00000000 01000000 "
                       "00000000 01000000 'abcde'")),
            List("", "valid", "1", "2", "", "   1. (abcde)\n", "", "on"));
}

std::string Details(const std::string& input, const std::string& valid, const std::string& fields,
                    const std::string& output) {
  return "RESP_GET_DETAILS> inputEIS: \"" + input + "\"\nRESP_GET_DETAILS> validState: " + valid +
         "\nRESP_GET_DETAILS> requestedFields: " + fields + "\nRESP_GET_DETAILS> outputEIS: \"" +
         output + "\"\n";
}

TEST(RespGetDetails, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("35010000 02000000 01000000 02000000 03000000 'in' 0000 'GEO' 00 "
                       "'NAME' 00000000 'out' 00")),
            Details("in", "valid", "\"GEO\" \"NAME\" ", "out"));
}

TEST(RespGetDetails, WithoutFieldsTheLabelStandsAlone) {
  EXPECT_EQ(TextOf(Hex("35010000 00000000 03000000 00000000 00000000")),
            Details("", "invalid", "", ""));
}

TEST(RespGetDetails, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("35010000 00000000 01000000 FFFFFF7F 03000000 'GEO' 00 'out' 00")),
            Details("", "valid", "\"GEO\" \"out\" ", ""));
  EXPECT_EQ(TextOf(Hex("35010000 00000000 01000000 FFFFFFFF 03000000 'out' 00")),
            Details("", "valid", "", "out"));
}

std::string Resolved(const std::string& valid, const std::string& ambiguity,
                     const std::string& type, const std::string& unresolved) {
  return "RESP_RESOLVE_LOCATION> inputEIS: \"in\"\nRESP_RESOLVE_LOCATION> validState: " + valid +
         "\nRESP_RESOLVE_LOCATION> outputEIS: \"out\"\nRESP_RESOLVE_LOCATION> ambiguity: \"" +
         ambiguity + "\"\nRESP_RESOLVE_LOCATION> ambiguityType: \"" + type +
         "\"\nRESP_RESOLVE_LOCATION> unresolvedElements: \"" + unresolved + "\"\n\n";
}

TEST(RespResolveLocation, ShowsAllItsFieldsAndAnEmptyLine) {
  EXPECT_EQ(TextOf(Hex("37010000 02000000 01000000 03000000 01000000 04000000 02000000 'in' 0000 "
                       "'out' 00 'type' 00000000 'un' 0000")),
            Resolved("valid", "ambiguous", "type", "un"));
}

TEST(RespResolveLocation, OnlyOneIsAmbiguous) {
  for (const char* ambiguity : {"00000000", "02000000", "FFFFFFFF"}) {
    EXPECT_EQ(TextOf(Hex("37010000 02000000 00000000 03000000" + std::string(ambiguity) +
                         "00000000 00000000 'in' 0000 'out' 00")),
              Resolved("invalid", "unambiguous", "", ""));
  }
}

TEST(RespResolveLocation, LinesOfInputAndOutputAreCut) {
  const std::size_t lineEnd = 2;  // the quote and the line end
  const std::string inLabel = "RESP_RESOLVE_LOCATION> inputEIS: \"";
  const std::string outLabel = "RESP_RESOLVE_LOCATION> outputEIS: \"";
  for (const std::size_t length : {16382u, 16383u, 16384u, 16385u, 16386u, 40000u}) {
    const std::string input(length - inLabel.size() - lineEnd, 'i');
    const std::string output(length - outLabel.size() - lineEnd, 'o');
    const std::string inLine = (inLabel + input + "\"\n").substr(0, 16383);
    const std::string outLine = (outLabel + output + "\"\n").substr(0, 16383);
    const std::string text = TextOf(Hex("37010000 01000000 01000000 01000000 01000000 00000000 "
                                        "00000000") +
                                    Packed(input) + Packed(output));
    EXPECT_TRUE(text == inLine + "RESP_RESOLVE_LOCATION> validState: valid\n" + outLine +
                            "RESP_RESOLVE_LOCATION> ambiguity: \"ambiguous\"\n"
                            "RESP_RESOLVE_LOCATION> ambiguityType: \"\"\n"
                            "RESP_RESOLVE_LOCATION> unresolvedElements: \"\"\n\n")
        << length;
  }
}

TEST(RespResolveLocation, OtherLinesAreNotCut) {
  const std::string type(40000, 't');
  const std::string unresolved(50000, 'u');
  EXPECT_TRUE(TextOf(Hex("37010000 02000000 01000000 03000000 00000000 01000000 01000000 'in' 0000 "
                         "'out' 00") +
                     Packed(type) + Packed(unresolved)) ==
              Resolved("valid", "unambiguous", type, unresolved));
}

TEST(RespAddDataSrc, ShowsBothItsFields) {
  EXPECT_EQ(TextOf(Hex("39010000 02000000 01000000 'in' 0000")),
            "RESP_ADD_DATA_SRC> inputEIS: \"in\"\nRESP_ADD_DATA_SRC> validState: valid\n");
  EXPECT_EQ(TextOf(Hex("39010000 00000000 02000000")),
            "RESP_ADD_DATA_SRC> inputEIS: \"\"\nRESP_ADD_DATA_SRC> validState: invalid\n");
}

TEST(RespRemDataSrc, ShowsBothItsFields) {
  EXPECT_EQ(TextOf(Hex("3B010000 02000000 01000000 'in' 0000")),
            "RESP_REM_DATA_SRC> inputEIS: \"in\"\nRESP_REM_DATA_SRC> validState: valid\n");
  EXPECT_EQ(TextOf(Hex("3B010000 00000000 FFFFFFFF")),
            "RESP_REM_DATA_SRC> inputEIS: \"\"\nRESP_REM_DATA_SRC> validState: invalid\n");
}

}  // namespace
}  // namespace ventrik::tests
