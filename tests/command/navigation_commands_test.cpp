// SPDX-License-Identifier: Apache-2.0
#include "state/process_state.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

class NavigationCommandsTest : public CommandTest {
 protected:
  // The one block that a line sends.
  Bytes SentBy(const std::wstring& line) {
    server_.TakeSent();
    Run(line);
    const std::vector<Bytes> blocks = server_.TakeSent();
    EXPECT_EQ(blocks.size(), 1u) << line;
    return blocks.empty() ? Bytes{} : blocks.front();
  }

  void FillLists() {
    FindOrCreateList(app_.stringArrayLists, "a").items = {"x"};
    FindOrCreateList(app_.routeHandleLists, "a").items = {1};
    FindOrCreateList(app_.destinationElementLists, "a");
    FindOrCreateList(app_.routeModeLists, "a").items = {2};
  }
};

TEST_F(NavigationCommandsTest, InitStartsTheListenerAndThenSends) {
  Run(L"init");
  EXPECT_EQ(server_.TakeEvents(), (Events{"listen", "send 0"}));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(NavigationCommandsTest, InitTwiceStartsAndSendsTwice) {
  Run(L"init");
  Run(L"init()");
  EXPECT_EQ(server_.TakeEvents(), (Events{"listen", "send 0", "listen", "send 0"}));
}

TEST_F(NavigationCommandsTest, InitIsTheIdAlone) {
  EXPECT_EQ(SentBy(L"init"), Hex("00000000"));
}

TEST_F(NavigationCommandsTest, DoneSendsAndLeavesTheProgramRunning) {
  EXPECT_EQ(SentBy(L"done"), Hex("64000000"));
  EXPECT_EQ(mainLoopRunning, 1);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(NavigationCommandsTest, DoneClearsAllListsBeforeItSends) {
  FillLists();
  std::size_t left = 99;
  server_.onSend = [&] {
    left = app_.stringArrayLists.size() + app_.routeHandleLists.size() +
           app_.destinationElementLists.size() + app_.routeModeLists.size();
  };
  Run(L"done");
  EXPECT_EQ(left, 0u);
}

TEST_F(NavigationCommandsTest, VersionsAreTheIdAlone) {
  EXPECT_EQ(SentBy(L"vers"), Hex("84030000"));
  EXPECT_EQ(SentBy(L"verd"), Hex("85030000"));
}

TEST_F(NavigationCommandsTest, CommandsWithoutParametersTakeAnyNumber) {
  EXPECT_EQ(SentBy(L"vers(\"a\",\"b\")"), Hex("84030000"));
  EXPECT_EQ(SentBy(L"verd(\"a\")"), Hex("85030000"));
  EXPECT_EQ(SentBy(L"done(\"a\")"), Hex("64000000"));
  EXPECT_EQ(SentBy(L"init(\"a\")"), Hex("00000000"));
}

TEST_F(NavigationCommandsTest, SpellSendsItsTextInUtf8) {
  EXPECT_EQ(SentBy(L"spell(\"<GEOC>\u00D6<*>\")"), Hex("2E010000 0B000000 '<GEOC>' C396 '<*>' 00"));
  EXPECT_EQ(SentBy(L"spell(\"\")"), Hex("2E010000 00000000 00000000"));
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(NavigationCommandsTest, SpellNeedsOneParameter) {
  Run(L"spell");
  EXPECT_EQ(Printed(), CountError(L's', 1));
  Run(L"spell(\"a\",\"b\")");
  EXPECT_EQ(Printed(), CountError(L's', 1));
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(NavigationCommandsTest, ListSendsItsSixParameters) {
  FindOrCreateList(app_.stringArrayLists, "fields").items = {"NAME", "GEO"};
  EXPECT_EQ(SentBy(L"list(\"<A>1<*>\",\"1\",\"0x10\",\"descending\",\"fields\",\"on\")"),
            Hex("32010000 07000000 01000000 10000000 02000000 02000000 01000000 "
                "'<A>1<*>' 00 'NAME' 00000000 'GEO' 00"));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(NavigationCommandsTest, ListValuesThatMakeNoSenseHaveTheirDefaults) {
  EXPECT_EQ(SentBy(L"list(\"\",\"x\",\"\",\"defaultSort\",\"new\",\"ON\")"),
            Hex("32010000 00000000 00000000 00000000 00000000 00000000 02000000 00000000"));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(NavigationCommandsTest, ListCreatesTheFieldListThatItNames) {
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"never\u0151\",\"on\")");
  ASSERT_EQ(app_.stringArrayLists.count("never?"), 1u);
  EXPECT_TRUE(app_.stringArrayLists.at("never?")->items.empty());
}

TEST_F(NavigationCommandsTest, ListWaitsForItsResponseBeforeItSends) {
  std::int32_t waitedFor = 0;
  std::uint8_t requested = 99;
  server_.onSend = [&] {
    waitedFor = waitResponseId;
    requested = app_.listRequested;
  };
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"f\",\"on\")");
  EXPECT_EQ(waitedFor, 307);
  EXPECT_EQ(requested, 0);
  EXPECT_EQ(waitResponseId, 307);
  EXPECT_EQ(app_.listRequested, 1);
}

TEST_F(NavigationCommandsTest, ListThatIsNotSentWaitsForNothing) {
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"f\")");
  EXPECT_EQ(Printed(), CountError(L'l', 6));
  EXPECT_EQ(waitResponseId, 0);
  EXPECT_EQ(app_.listRequested, 0);
  EXPECT_EQ(app_.listRepeatCount, 0);
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(NavigationCommandsTest, ListCountsHowOftenTheSameWasAskedFor) {
  const auto ask = [this](const std::wstring& eis) {
    Run(L"list(\"" + eis + L"\",\"1\",\"2\",\"\",\"f\",\"on\")");
    return app_.listRepeatCount;
  };
  EXPECT_EQ(ask(L"<A>1<*>"), 1);
  EXPECT_EQ(ask(L"<A>1<*>"), 2);
  EXPECT_EQ(ask(L"<A>1<*>"), 3);
  EXPECT_EQ(ask(L"<A>2<*>"), 1);
  EXPECT_EQ(app_.lastListEis, L"<A>2<*>");
  EXPECT_EQ(ask(L"<A>1<*>"), 1);
}

TEST_F(NavigationCommandsTest, ListRepeatsDontDependOnTheOtherParameters) {
  Run(L"list(\"a\",\"1\",\"2\",\"\",\"f\",\"on\")");
  Run(L"verd");
  Run(L"list(\"a\",\"3\",\"4\",\"ascending\",\"g\",\"off\")");
  EXPECT_EQ(app_.listRepeatCount, 2);
}

TEST_F(NavigationCommandsTest, OddityFirstListWithoutATextIsARepeat) {
  Run(L"list(\"\",\"1\",\"2\",\"\",\"f\",\"on\")");
  EXPECT_EQ(app_.listRepeatCount, 1);
  EXPECT_EQ(app_.lastListEis, L"");
}

TEST_F(NavigationCommandsTest, ListComparesTheTextAsItComesBackFromUtf8) {
  Run(L"list(\"\u20AC\",\"1\",\"2\",\"\",\"f\",\"on\")");
  EXPECT_EQ(app_.lastListEis, L"\u20AC");
  Run(L"list(\"\U0001F600\",\"1\",\"2\",\"\",\"f\",\"on\")");
  EXPECT_EQ(app_.lastListEis, L"???");
}

TEST_F(NavigationCommandsTest, WithoutALayerCommandsRunAndSendNothing) {
  COMMUNICATION_LAYER* const layer = communicationLayer;
  communicationLayer = nullptr;
  Run(L"init");
  Run(L"verd");
  Run(L"server(\"x\")");
  communicationLayer = layer;
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(Printed(), L"The server is changed to x.\n");
}

}  // namespace
}  // namespace ventrik::tests
