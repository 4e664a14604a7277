// SPDX-License-Identifier: Apache-2.0
// The commands that do more than to send one request, and in which order they do it.
#include "state/process_state.h"
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

using InitAndDone = NavigationTest;
using Language = NavigationTest;
using MapControls = NavigationTest;

TEST_F(InitAndDone, InitStartsTheListenerAndThenSends) {
  Run(L"init");
  EXPECT_EQ(server_.TakeEvents(), (Events{"listen", "send 0"}));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(InitAndDone, InitTwiceStartsAndSendsTwice) {
  Run(L"init");
  Run(L"init()");
  EXPECT_EQ(server_.TakeEvents(), (Events{"listen", "send 0", "listen", "send 0"}));
}

TEST_F(InitAndDone, DoneLeavesTheProgramRunning) {
  Run(L"done");
  EXPECT_EQ(mainLoopRunning, 1);
  EXPECT_EQ(server_.TakeEvents(), Events{"send 100"});
}

TEST_F(InitAndDone, DoneClearsAllListsBeforeItSends) {
  FillLists();
  ASSERT_EQ(ListsInAll(), 4u);
  std::size_t left = 99;
  server_.onSend = [&] { left = ListsInAll(); };
  Run(L"done");
  EXPECT_EQ(left, 0u);
}

TEST_F(Language, KnownOneIsSentInSilence) {
  EXPECT_EQ(SentBy(L"lang(\"LangRussian\",\"3\")"), Hex("58020000 19000000 03000000"));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(Language, UnknownOneIsSentAsZeroAndReported) {
  for (const std::wstring word : {L"LangX", L"", L"langGerman", L"LangGerman ", L"2"}) {
    EXPECT_EQ(SentBy(L"lang(\"" + word + L"\",\"7\")"), Hex("58020000 00000000 07000000"));
    EXPECT_EQ(console_.TakeTexts(), Texts{L" Unknown language!\n"}) << word;
  }
}

TEST_F(Language, OddityUndefinedOneIsUnknown) {
  EXPECT_EQ(SentBy(L"lang(\"LangUndef\",\"0\")"), Hex("58020000 00000000 00000000"));
  EXPECT_EQ(console_.TakeTexts(), Texts{L" Unknown language!\n"});
}

TEST_F(Language, IsSentBeforeItIsReported) {
  Events order;
  server_.onSend = [&] { order.push_back("send"); };
  console_.onPrint = [&](const std::wstring&) { order.push_back("print"); };
  Run(L"lang(\"LangX\",\"0\")");
  EXPECT_EQ(order, (Events{"send", "print"}));
}

TEST_F(MapControls, IdIsMapUntilOneIsNamed) {
  EXPECT_EQ(MapId(), "map");
  Run(L"map(\"<MID>left<*>\")");
  EXPECT_EQ(MapId(), "left");
  Run(L"map(\"<ZOOM>5<*><MID>right<*><X>1<*>\")");
  EXPECT_EQ(MapId(), "right");
  EXPECT_EQ(Printed(), L"");
}

TEST_F(MapControls, IdStaysWithoutTagOrEnd) {
  Run(L"map(\"<MID>left<*>\")");
  for (const std::wstring text : {L"", L"<ZOOM>5<*>", L"<MID>right", L"<MID>right<*", L"<*><MID>",
                                  L"<*><MID>right", L"<mid>right<*>", L"MID>right<*>", L"<MID"}) {
    Run(L"map(\"" + text + L"\")");
    EXPECT_EQ(MapId(), "left") << text;
  }
}

TEST_F(MapControls, IdEndsAtTheFirstEndBehindTheFirstTag) {
  Run(L"map(\"<*><MID>left<*>\")");
  EXPECT_EQ(MapId(), "left");
  Run(L"map(\"<MID>a<*><MID>b<*>\")");
  EXPECT_EQ(MapId(), "a");
  Run(L"map(\"<MID>a<MID>b<*>\")");
  EXPECT_EQ(MapId(), "a<MID>b");
  Run(L"map(\"<MID>a<b>*><*>\")");
  EXPECT_EQ(MapId(), "a<b>*>");
}

TEST_F(MapControls, IdMayBeEmpty) {
  Run(L"map(\"<MID><*>\")");
  EXPECT_EQ(MapId(), "");
}

TEST_F(MapControls, IdIsUtf8) {
  EXPECT_EQ(SentBy(L"map(\"\u00E9<MID>\u00D6\u20AC<*>\")"),
            Hex("BE020000 0F000000 C3A9 '<MID>' C396 E282AC '<*>' 00"));
  EXPECT_EQ(MapId(), "\xC3\x96\xE2\x82\xAC");
}

TEST_F(MapControls, IdIsTakenAfterTheRequestIsSent) {
  std::string atSend;
  server_.onSend = [&] { atSend = MapId(); };
  Run(L"map(\"<MID>left<*>\")");
  EXPECT_EQ(atSend, "map");
  EXPECT_EQ(MapId(), "left");
}

TEST_F(MapControls, IdStaysWithAWrongCount) {
  Run(L"map(\"<MID>left<*>\",\"x\")");
  EXPECT_EQ(MapId(), "map");
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

}  // namespace
}  // namespace ventrik::tests
