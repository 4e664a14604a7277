// SPDX-License-Identifier: Apache-2.0
#include "monkey/command_generation.h"

#include <sys/stat.h>

#include "monkey/weights.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

class CommandGenerationTest : public MonkeyTest {
 protected:
  std::wstring Generated(const Draws& draws) {
    draws_.Feed(draws);
    const std::wstring line = GenerateCommand(app_, monkey_);
    EXPECT_EQ(draws_.Left(), Draws{}) << "not drawn";
    return line;
  }
};

TEST_F(CommandGenerationTest, LineIsTheNameWithItsParameters) {
  SetRecords(monkey_, {Record(L"verd", 1), Record(L"adas", 1)});
  EXPECT_EQ(Generated({0}), L"verd");
  EXPECT_EQ(Generated({1, 0}), L"adas(\"off\")");
  EXPECT_EQ(monkey_.commandBuffer, L"adas(\"off\")");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(CommandGenerationTest, NothingIsSentOrPrinted) {
  SetRecords(monkey_, {Record(L"verd", 1)});
  Generated({0});
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(Printed(), L"");
}

TEST_F(CommandGenerationTest, EachLineIsValidAtFirst) {
  SetRecords(monkey_, {Record(L"verd", 1)});
  monkey_.commandValid = false;
  monkey_.commandBuffer = L"left from before";
  EXPECT_EQ(Generated({0}), L"verd");
  EXPECT_TRUE(monkey_.commandValid);
}

TEST_F(CommandGenerationTest, WithoutRecordsThereIsNoLine) {
  monkey_.commandValid = false;
  monkey_.commandBuffer = L"left from before";
  EXPECT_EQ(Generated({5}), L"");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"monkey_config.txt not found or empty\n"});
  EXPECT_TRUE(monkey_.commandValid);
  EXPECT_EQ(Content("monkeylog.txt"), "(none)");
}

TEST_F(CommandGenerationTest, BlockedCommandsAreNotGenerated) {
  SetRecords(monkey_, {Record(L"start", 1), Record(L"verd", 1)});
  BlockCommand(monkey_, L"start");
  EXPECT_EQ(Generated({0, 1}), L"verd");
}

TEST_F(CommandGenerationTest, FixedLineOfABlockedCommandIsNotBlocked) {
  SetRecords(monkey_, {Record(L"start(\"1\")", 1)});
  BlockCommand(monkey_, L"start");
  EXPECT_EQ(Generated({0}), L"start(\"1\")");
}

TEST_F(CommandGenerationTest, LinesAreLoggedInTurn) {
  SetRecords(monkey_, {Record(L"verd", 1), Record(L"adas", 1)});
  Generated({0});
  EXPECT_EQ(Content("monkeylog.txt"), "verd\n");
  Generated({1, 1});
  EXPECT_EQ(Content("monkeylog.txt"), "verd\nadas(\"on\")\n");
}

TEST_F(CommandGenerationTest, InvalidLineIsLogged) {
  SetRecords(monkey_, {Record(L"wep", 1)});
  Generated({0, 1});
  EXPECT_FALSE(monkey_.commandValid);
  EXPECT_EQ(Content("monkeylog.txt"), "wep(\"<MID>map<*>\", \"zoom|highlight|visible\", \"\")\n");
}

TEST_F(CommandGenerationTest, PreparingLinesAreNotLogged) {
  SetRecords(monkey_, {Record(L"det", 1)});
  EXPECT_EQ(Generated({0, 0}), L"det(\"\", \"allitem\")");
  EXPECT_EQ(Content("monkeylog.txt"), "det(\"\", \"allitem\")\n");
}

TEST_F(CommandGenerationTest, LogIsClosedAfterEachLine) {
  SetRecords(monkey_, {Record(L"verd", 1)});
  const int before = CountDescriptors();
  Generated({0});
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(CommandGenerationTest, LogThatCantBeWrittenIsNotReported) {
  ASSERT_EQ(mkdir("monkeylog.txt", 0700), 0);
  SetRecords(monkey_, {Record(L"verd", 1)});
  EXPECT_EQ(Generated({0}), L"verd");
  EXPECT_EQ(Printed(), L"");
}

}  // namespace
}  // namespace ventrik::tests
