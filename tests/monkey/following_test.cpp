// SPDX-License-Identifier: Apache-2.0
// The listener's way to the monkey: which messages it is handed, and when.
#include "messages/dispatch.h"
#include "messages/function_ids.h"
#include "monkey/driver.h"
#include "tests/monkey/driver_fixture.h"

namespace ventrik::tests {
namespace {

// Two rows, "<A>" and "<B>".
const char* const kList =
    "33010000 00000000 01000000 01000000 02000000 02000000 00000000 02000000 00000000 01000000"
    "'<A>' 00 '<B>' 00";
const char* const kCalculated = "9D010000 4D000000 04000000 64000000";

class FollowingTest : public DriverTest {
 protected:
  FollowingTest() {
    followMessage = FollowMessage;
    monkey_.monkeyRunning = 1;
    SetSearch(monkey_, L"", L"<A><*>");
  }
  ~FollowingTest() override { followMessage = nullptr; }

  void Receive(const char* message) {
    const Bytes block = Hex(message);
    HandleServerMessage(app_, printer_, block.value.data(), block.value.size());
  }

  std::wstring Path() const { return monkey_.search.Copy().searchPath; }
};

TEST_F(FollowingTest, MessageIsFollowedBeforeItsTextIsShown) {
  followMessage = [](ClientApp&, const ReceivedBlock& block) {
    logger->print(L"followed %d\n", block.Word(0));
  };
  Receive("19010000");
  const Texts texts = console_.TakeTexts();
  ASSERT_EQ(texts.size(), 2u);
  EXPECT_EQ(texts[0], L"followed 281\n");
  EXPECT_NE(texts[1].find(L"Unhandled"), std::wstring::npos);
}

TEST_F(FollowingTest, MessageIsFollowedWhileItsTextIsHeldBack) {
  holdOutput = 1;
  Receive(kCalculated);
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(monkey_.routeHandles.Copy(), std::vector<std::int32_t>{77});
  holdOutput = 0;
}

TEST_F(FollowingTest, MonkeyThatDoesntRunFollowsNothing) {
  monkey_.monkeyRunning = 0;
  app_.listRequested = 1;
  Receive(kCalculated);
  Receive(kList);
  EXPECT_TRUE(monkey_.routeHandles.Copy().empty());
  EXPECT_EQ(Path(), L"");
  EXPECT_EQ(app_.listRequested, 1);
}

TEST_F(FollowingTest, SilencedListEndsItsWaitAndLeavesTheSearchStanding) {
  app_.responseFilter.Store({RESP_GET_LIST});
  app_.listRequested = 1;
  waitResponseId = RESP_GET_LIST;
  Receive(kList);
  EXPECT_EQ(waitResponseId, 0);
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(Path(), L"");
  EXPECT_EQ(monkey_.search.Copy().spellTerm, L"<A><*>");
  EXPECT_EQ(app_.listRequested, 1);
}

TEST_F(FollowingTest, ListAssignmentComesFirst) {
  Run(L"x=1,list(\"<A>\",\"1\",\"2\",\"ascending\",\"f\",\"on\")");
  Receive(kList);
  EXPECT_EQ(ValueOf(L"x"), L"<A>");
  EXPECT_EQ(Path(), L"<A>");
  EXPECT_EQ(app_.listRequested, 0);
}

}  // namespace
}  // namespace ventrik::tests
