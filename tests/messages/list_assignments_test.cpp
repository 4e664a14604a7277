// SPDX-License-Identifier: Apache-2.0
// Variables that take a row of a list response.
#include <gtest/gtest.h>

#include <limits>

#include "messages/function_ids.h"
#include "messages/list_response.h"
#include "tests/messages/handling_fixture.h"

namespace ventrik::tests {
namespace {

using Int = std::numeric_limits<std::int32_t>;

std::string Error(const std::string& number) {
  return "\033[1;31mVARIABLE> Error! Invalid list item number (" + number + ").\n\033[0;37m";
}

std::string Assigned(const std::string& name, const std::string& value) {
  return "VARIABLE> Variable '" + name + "' has new value '" + value + "'.\n";
}

class ListAssignments : public testing::Test {
 protected:
  void Queue(const std::wstring& name, std::int32_t number) {
    app_.pendingListAssignments.With([&](auto& queue) { queue.push_back({name, number}); });
  }

  // The lines that a response with these rows gives.
  std::string Use(const std::vector<std::string_view>& rows, std::int32_t startIndex = 1) {
    ListResponse response{};
    response.startIndex = startIndex;
    response.items = rows;
    std::string text = UseListAssignments(app_, response);
    EXPECT_TRUE(app_.pendingListAssignments.Copy().empty());
    return text;
  }

  VariableTable Variables() { return app_.variables.Copy(); }

