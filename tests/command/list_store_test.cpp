// SPDX-License-Identifier: Apache-2.0
#include "command/list_store.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/support/recorded_console.h"

namespace ventrik::tests {
namespace {

using Narrow = std::vector<std::string>;

std::shared_ptr<const SStringArray> Attributes(const Narrow& items) {
  return std::make_shared<SStringArray>(SStringArray{items});
}

// A list of destinations named "0", "1" and so on, each with its name as its only attribute,
// without the growth that adding them one by one would have.
SDestinationElementList Numbered(int count) {
  SDestinationElementList list;
  for (int i = 0; i < count; ++i) {
    list.items.push_back({std::to_string(i), Attributes({std::to_string(i)})});
  }
  return list;
}

void AppendNumbered(SDestinationElementList& list, int number) {
  AppendItem(list, {std::to_string(number), Attributes({std::to_string(number)})});
}

// The elements in their text forms.
Narrow Texts(const SDestinationElementList& list) {
  Narrow texts;
  for (const SDestinationElement& element : list.items) texts.push_back(DestinationText(element));
  return texts;
}

std::string NumberedText(int number) {
  const std::string digits = std::to_string(number);
  return "(\"" + digits + "\",(\"" + digits + "\"))";
}

const std::string kLostText = "(\"\",())";

class ListStoreTest : public testing::Test {
 protected:
  // One list of each kind under the name.
  void FillAllKinds(const std::string& name) {
    AppendItem(FindOrCreateList(app_.stringArrayLists, name), "text");
    AppendItem(FindOrCreateList(app_.routeHandleLists, name), 7);
    AppendItem(FindOrCreateList(app_.destinationElementLists, name), {"A", Attributes({"x", "y"})});
    AppendItem(FindOrCreateList(app_.routeModeLists, name), 3);
  }

  // In how many kinds the name stands.
  std::size_t Kinds(const std::string& name) const {
    return app_.stringArrayLists.count(name) + app_.routeHandleLists.count(name) +
           app_.destinationElementLists.count(name) + app_.routeModeLists.count(name);
  }

