// SPDX-License-Identifier: Apache-2.0
#include "command/command_table.h"

#include <map>
#include <string>
#include <vector>

#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

std::vector<CommandRow> AllRows() {
  std::vector<CommandRow> rows;
  for (const CommandRows& table : {LocalCommands(), NavigationCommands()}) {
    rows.insert(rows.end(), table.begin, table.end);
  }
  return rows;
}

// The number of parameters that each command takes, 0 for any.
const std::map<std::wstring, std::uint32_t> kCounts = {
    {L"batch", 1},     {L"done", 0},     {L"help", 0},    {L"init", 0},   {L"list", 6},
    {L"prompt", 1},    {L"quit", 0},     {L"rldresp", 1}, {L"scroll", 1}, {L"server", 1},
    {L"spell", 1},     {L"startlog", 1}, {L"stoplog", 0}, {L"var", 1},    {L"varassign", 2},
    {L"varconcat", 2}, {L"verd", 0},     {L"vers", 0},    {L"wait", 1},   {L"waitresp", 1},
    {L"weather", 1},
};

TEST(CommandTable, EachOfTheseCommandsIsThereOnceWithItsCount) {
  for (const auto& [keyword, count] : kCounts) {
    int found = 0;
    for (const CommandRow& row : AllRows()) {
      if (row.keyword != keyword) continue;
      ++found;
      EXPECT_EQ(row.expectedCount, count) << keyword;
    }
    EXPECT_EQ(found, 1) << keyword;
  }
}

TEST(CommandTable, KeywordsAreUniqueAndBeginWithALetterFromAToW) {
  std::map<std::wstring, int> seen;
  for (const CommandRow& row : AllRows()) {
    EXPECT_EQ(++seen[row.keyword], 1) << row.keyword;
    EXPECT_GE(row.keyword[0], L'a') << row.keyword;
    EXPECT_LE(row.keyword[0], L'w') << row.keyword;
    EXPECT_NE(row.run, nullptr) << row.keyword;
  }
}

using CommandTableTest = CommandTest;

TEST_F(CommandTableTest, EveryCommandWithACountReportsTheWrongOne) {
  for (const CommandRow& row : AllRows()) {
    if (row.expectedCount == 0) continue;
    for (const wchar_t* parameters : {L"", L"()", L"(1)", L"(\"1\",\"2\",\"3\",\"4\",\"5\")"}) {
      Run(row.keyword + std::wstring(parameters));
      EXPECT_EQ(console_.TakeTexts(),
                Texts{CountError(row.keyword[0], static_cast<int>(row.expectedCount))})
          << row.keyword << parameters;
    }
  }
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(CommandTableTest, LineWithoutANameIsNoCommand) {
  CommandLine line;
  EXPECT_FALSE(RunFromCommandTable(app_, line));
  EXPECT_EQ(line.matchFailed, 0);
}

}  // namespace
}  // namespace ventrik::tests