  ClientApp app_;
};

TEST_F(ListAssignments, WithoutAnyARowGoesNowhere) {
  EXPECT_EQ(Use({"a"}), "");
  EXPECT_EQ(Variables(), VariableTable{});
}

TEST_F(ListAssignments, RowsAreCountedFromOne) {
  Queue(L"first", 1);
  Queue(L"last", 3);
  EXPECT_EQ(Use({"a", "b", "c"}), Assigned("first", "a") + Assigned("last", "c"));
  EXPECT_EQ(Variables(), (VariableTable{{L"first", L"a"}, {L"last", L"c"}}));
}

TEST_F(ListAssignments, StartIndexDoesntShiftTheRows) {
  for (const std::int32_t start : {51, 0, -1, Int::max(), Int::min()}) {
    Queue(L"x", 2);
    Queue(L"x", start);
    EXPECT_EQ(Use({"a", "b"}, start), Assigned("x", "b") + Error(std::to_string(start)));
  }
}

TEST_F(ListAssignments, SeveralAreDoneInTheirOrder) {
  Queue(L"z", 2);
  Queue(L"gone", 4);
  Queue(L"a", 2);
  Queue(L"z", 1);
  Queue(L"none", 0);
  EXPECT_EQ(Use({"one", "two", "three"}), Assigned("z", "two") + Error("4") + Assigned("a", "two") +
                                              Assigned("z", "one") + Error("0"));
  EXPECT_EQ(Variables(), (VariableTable{{L"z", L"one"}, {L"a", L"two"}}));
}

TEST_F(ListAssignments, NumbersWithoutARowAreErrors) {
  for (const std::int32_t number : {0, -1, 3, 4, Int::max(), Int::min()}) {
    Queue(L"x", number);
    EXPECT_EQ(Use({"a", "b"}), Error(std::to_string(number)));
  }
  EXPECT_EQ(Variables(), VariableTable{});
}

TEST_F(ListAssignments, WithoutRowsEveryNumberIsAnError) {
  for (const std::int32_t number : {1, 0, -1, Int::max()}) {
    Queue(L"x", number);
    EXPECT_EQ(Use({}), Error(std::to_string(number)));
  }
}

TEST_F(ListAssignments, OldValueIsReplacedAndAnErrorKeepsIt) {
  app_.variables.Store({{L"x", L"old"}, {L"y", L"other"}});
  Queue(L"x", 9);
  EXPECT_EQ(Use({"new"}), Error("9"));
  EXPECT_EQ(Variables(), (VariableTable{{L"x", L"old"}, {L"y", L"other"}}));
  Queue(L"x", 1);
  EXPECT_EQ(Use({"new"}), Assigned("x", "new"));
  EXPECT_EQ(Variables(), (VariableTable{{L"x", L"new"}, {L"y", L"other"}}));
}

TEST_F(ListAssignments, EachIsUsedOnce) {
  Queue(L"x", 1);
  Use({"a"});
  EXPECT_EQ(Use({"b"}), "");
  EXPECT_EQ(Variables(), (VariableTable{{L"x", L"a"}}));
}

TEST_F(ListAssignments, EmptyRowAndEmptyNameAreGood) {
  Queue(L"", 1);
  Queue(L"x", 2);
  EXPECT_EQ(Use({"a", ""}), Assigned("", "a") + Assigned("x", ""));
  EXPECT_EQ(Variables(), (VariableTable{{L"", L"a"}, {L"x", L""}}));
}

TEST_F(ListAssignments, TextsArePrintedAsTheyAre) {
  Queue(L"%d", 1);
  EXPECT_EQ(Use({"%s%n $$x$$ \"q\" 'a'"}), Assigned("%d", "%s%n $$x$$ \"q\" 'a'"));
  EXPECT_EQ(Variables(), (VariableTable{{L"%d", L"%s%n $$x$$ \"q\" 'a'"}}));
}

TEST_F(ListAssignments, RowsAndNamesMayBeOfAnyScript) {
  Queue(L"\u00E9\u20AC", 1);
  Queue(L"x", 2);
  EXPECT_EQ(
      Use({"M\xC3\xBCnchen \xE2\x82\xAC", "\xD0\x96"}),
      Assigned("\xC3\xA9\xE2\x82\xAC", "M\xC3\xBCnchen \xE2\x82\xAC") + Assigned("x", "\xD0\x96"));
  EXPECT_EQ(Variables(),
            (VariableTable{{L"\u00E9\u20AC", L"M\u00FCnchen \u20AC"}, {L"x", L"\u0416"}}));
}

TEST_F(ListAssignments, MalformedRowIsPrintedAsItsVariableHasIt) {
  Queue(L"x", 1);
  EXPECT_EQ(Use({"a\x80z\xC3"}), Assigned("x", "a?z?"));
  EXPECT_EQ(Variables(), (VariableTable{{L"x", L"a?z?"}}));
}

TEST_F(ListAssignments, LongRowIsTakenWhole) {
  const std::string row(100'000, 'r');
  Queue(L"x", 1);
  EXPECT_TRUE(Use({row}) == Assigned("x", row));
  EXPECT_TRUE(Variables() == (VariableTable{{L"x", std::wstring(100'000, L'r')}}));
}

TEST_F(ListAssignments, ThousandsAreAllDone) {
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    Queue(L"v" + std::to_wstring(i), i % 3);
    expected += i % 3 == 0 ? Error("0") : Assigned("v" + std::to_string(i), i % 3 == 1 ? "a" : "b");
  }
  EXPECT_TRUE(Use({"a", "b"}) == expected);
  EXPECT_EQ(Variables().size(), 3333u);
}

// The same when a message comes in.

// A response of two rows that claims to have `count`, in hexadecimal digits.
Bytes ListOfTwo(const std::string& count) {
  return Hex("33010000 00000000 01000000 33000000 02000000 00000000 00000000" + count +
             "00000000 01000000 'row1' 00000000 'r' C3A9 00");
}

const std::string kListText =
    "RESP_GET_LIST> inputEIS: \"\"\nRESP_GET_LIST> validState: valid\n"
    "RESP_GET_LIST> startIndex: 51\nRESP_GET_LIST> resultCount: 2\n"
    "RESP_GET_LIST> fieldOptions: \nRESP_GET_LIST> itemList:\n"
    "   51. (row1)\n   52. (r\xC3\xA9)\n\n"
    "RESP_GET_LIST> outputEIS: \"\"\nRESP_GET_LIST> completeState: on\n";

class ListResponseHandling : public HandlingTest {
 protected:
  void Queue(const std::wstring& name, std::int32_t number) {
    app_.pendingListAssignments.With([&](auto& queue) { queue.push_back({name, number}); });
  }

  std::size_t Queued() { return app_.pendingListAssignments.Copy().size(); }

  // The text that is made of `message`.
  std::string TextOf(const Bytes& message) {
    holdOutput = 1;
    printer_.queuedTexts.Store({});
    Handle(message);
    const std::vector<std::string> texts = printer_.queuedTexts.Copy();
    return texts.size() == 1 ? texts[0] : "(not one text)";
  }
};

TEST_F(ListResponseHandling, AssignmentsStandBehindTheResponseInTheSameText) {
  Queue(L"x", 2);
  Queue(L"y", 51);
  EXPECT_EQ(TextOf(ListOfTwo("02000000")), kListText + Assigned("x", "r\xC3\xA9") + Error("51"));
  EXPECT_EQ(app_.variables.Copy(), (VariableTable{{L"x", L"r\u00E9"}}));
  EXPECT_EQ(Queued(), 0u);
}

TEST_F(ListResponseHandling, WithoutAssignmentsThereIsOnlyTheResponse) {
  EXPECT_EQ(TextOf(ListOfTwo("02000000")), kListText);
}

TEST_F(ListResponseHandling, CountThatLiesLeavesTheRowsThatAreThere) {
  for (const char* count : {"03000000", "FFFFFF7F"}) {
    Queue(L"x", 2);
    Queue(L"x", 3);
    Queue(L"x", Int::max());
    EXPECT_EQ(TextOf(ListOfTwo(count)),
              kListText + Assigned("x", "r\xC3\xA9") + Error("3") + Error("2147483647"));
  }
}

TEST_F(ListResponseHandling, CountThatIsTooLowHidesRows) {
  Queue(L"x", 1);
  Queue(L"y", 2);
  Handle(ListOfTwo("01000000"));
  EXPECT_EQ(app_.variables.Copy(), (VariableTable{{L"x", L"row1"}}));
}

TEST_F(ListResponseHandling, ResponseWithoutRowsGivesErrors) {
  for (const Bytes& message : {ListOfTwo("00000000"), ListOfTwo("FFFFFFFF"), Hex("33010000")}) {
    Queue(L"x", 1);
    const std::string text = TextOf(message);
    EXPECT_EQ(text, MessageText(message.Block()) + Error("1"));
    EXPECT_EQ(Queued(), 0u);
  }
  EXPECT_EQ(app_.variables.Copy(), VariableTable{});
}

TEST_F(ListResponseHandling, LastRowMayLackItsTerminator) {
  Bytes message = ListOfTwo("02000000");
  message.value.pop_back();
  Queue(L"x", 2);
  Handle(message);
  EXPECT_EQ(app_.variables.Copy(), (VariableTable{{L"x", L"r\u00E9"}}));
}

TEST_F(ListResponseHandling, InvalidResponseIsUsedToo) {
  Queue(L"x", 1);
  Handle(
      Hex("33010000 00000000 02000000 01000000 01000000 00000000 00000000 01000000 00000000 "
          "02000000 'a' 000000"));
  EXPECT_EQ(app_.variables.Copy(), (VariableTable{{L"x", L"a"}}));
}

TEST_F(ListResponseHandling, VariableIsSetBeforeTheTextShows) {
  Queue(L"x", 1);
  VariableTable shown;
  console_.onPrint = [&](const std::wstring&) { shown = app_.variables.Copy(); };
  Handle(ListOfTwo("02000000"));
  EXPECT_EQ(shown, (VariableTable{{L"x", L"row1"}}));
}

TEST_F(ListResponseHandling, SilencedResponseLeavesTheQueueForTheNext) {
  app_.responseFilter.Store({RESP_GET_LIST});
  Queue(L"x", 1);
  waitResponseId = RESP_GET_LIST;
  Handle(ListOfTwo("02000000"));
  EXPECT_EQ(waitResponseId, 0);
  EXPECT_EQ(Queued(), 1u);
  EXPECT_EQ(app_.variables.Copy(), VariableTable{});
  EXPECT_EQ(console_.TakeText(), L"");
  app_.responseFilter.Store({});
  Handle(ListOfTwo("02000000"));
  EXPECT_EQ(app_.variables.Copy(), (VariableTable{{L"x", L"row1"}}));
}

TEST_F(ListResponseHandling, OtherMessagesLeaveTheQueue) {
  Queue(L"x", 1);
  for (const char* id : {"31010000", "2F010000", "2D010000", "35010000", "01000000", "6D020000",
                         "F4010000", "7C000000", "36230000", "32010000", "FBFFFFFF", ""}) {
    Bytes message = ListOfTwo("02000000");
    const Bytes other = Hex(id);
    message.value.erase(message.value.begin(), message.value.begin() + 4);
    message.value.insert(message.value.begin(), other.value.begin(), other.value.end());
    Handle(message);
    EXPECT_EQ(Queued(), 1u) << id;
  }
  EXPECT_EQ(app_.variables.Copy(), VariableTable{});
}

TEST_F(ListResponseHandling, NothingIsSentForIt) {
  Queue(L"x", 1);
  Handle(ListOfTwo("02000000"));
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
}

}  // namespace
}  // namespace ventrik::tests
