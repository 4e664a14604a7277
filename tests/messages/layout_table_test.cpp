// SPDX-License-Identifier: Apache-2.0
#include "messages/layout_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "messages/catalogue.h"

namespace ventrik {
namespace {

TEST(LayoutTable, EveryMessageHasALayout) {
  for (const CatalogueRow& row : kCatalogue) {
    const MessageLayout* layout = FindLayout(row.id);
    ASSERT_NE(layout, nullptr) << row.name;
    EXPECT_EQ(layout->id, row.id);
  }
}

TEST(LayoutTable, UnknownNumbersHaveNone) {
  EXPECT_EQ(FindLayout(-1), nullptr);
  EXPECT_EQ(FindLayout(2), nullptr);
  EXPECT_EQ(FindLayout(9015), nullptr);
}

TEST(LayoutTable, NamesAreUniqueWithinAMessage) {
  for (const CatalogueRow& row : kCatalogue) {
    std::set<std::string_view> names;
    for (const LayoutField& field : *FindLayout(row.id)) {
      EXPECT_TRUE(names.insert(field.name).second) << row.name << " " << field.name;
      EXPECT_FALSE(field.name.empty()) << row.name;
    }
  }
}

// What follows these kinds has no place of its own, since they take the rest or aren't padded.
TEST(LayoutTable, OnlyTheLastFieldCanBeOpenEnded) {
  for (const CatalogueRow& row : kCatalogue) {
    const MessageLayout& layout = *FindLayout(row.id);
    for (std::size_t i = 0; i + 1 < layout.count; ++i) {
      EXPECT_NE(layout.fields[i].kind, FieldKind::Bytes) << row.name;
      EXPECT_NE(layout.fields[i].kind, FieldKind::BareText) << row.name;
    }
  }
}

TEST(LayoutTable, DoublesLieAtMultiplesOfEight) {
  int doubles = 0;
  for (const CatalogueRow& row : kCatalogue) {
    std::size_t word = 1;
    for (const LayoutField& field : *FindLayout(row.id)) {
      if (field.kind == FieldKind::Double) {
        EXPECT_EQ(word % 2, 0u) << row.name << " " << field.name;
        ++doubles;
      }
      word += HeaderWords(field.kind);
    }
  }
  EXPECT_EQ(doubles, 4) << "two of the demo mode, two of the pick response";
}

// A word whose meaning nobody knows is named after its place, so the name must tell the place.
TEST(LayoutTable, NamelessWordsAreNamedAfterTheirPlace) {
  std::set<std::string> found;
  for (const CatalogueRow& row : kCatalogue) {
    std::size_t word = 1;
    for (const LayoutField& field : *FindLayout(row.id)) {
      const std::string name(field.name);
      if (name.substr(0, 4) == "word") {
        EXPECT_EQ(name, "word" + std::to_string(word)) << row.name;
        found.insert(std::string(row.name) + " " + name);
      }
      word += HeaderWords(field.kind);
    }
  }
  EXPECT_EQ(found, (std::set<std::string>{
                       "RESP_GET_LIST word5", "RESP_PICK_INFO word11", "RESP_BLOCK_ROUTE word1",
                       "INFO_TMC_ROUTES_AVAILABLE word4", "INFO_TMC_ROUTE_ACCEPTED word1"}));
}

// The length word of a response's text tells whether the text is there, but for these, where nobody
// looks at the word. A request's text is always there.
TEST(LayoutTable, WhoseTextsAreThereWhateverTheirLength) {
  std::set<std::string> found;
  for (const CatalogueRow& row : kCatalogue) {
    const std::string name = row.name;
    const bool request = name.substr(0, 5) == "REQU_";
    for (const LayoutField& field : *FindLayout(row.id)) {
      EXPECT_FALSE(request && field.kind == FieldKind::String) << name << " " << field.name;
      if (!request && field.kind == FieldKind::Text) found.insert(name);
    }
  }
  EXPECT_EQ(found, (std::set<std::string>{"RESP_SCREEN_SHOT", "RESP_CHECK_FOR_UPDATE",
                                          "RESP_STORE_DEVICE_STATUS"}));
}

TEST(LayoutTable, HeaderSizesCountEveryWord) {
  EXPECT_EQ(FindLayout(REQU_INIT)->HeaderSize(), 1u);
  EXPECT_EQ(FindLayout(REQU_SET_DEMO_MODE)->HeaderSize(), 6u);
  EXPECT_EQ(FindLayout(RESP_PICK_INFO)->HeaderSize(), 12u);
  EXPECT_EQ(FindLayout(GPS_DATA)->HeaderSize(), 1u);
}

TEST(LayoutTable, ARowIsSplitAtItsBlanks) {
  constexpr MessageLayout layout(REQU_INIT, "a:word b:strings");
  ASSERT_EQ(layout.count, 2u);
  EXPECT_EQ(layout.fields[0].name, "a");
  EXPECT_EQ(layout.fields[0].kind, FieldKind::Word);
  EXPECT_EQ(layout.fields[1].name, "b");
  EXPECT_EQ(layout.fields[1].kind, FieldKind::Strings);
  EXPECT_TRUE(layout.rowFits);
}

TEST(LayoutTable, MisspeltRowsAreKnownByTheirKind) {
  EXPECT_EQ(MessageLayout(REQU_INIT, "a").fields[0].kind, FieldKind::Unknown);
  EXPECT_EQ(MessageLayout(REQU_INIT, "a:").fields[0].kind, FieldKind::Unknown);
  EXPECT_EQ(MessageLayout(REQU_INIT, "a:wrod").fields[0].kind, FieldKind::Unknown);
  EXPECT_EQ(MessageLayout(REQU_INIT, "a:word  b:word").fields[1].kind, FieldKind::Unknown);
}

TEST(LayoutTable, ARowWithTooManyFieldsDoesNotFit) {
  std::string row = "f0:word";
  for (std::size_t i = 1; i < kMostFields; ++i) row += " f" + std::to_string(i) + ":word";
  EXPECT_TRUE(MessageLayout(REQU_INIT, row).rowFits);
  row += " last:word";
  EXPECT_FALSE(MessageLayout(REQU_INIT, row).rowFits);
}

}  // namespace
}  // namespace ventrik
