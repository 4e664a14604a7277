// SPDX-License-Identifier: Apache-2.0
#include "messages/dispatch.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "messages/function_ids.h"
#include "messages/milli_clock.h"
#include "tests/messages/handling_fixture.h"

namespace ventrik::tests {
namespace {

const Bytes kHeartbeat = Hex("6D020000");
const Bytes kShutdown = Hex("65000000");
const Bytes kPackageLoaded = Hex("36230000");
const std::wstring kHeartbeatText = L"INFO_HEARTBEAT> Heartbeat\n";
const std::wstring kShutdownText = L"RESP_SHUTDOWN> Shutdown process is finished.\n";

class DispatchTest : public HandlingTest {};

TEST_F(DispatchTest, MessageIsPrinted) {
  Handle(kHeartbeat);
  EXPECT_EQ(console_.TakeText(), kHeartbeatText);
}

TEST_F(DispatchTest, NoMessageDoesNothing) {
  holdOutput = 1;
  Handle(kHeartbeat);
  holdOutput = 0;
  HandleServerMessage(app_, printer_, nullptr, 0);
  HandleServerMessage(app_, printer_, nullptr, 100);
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(DispatchTest, WaitEndsWithTheMessageOfItsNumber) {
  waitResponseId = INFO_HEARTBEAT;
  Handle(kShutdown);
  EXPECT_EQ(waitResponseId, INFO_HEARTBEAT);
  Handle(kHeartbeat);
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(DispatchTest, WaitEndsWithAMessageThatNobodyPrints) {
  waitResponseId = -5;
  Handle(Hex("FBFFFFFF"));
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(DispatchTest, WaitEndsBeforeTheTextIsPrinted) {
  std::int32_t waited = 99;
  console_.onPrint = [&waited](const std::wstring&) { waited = waitResponseId; };
  waitResponseId = INFO_HEARTBEAT;
  Handle(kHeartbeat);
  EXPECT_EQ(waited, 0);
}

TEST_F(DispatchTest, FilteredMessagePrintsNothingButEndsAWait) {
  app_.responseFilter.Store({RESP_GET_LIST, INFO_HEARTBEAT});
  waitResponseId = INFO_HEARTBEAT;
  Handle(kHeartbeat);
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_EQ(waitResponseId, 0);
  Handle(kShutdown);
  EXPECT_EQ(console_.TakeText(), kShutdownText);
}

TEST_F(DispatchTest, FilteredMessageDoesntBringWhatWaits) {
  app_.responseFilter.Store({INFO_HEARTBEAT});
  holdOutput = 1;
  Handle(kShutdown);
  holdOutput = 0;
  Handle(kHeartbeat);
  EXPECT_EQ(console_.TakeText(), L"");
  Handle(kShutdown);
  EXPECT_EQ(console_.TakeText(), kShutdownText + kShutdownText);
}

TEST_F(DispatchTest, FilterSilencesMessagesThatNobodyPrintsToo) {
  app_.responseFilter.Store({-5});
  Handle(Hex("FBFFFFFF"));
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(DispatchTest, TextWaitsForTheFirstLaterMessageThatFindsTheConsoleFree) {
  holdOutput = 1;
  Handle(kHeartbeat);
  Handle(kShutdown);
  EXPECT_EQ(console_.TakeText(), L"");
  holdOutput = 0;
  Handle(kHeartbeat);
  EXPECT_EQ(console_.TakeText(), kHeartbeatText + kShutdownText + kHeartbeatText);
}

TEST_F(DispatchTest, TextOfAMessageIsQueuedInOnePiece) {
  holdOutput = 1;
  Handle(Hex("2F010000 00000000 00000000 00000000 00000000 00000000 00000000"));
  const std::vector<std::string> queued = printer_.queuedTexts.Copy();
  ASSERT_EQ(queued.size(), 1u);
  EXPECT_EQ(queued[0], MessageText(Hex("2F010000").Block()));
}

TEST_F(DispatchTest, OddityUnhandledMessageShowsTheBytesOfItsNumber) {
  Handle(Hex("41424300"));
  EXPECT_EQ(console_.TakeText(), L"\033[1;31mError: Unhandled response or info (ABC)!\n\033[0;37m");
}

TEST_F(DispatchTest, PackageLoadedLetsTheLogReplayGoOn) {
  packagePhase = 1;
  Handle(kHeartbeat);
  EXPECT_EQ(packagePhase, 1);
  std::uint8_t shown = 9;
  console_.onPrint = [&shown](const std::wstring&) { shown = packagePhase; };
  Handle(kPackageLoaded);
  EXPECT_EQ(packagePhase, 0);
  EXPECT_EQ(shown, 0);
  EXPECT_EQ(console_.TakeText(), kHeartbeatText + L"Package loaded!\n");
}

TEST_F(DispatchTest, SilencedPackageLoadedLeavesTheLogReplayWaiting) {
  app_.responseFilter.Store({CMD_PACKAGE_LOADED});
  packagePhase = 1;
  Handle(kPackageLoaded);
  EXPECT_EQ(packagePhase, 1);
}

TEST_F(DispatchTest, EachMessageReseedsTheGeneratorWithTheClock) {
  const std::uint32_t earliest = MilliClock();
  Handle(kHeartbeat);
  const std::uint32_t latest = MilliClock();
  const int drawn = std::rand();
  bool seeded = false;
  for (std::uint32_t seed = earliest; seed <= latest; ++seed) {
    std::srand(seed);
    seeded = seeded || std::rand() == drawn;
  }
  EXPECT_TRUE(seeded);
}

TEST_F(DispatchTest, FilteredMessageReseedsTheGeneratorToo) {
  app_.responseFilter.Store({INFO_HEARTBEAT});
  std::srand(12345);
  const int unseeded = std::rand();
  std::srand(12345);
  Handle(kHeartbeat);
  EXPECT_NE(std::rand(), unseeded);
}

std::string Unhandled(const std::string& bytes) {
  return "\033[1;31mError: Unhandled response or info (" + bytes + ")!\n\033[0;37m";
}

TEST(MessageText, UnhandledNumberIsTakenAsText) {
  EXPECT_EQ(MessageText(Hex("E7030000 'more'").Block()), Unhandled("\xE7\x03"));
  EXPECT_EQ(MessageText(Hex("00010000").Block()), Unhandled(""));
  EXPECT_EQ(MessageText(Hex("00000000").Block()), Unhandled(""));
}

TEST(MessageText, OddityUnhandledNumberOfFourBytesTakesWhatFollowsWithIt) {
  EXPECT_EQ(MessageText(Hex("FBFFFFFF 'more' 00 'x'").Block()), Unhandled("\xFB\xFF\xFF\xFFmore"));
  EXPECT_EQ(MessageText(Hex("FBFFFFFF 'mo'").Block()), Unhandled("\xFB\xFF\xFF\xFFmo"));
}

TEST(MessageText, BlockWithoutAWholeNumberIsUnhandled) {
  EXPECT_EQ(MessageText({nullptr, 0}), Unhandled(""));
  EXPECT_EQ(MessageText(Hex("'abc'").Block()), Unhandled("abc"));
}

TEST(MessageText, RequestsAreUnhandled) {
  EXPECT_EQ(MessageText(Hex("2E010000").Block()), Unhandled(".\x01"));
}

}  // namespace
}  // namespace ventrik::tests
