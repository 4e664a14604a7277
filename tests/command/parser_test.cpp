// SPDX-License-Identifier: Apache-2.0
#include "command/parser.h"

#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

// A line and what it is split into: the name, and each parameter behind a bar.
struct ParsedRow {
  std::wstring line;
  std::wstring expected;
};

std::wstring Parts(const CommandLine& line) {
  std::wstring parts = line.name;
  for (const CommandParameter& parameter : line.parameters) parts += L"|" + parameter.text;
  return parts;
}

std::wstring Parsed(const std::wstring& line) {
  CommandLine commandLine;
  if (!ParseCommandLine(commandLine, line)) return L"(refused)";
  EXPECT_EQ(commandLine.parameterCount, commandLine.parameters.size());
  EXPECT_EQ(commandLine.matchFailed, 0);
  return Parts(commandLine);
}

const ParsedRow kRows[] = {
    // A name alone, and parentheses without parameters.
    {L"Cmd", L"Cmd"},
    {L"Cmd()", L"Cmd"},
    {L")Cmd(", L")Cmd"},
    {L")(", L")"},
    {L"()", L""},
    {L"Cmd #", L"Cmd #"},
    {L" Cmd ", L" Cmd "},
    {L"C\"m\"d", L"C\"m\"d"},
    // Parameters are what stands in quotes.
    {L"Cmd(\"a\")", L"Cmd|a"},
    {L"Cmd(\"a\",\"b\")", L"Cmd|a|b"},
    {L"Cmd(\"a\"\"b\")", L"Cmd|a|b"},
    {L"Cmd(\"a\"x\"b\")", L"Cmd|a|b"},
    {L"Cmd(\"\")", L"Cmd|"},
    {L"Cmd(\"\",\"\")", L"Cmd||"},
    {L"(\"a\")", L"|a"},
    {L"Cmd(1,2)", L"Cmd"},
    {L"Cmd(abc)", L"Cmd"},
    {L"Cmd(1,\"a\",2)", L"Cmd|a"},
    {L"Cmd(\" a\tb \")", L"Cmd| a\tb "},
    {L"Cmd(\"\u20AC\\\")", L"Cmd|\u20AC\\"},
    // The first "(" and the last ")" of the line, wherever they are.
    {L"Cmd(\"a)b\")", L"Cmd|a)b"},
    {L"Cmd(\"(a\")", L"Cmd|(a"},
    {L"Cmd(x)y(\"a\")", L"Cmd|a"},
    {L"Cmd(\"a\")\"b\"", L"Cmd|a"},
    {L"Cmd(\"a\")#b", L"Cmd|a"},
    {L"C\"m(\"a\")", L"C\"m|a"},
    // Six parameters at most.
    {L"Cmd(\"1\",\"2\",\"3\",\"4\",\"5\",\"6\")", L"Cmd|1|2|3|4|5|6"},
    {L"Cmd(\"1\",\"2\",\"3\",\"4\",\"5\",\"6\",\"7\")", L"(refused)"},
    // Refused.
    {L"", L"(refused)"},
    {L"#", L"(refused)"},
    {L"#Cmd(\"a\")", L"(refused)"},
    {L"Cmd(", L"(refused)"},
    {L"Cmd)", L"(refused)"},
    {L"Cmd(\"a\",\"b\"", L"(refused)"},
    {L"Cmd\"a\")", L"(refused)"},
    {L"Cmd(\"a)", L"(refused)"},
    {L"Cmd(\"a\",\"b)", L"(refused)"},
    {L"Cmd(\")\"", L"(refused)"},
};

TEST(ParseCommandLine, SplitsOrRefusesEachOfThese) {
  for (const ParsedRow& row : kRows) EXPECT_EQ(Parsed(row.line), row.expected) << row.line;
}

TEST(ParseCommandLine, ParameterMayBeOfAnyLength) {
  const std::wstring text(100000, L'x');
  EXPECT_EQ(Parsed(L"Cmd(\"" + text + L"\")"), L"Cmd|" + text);
}

TEST(ParseCommandLine, LineTakesTheFormerParametersAway) {
  CommandLine line;
  EXPECT_TRUE(ParseCommandLine(line, L"First(\"a\",\"b\")"));
  EXPECT_TRUE(ParseCommandLine(line, L"Second"));
  EXPECT_EQ(Parts(line), L"Second");
  EXPECT_EQ(line.parameterCount, 0u);
}

