// SPDX-License-Identifier: Apache-2.0
// The command `list`: it waits for its answer and counts its repeats.
#include "state/process_state.h"
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

class ListRequest : public NavigationTest {
 protected:
  // Asks for a page of the list and tells how often in a row it was asked for.
  std::int32_t Ask(const std::wstring& eis) {
    Run(L"list(\"" + eis + L"\",\"1\",\"2\",\"\",\"f\",\"on\")");
    return app_.listRepeatCount;
  }
};

TEST_F(ListRequest, SendsItsSixParameters) {
  FindOrCreateList(app_.stringArrayLists, "fields").items = {"NAME", "GEO"};
  ExpectSent({{L"list(\"<A>1<*>\",\"1\",\"0x10\",\"descending\",\"fields\",\"on\")",
               "32010000 07000000 01000000 10000000 02000000 02000000 01000000 "
               "'<A>1<*>' 00 'NAME' 00000000 'GEO' 00"}});
}

TEST_F(ListRequest, ValuesThatMakeNoSenseHaveTheirDefaults) {
  ExpectSent({{L"list(\"\",\"x\",\"\",\"defaultSort\",\"new\",\"ON\")",
               "32010000 00000000 00000000 00000000 00000000 00000000 02000000 00000000"}});
}

TEST_F(ListRequest, WaitsForItsResponseBeforeItSends) {
  std::int32_t waitedFor = 0;
  std::uint8_t requested = 99;
  server_.onSend = [&] {
    waitedFor = waitResponseId;
    requested = app_.listRequested;
  };
  Ask(L"a");
  EXPECT_EQ(waitedFor, 307);
  EXPECT_EQ(requested, 0);
  EXPECT_EQ(waitResponseId, 307);
  EXPECT_EQ(app_.listRequested, 1);
}

TEST_F(ListRequest, IsCountedBeforeItSends) {
  std::int32_t count = 0;
  std::wstring text;
  server_.onSend = [&] {
    count = app_.listRepeatCount;
    text = app_.lastListEis;
  };
  Ask(L"a");
  EXPECT_EQ(count, 1);
  EXPECT_EQ(text, L"a");
}

TEST_F(ListRequest, ThatIsNotSentWaitsForNothing) {
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"f\")");
  EXPECT_EQ(Printed(), CountError(L'l', 6));
  EXPECT_EQ(waitResponseId, 0);
  EXPECT_EQ(app_.listRequested, 0);
  EXPECT_EQ(app_.listRepeatCount, 0);
  EXPECT_EQ(app_.lastListEis, L"");
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(ListRequest, CountsHowOftenTheSameWasAskedFor) {
  EXPECT_EQ(Ask(L"<A>1<*>"), 1);
  EXPECT_EQ(Ask(L"<A>1<*>"), 2);
  EXPECT_EQ(Ask(L"<A>1<*>"), 3);
  EXPECT_EQ(Ask(L"<A>2<*>"), 1);
  EXPECT_EQ(app_.lastListEis, L"<A>2<*>");
  EXPECT_EQ(Ask(L"<A>1<*>"), 1);
}

TEST_F(ListRequest, RepeatsDontDependOnTheOtherParameters) {
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"f\",\"on\")");
  Run(L"verd");
  Run(L"list(\"a\",\"3\",\"4\",\"ascending\",\"g\",\"off\")");
  EXPECT_EQ(app_.listRepeatCount, 2);
}

TEST_F(ListRequest, OddityFirstListWithoutATextIsARepeat) {
  EXPECT_EQ(Ask(L""), 1);
  EXPECT_EQ(app_.lastListEis, L"");
}

TEST_F(ListRequest, ComparesTheTextAsItComesBackFromUtf8) {
  Ask(L"\u20AC");
  EXPECT_EQ(app_.lastListEis, L"\u20AC");
  Ask(L"\U0001F600");
  EXPECT_EQ(app_.lastListEis, L"???");
}

}  // namespace
}  // namespace ventrik::tests
