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
  for (const CommandRows& table : {LocalCommands(), ListCommands(), NavigationCommands()}) {
    rows.insert(rows.end(), table.begin, table.end);
  }
  return rows;
}

// So many parameters, each of them "1".
std::wstring Parameters(std::uint32_t count) {
  std::wstring text = L"(";
  for (std::uint32_t i = 0; i < count; ++i) text += i == 0 ? L"\"1\"" : L",\"1\"";
  return text + L")";
}

// The number of parameters that each command takes that sends no request, 0 for any.
const std::map<std::wstring, std::uint32_t> kCounts = {
    {L"batch", 1},     {L"citem", 1},    {L"citems", 0},   {L"help", 0},    {L"item", 0},
    {L"litem", 1},     {L"prompt", 1},   {L"quit", 0},     {L"rldresp", 1}, {L"scroll", 1},
    {L"server", 1},    {L"startlog", 1}, {L"stoplog", 0},  {L"var", 1},     {L"varassign", 2},
    {L"varconcat", 2}, {L"wait", 1},     {L"waitresp", 1}, {L"weather", 1},
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

// What docs/reference.md lists.
TEST(CommandTable, EachRowTellsAsManyParametersAsItTakes) {
  for (const CommandRow& row : AllRows()) {
    std::uint32_t told = 0;
    while (told < kMaxParameters && row.parameters[told].name != nullptr) ++told;
    for (std::uint32_t i = told; i < kMaxParameters; ++i) {
      EXPECT_EQ(row.parameters[i].name, nullptr) << row.keyword << " has a gap";
    }
    const bool anyNumber = row.expectedCount == 0;
    EXPECT_TRUE(anyNumber || told == row.expectedCount) << row.keyword;
    EXPECT_GE(told, row.leastCount) << row.keyword;
    EXPECT_TRUE(anyNumber || row.usedCount == nullptr) << row.keyword;
  }
}

using CommandTableTest = CommandTest;

TEST_F(CommandTableTest, EveryCommandWithACountReportsTheWrongOne) {
  for (const CommandRow& row : AllRows()) {
    if (row.expectedCount == 0) continue;
    const std::uint32_t expected = row.expectedCount;
    for (const std::wstring& parameters : {std::wstring(), std::wstring(L"(1)"), Parameters(0),
                                           Parameters(expected - 1), Parameters(expected + 1)}) {
      // No line holds more than six parameters.
      const bool tooMany = expected == 6 && parameters == Parameters(7);
      Run(row.keyword + parameters);
      EXPECT_EQ(
          console_.TakeTexts(),
          Texts{tooMany ? kBadSyntax : CountError(row.keyword[0], static_cast<int>(expected))})
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