TEST(ParseCommandLine, LineRefusedAtOnceLeavesTheFormerPartsInPlace) {
  for (const std::wstring refused : {L"", L"#x", L"Cmd(", L"Cmd)"}) {
    CommandLine line;
    EXPECT_TRUE(ParseCommandLine(line, L"First(\"a\",\"b\")"));
    EXPECT_FALSE(ParseCommandLine(line, refused));
    EXPECT_EQ(Parts(line), L"First|a|b") << refused;
    EXPECT_EQ(line.parameterCount, 2u);
  }
}

TEST(ParseCommandLine, LineRefusedForItsParametersReplacesTheFormerParts) {
  CommandLine line;
  EXPECT_TRUE(ParseCommandLine(line, L"First(\"a\",\"b\")"));
  EXPECT_FALSE(ParseCommandLine(line, L"Second(\"c\",\"d)"));
  EXPECT_EQ(Parts(line), L"Second|c");
  EXPECT_EQ(line.parameterCount, 1u);
}

TEST(ParseCommandLine, FailedMatchIsForgottenByTheNextLineWhateverItIs) {
  for (const std::wstring next : {L"", L"#x", L"Cmd(", L"Cmd"}) {
    CommandLine line;
    line.matchFailed = 1;
    ParseCommandLine(line, next);
    EXPECT_EQ(line.matchFailed, 0) << next;
  }
}

class MatchCommandTest : public CommandTest {
 protected:
  int Match(const std::wstring& line, const wchar_t* keyword, std::uint32_t expectedCount) {
    EXPECT_TRUE(ParseCommandLine(line_, line));
    return MatchCommand(line_, keyword, expectedCount);
  }

  CommandLine line_;
};

TEST_F(MatchCommandTest, RightNameWithTheRightCountMatches) {
  EXPECT_TRUE(Match(L"spell(\"a\")", L"spell", 1));
  EXPECT_TRUE(Match(L"spell(\"a\",\"b\")", L"spell", 2));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(MatchCommandTest, ExpectedCountOf0AcceptsAnyNumber) {
  EXPECT_TRUE(Match(L"quit", L"quit", 0));
  EXPECT_TRUE(Match(L"quit(\"x\")", L"quit", 0));
  EXPECT_TRUE(Match(L"quit(\"x\",\"y\")", L"quit", 0));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(MatchCommandTest, NameIsComparedExactly) {
  for (const wchar_t* name : {L"Spell", L"spel", L"spells", L" spell", L"spell ", L"()"}) {
    EXPECT_FALSE(Match(name, L"spell", 1)) << name;
  }
  EXPECT_FALSE(Match(std::wstring(L"spell\0x", 7), L"spell", 1));
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(line_.matchFailed, 0);
}

TEST_F(MatchCommandTest, OddityWrongCountNamesOnlyTheFirstLetter) {
  EXPECT_FALSE(Match(L"adas", L"adas", 1));
  EXPECT_EQ(console_.TakeTexts(),
            Texts{L"\033[1;31mError: Bad syntax! Command \"a\" needs 1 parameter(s).\n\033[0;37m"});
  EXPECT_EQ(line_.matchFailed, 1);
}

TEST_F(MatchCommandTest, WrongCountTellsTheExpectedOne) {
  EXPECT_FALSE(Match(L"list(\"a\")", L"list", 6));
  EXPECT_EQ(Printed(), CountError(L'l', 6));
  EXPECT_FALSE(Match(L"var(\"a\",\"b\")", L"var", 1));
  EXPECT_EQ(Printed(), CountError(L'v', 1));
}

TEST(ParamIs, TellsWhetherThereIsSuchAParameter) {
  CommandLine line;
  EXPECT_TRUE(ParseCommandLine(line, L"Cmd(\"on\",\"\")"));
  EXPECT_TRUE(ParamIs(line, 0, L"on"));
  EXPECT_TRUE(ParamIs(line, 1, L""));
  EXPECT_FALSE(ParamIs(line, 0, L"o"));
  EXPECT_FALSE(ParamIs(line, 0, L"on "));
  EXPECT_FALSE(ParamIs(line, 0, L"ON"));
  EXPECT_FALSE(ParamIs(line, 2, L""));
}

}  // namespace
}  // namespace ventrik::tests