  ClientApp app_;
};

TEST_F(ListStoreTest, FindingDoesNotCreate) {
  EXPECT_EQ(FindList(app_.stringArrayLists, "a"), nullptr);
  EXPECT_EQ(Kinds("a"), 0u);
}

TEST_F(ListStoreTest, ListIsCreatedEmptyAndOnce) {
  SStringArray& list = FindOrCreateList(app_.stringArrayLists, "a");
  EXPECT_TRUE(list.items.empty());
  EXPECT_EQ(&FindOrCreateList(app_.stringArrayLists, "a"), &list);
  EXPECT_EQ(FindList(app_.stringArrayLists, "a"), &list);
  EXPECT_EQ(FindOrCreateSharedList(app_.stringArrayLists, "a").get(), &list);
  EXPECT_EQ(Kinds("a"), 1u);
}

TEST_F(ListStoreTest, SharedListOutlivesItsName) {
  const auto list = FindOrCreateSharedList(app_.stringArrayLists, "a");
  AppendItem(*list, "x");
  DeleteLists(app_, "a");
  EXPECT_EQ(FindList(app_.stringArrayLists, "a"), nullptr);
  EXPECT_EQ(list->items, Narrow{"x"});
}

TEST_F(ListStoreTest, NamesSortByByteValueAndThenByLength) {
  for (const char* name : {"b", "\xE9", "aa", "a", "Z", "", "a\x01"}) {
    FindOrCreateList(app_.routeHandleLists, name);
  }
  Narrow names;
  for (const auto& entry : app_.routeHandleLists) names.push_back(entry.first);
  EXPECT_EQ(names, (Narrow{"", "Z", "a", "a\x01", "aa", "b", "\xE9"}));
}

TEST(AppendItem, StringsAndNumbersSurviveEveryGrowth) {
  SStringArray strings;
  SRouteHandleList handles;
  SRouteModeList modes;
  Narrow texts;
  std::vector<std::int32_t> numbers;
  for (int i = 0; i < 45; ++i) {
    texts.push_back("text " + std::to_string(i));
    numbers.push_back(-i);
    AppendItem(strings, texts.back());
    AppendItem(handles, -i);
    AppendItem(modes, -i);
    EXPECT_EQ(strings.items, texts);
    EXPECT_EQ(handles.items, numbers);
    EXPECT_EQ(modes.items, numbers);
  }
}

TEST(AppendItem, DestinationsStayUpTo10) {
  SDestinationElementList list;
  Narrow expected;
  for (int i = 0; i < 10; ++i) {
    AppendNumbered(list, i);
    expected.push_back(NumberedText(i));
    EXPECT_EQ(Texts(list), expected);
  }
}

TEST(AppendItem, Oddity11thDestinationLosesTheSecondHalf) {
  SDestinationElementList list;
  for (int i = 0; i < 11; ++i) AppendNumbered(list, i);
  EXPECT_EQ(Texts(list), (Narrow{NumberedText(0), NumberedText(1), NumberedText(2), NumberedText(3),
                                 NumberedText(4), kLostText, kLostText, kLostText, kLostText,
                                 kLostText, NumberedText(10)}));
}

TEST(AppendItem, OddityHalfOfAFullListSurvives) {
  for (const int count : {10, 20, 30, 40}) {
    SDestinationElementList list = Numbered(count);
    AppendNumbered(list, count);
    Narrow expected;
    for (int i = 0; i < count; ++i) expected.push_back(i < count / 2 ? NumberedText(i) : kLostText);
    expected.push_back(NumberedText(count));
    EXPECT_EQ(Texts(list), expected) << count;
  }
}

TEST(AppendItem, DestinationsStayWhileThereIsRoom) {
  for (const int count : {11, 15, 19, 21, 29, 31}) {
    SDestinationElementList list = Numbered(count);
    AppendNumbered(list, count);
    EXPECT_EQ(Texts(list), Texts(Numbered(count + 1))) << count;
  }
}

// By tens and not by doubling: after 10 and 20 comes 30.
TEST(AppendItem, OddityLossesAddUp) {
  SDestinationElementList list;
  Narrow expected;
  for (int i = 0; i < 35; ++i) {
    if (i > 0 && i % 10 == 0) {
      for (std::size_t at = expected.size() / 2; at < expected.size(); ++at) {
        expected[at] = kLostText;
      }
    }
    AppendNumbered(list, i);
    expected.push_back(NumberedText(i));
    ASSERT_EQ(Texts(list), expected) << i;
  }
}

TEST(AppendItem, LostDestinationsStillHaveAttributes) {
  SDestinationElementList list = Numbered(10);
  AppendNumbered(list, 10);
  for (const SDestinationElement& element : list.items) ASSERT_NE(element.attributes, nullptr);
}

TEST(AppendItem, DestinationsThatSurviveKeepTheirSharedAttributes) {
  const auto attributes = std::make_shared<SStringArray>();
  SDestinationElementList list;
  for (int i = 0; i < 11; ++i) AppendItem(list, {"d", attributes});
  AppendItem(*attributes, "late");
  EXPECT_EQ(DestinationText(list.items[4]), "(\"d\",(\"late\"))");
  EXPECT_EQ(DestinationText(list.items[5]), kLostText);
  EXPECT_EQ(DestinationText(list.items[10]), "(\"d\",(\"late\"))");
}

TEST(DestinationText, JoinsTheAttributesWithCommas) {
  EXPECT_EQ(DestinationText({"A", Attributes({})}), "(\"A\",())");
  EXPECT_EQ(DestinationText({"A", Attributes({"x"})}), "(\"A\",(\"x\"))");
  EXPECT_EQ(DestinationText({"A", Attributes({"x", "y"})}), "(\"A\",(\"x\",\"y\"))");
  EXPECT_EQ(DestinationText({"A", Attributes({"x", "y", "z"})}), "(\"A\",(\"x\",\"y\",\"z\"))");
}

TEST(DestinationText, EmptyTextsStayBetweenTheirQuotes) {
  EXPECT_EQ(DestinationText({"", Attributes({})}), "(\"\",())");
  EXPECT_EQ(DestinationText({"", Attributes({""})}), "(\"\",(\"\"))");
  EXPECT_EQ(DestinationText({"A", Attributes({"", ""})}), "(\"A\",(\"\",\"\"))");
}

TEST(DestinationText, NothingInTheTextsIsEscapedOrReplaced) {
  EXPECT_EQ(DestinationText({"%s\"\\,", Attributes({"%d)", "\xC3\xA9"})}),
            "(\"%s\"\\,\",(\"%d)\",\"\xC3\xA9\"))");
}

TEST_F(ListStoreTest, ItemsOfEachKindAsText) {
  FillAllKinds("a");
  AppendItem(FindOrCreateList(app_.stringArrayLists, "a"), "\xC3\xA9");
  AppendItem(FindOrCreateList(app_.routeHandleLists, "a"),
             std::numeric_limits<std::int32_t>::min());
  AppendItem(FindOrCreateList(app_.routeModeLists, "a"), 0x400000);
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), (Narrow{"text", "\xC3\xA9"}));
  EXPECT_EQ(ListItemsAsText(app_, L"SRouteHandleList", "a"), (Narrow{"7", "-2147483648"}));
  EXPECT_EQ(ListItemsAsText(app_, L"SDestinationElementList", "a"),
            Narrow{"(\"A\",(\"x\",\"y\"))"});
  EXPECT_EQ(ListItemsAsText(app_, L"SRouteModeList", "a"), (Narrow{"3", "4194304"}));
}

TEST_F(ListStoreTest, UnknownKindOrNameHasNoItems) {
  FillAllKinds("a");
  for (const wchar_t* type :
       {L"", L"SRoadSegmentList", L"sstringarray", L"SStringArray ", L"SStringArra"}) {
    EXPECT_EQ(ListItemsAsText(app_, type, "a"), Narrow{}) << type;
  }
  for (const char* name : {"", "A", "ab", "b"}) {
    EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", name), Narrow{}) << name;
  }
  EXPECT_EQ(Kinds("b"), 0u) << "asking creates no list";
}

TEST_F(ListStoreTest, EmptyListHasNoItems) {
  FindOrCreateList(app_.stringArrayLists, "a");
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "a"), Narrow{});
}

TEST_F(ListStoreTest, DeletingAListOfATypeLeavesTheOthers) {
  for (const wchar_t* type :
       {L"SStringArray", L"SRouteHandleList", L"SDestinationElementList", L"SRouteModeList"}) {
    FillAllKinds("a");
    FillAllKinds("b");
    DeleteListOfType(app_, type, "a");
    EXPECT_EQ(Kinds("a"), 3u) << type;
    EXPECT_EQ(ListItemsAsText(app_, type, "a"), Narrow{}) << type;
    EXPECT_EQ(Kinds("b"), 4u) << type;
    ClearAllLists(app_);
  }
}

TEST_F(ListStoreTest, DeletingAnUnknownTypeOrNameDoesNothing) {
  FillAllKinds("a");
  DeleteListOfType(app_, L"SRoadSegmentList", "a");
  DeleteListOfType(app_, L"", "a");
  DeleteListOfType(app_, L"SStringArray", "b");
  DeleteListOfType(app_, L"SStringArray", "");
  EXPECT_EQ(Kinds("a"), 4u);
}

TEST_F(ListStoreTest, DeletingANameTakesAllKinds) {
  FillAllKinds("a");
  FillAllKinds("aa");
  DeleteLists(app_, "a");
  EXPECT_EQ(Kinds("a"), 0u);
  EXPECT_EQ(Kinds("aa"), 4u);
  DeleteLists(app_, "a");
  EXPECT_EQ(Kinds("aa"), 4u);
}

TEST_F(ListStoreTest, ClearingTakesEveryName) {
  FillAllKinds("a");
  FillAllKinds("");
  FindOrCreateList(app_.routeModeLists, "b");
  ClearAllLists(app_);
  EXPECT_EQ(app_.stringArrayLists.size(), 0u);
  EXPECT_EQ(app_.routeHandleLists.size(), 0u);
  EXPECT_EQ(app_.destinationElementLists.size(), 0u);
  EXPECT_EQ(app_.routeModeLists.size(), 0u);
}

// A list that is made under the old name later is another one.
TEST_F(ListStoreTest, DestinationKeepsReadingADeletedList) {
  AppendItem(FindOrCreateList(app_.stringArrayLists, "x"), "old");
  AppendItem(FindOrCreateList(app_.destinationElementLists, "d"),
             {"A", FindOrCreateSharedList(app_.stringArrayLists, "x")});
  DeleteListOfType(app_, L"SStringArray", "x");
  AppendItem(FindOrCreateList(app_.stringArrayLists, "x"), "new");
  EXPECT_EQ(ListItemsAsText(app_, L"SDestinationElementList", "d"), Narrow{"(\"A\",(\"old\"))"});
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "x"), Narrow{"new"});
}

TEST_F(ListStoreTest, DeletingADestinationLeavesItsAttributes) {
  AppendItem(FindOrCreateList(app_.stringArrayLists, "x"), "kept");
  AppendItem(FindOrCreateList(app_.destinationElementLists, "d"),
             {"A", FindOrCreateSharedList(app_.stringArrayLists, "x")});
  DeleteLists(app_, "d");
  EXPECT_EQ(ListItemsAsText(app_, L"SStringArray", "x"), Narrow{"kept"});
}

TEST_F(ListStoreTest, PrintingGoesThroughTheKindsInOrder) {
  RecordedConsole console;
  FillAllKinds("a");
  FillAllKinds("b");
  PrintLists(app_, "a");
  EXPECT_EQ(console.TakeText(),
            L"Type: SStringArray\n"
            L"Item[0]='text'\n"
            L"Type: SRouteHandleList\n"
            L"Item[0]=7\n"
            L"Type: SDestinationElementList\n"
            L"Item[0]=(\"A\",(\"x\",\"y\"))\n"
            L"Type: SRouteModeList\n"
            L"Item[0]=fastest|shortest\n");
}

TEST_F(ListStoreTest, PrintingAnUnknownNamePrintsNothing) {
  RecordedConsole console;
  FillAllKinds("a");
  PrintLists(app_, "A");
  PrintLists(app_, "");
  EXPECT_EQ(console.TakeTexts().size(), 0u);
  EXPECT_EQ(Kinds("A"), 0u);
}

}  // namespace
}  // namespace ventrik::tests
