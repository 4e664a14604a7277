// SPDX-License-Identifier: Apache-2.0
#include "command/variables.h"

#include <climits>
#include <cstdio>

#include "console/utf8.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

using Tokens = std::vector<std::wstring>;

std::wstring Stripped(std::wstring line) {
  StripLine(line);
  return line;
}

TEST(StripLine, BlanksOutsideQuotesGo) {
  EXPECT_EQ(Stripped(L""), L"");
  EXPECT_EQ(Stripped(L"   "), L"");
  EXPECT_EQ(Stripped(L" spell ( \"a b\" , x ) "), L"spell(\"a b\",x)");
  EXPECT_EQ(Stripped(L"a b = \"x y\""), L"ab=\"x y\"");
}

TEST(StripLine, TabsAndLineFeedsGoEverywhere) {
  EXPECT_EQ(Stripped(L"a\tb\nc"), L"abc");
  EXPECT_EQ(Stripped(L"spell(\"a\tb\nc\")"), L"spell(\"abc\")");
  EXPECT_EQ(Stripped(L"<CTY>a\tb\nc<*>"), L"<CTY>abc<*>");
}

TEST(StripLine, CarriageReturnAndOtherSpacesStay) {
  EXPECT_EQ(Stripped(L"a\rb\vc\fd\u00A0e"), L"a\rb\vc\fd\u00A0e");
}

TEST(StripLine, EachQuoteTurnsTheKeepingOfBlanksOnAndOff) {
  EXPECT_EQ(Stripped(L"\"a b\" c \"d e\" f"), L"\"a b\"c\"d e\"f");
  EXPECT_EQ(Stripped(L"\"a b"), L"\"a b");
}

TEST(StripLine, BlanksOfATaggedValueStay) {
  EXPECT_EQ(Stripped(L"x=<CTY>New York<*> + y"), L"x=<CTY>New York<*>+y");
  EXPECT_EQ(Stripped(L"<A> b <*> <C> d <*> e f"), L"<A> b <*><C> d <*>ef");
}

TEST(StripLine, BlanksOfTheClosingMarkGo) {
  EXPECT_EQ(Stripped(L"<A>b< * > c"), L"<A>b<*>c");
}

TEST(StripLine, OddityFirstTagMarkKeepsBlanksThoughATagHasEnded) {
  EXPECT_EQ(Stripped(L"a < b > c d"), L"a< b > c d");
}

TEST(StripLine, OddityThirdTagMarkChangesNothing) {
  EXPECT_EQ(Stripped(L"<a<b<c d> e f"), L"<a<b<cd>ef");
}

TEST(StripLine, QuotesAndTagsAreCountedApart) {
  EXPECT_EQ(Stripped(L"\"<\" a b"), L"\"<\" a b");
  EXPECT_EQ(Stripped(L"\"<A>x y<*>\" a b"), L"\"<A>x y<*>\"ab");
}

struct TokenRow {
  std::wstring line;  // the right-hand side
  Tokens expected;
};

const TokenRow kTokenRows[] = {
    {L"", {L""}},
    {L"a", {L"a"}},
    {L"a+b+c", {L"a", L"b", L"c"}},
    {L"+", {L"", L""}},
    {L"a+", {L"a", L""}},
    {L"+a", {L"", L"a"}},
    {L"\"ab\"", {L"\"ab\""}},
    {L"\"a+b\"", {L"\"a+b\""}},
    {L"\"a+b\"+c", {L"\"a+b\"", L"c"}},
    {L"\"a+b+c\"+d", {L"\"a+b+c\"", L"d"}},
    {L"c+\"ab\"", {L"c", L"\"ab\""}},
    {L"c+\"a+b\"", {L"c", L"\"a+b\""}},
    {L"c+\"a+b\"+d", {L"c", L"\"a+b\"", L"d"}},
    {L"\"a+b\"x+c", {L"\"a+b\"", L"c"}},  // what stands behind the quote is lost
    {L"a\"b+c\"", {L"a\"b", L"c\""}},     // a quote counts only as the first character
    // Quoted texts that hold no "+" are not taken apart.
    {L"\"ab\"+c", {L"\"ab\"+c"}},
    {L"\"ab\"+\"cd\"", {L"\"ab\"+\"cd\""}},
    {L"c+\"ab\"+d", {L"c", L"\"ab\"+d"}},
    {L"\"ab\"+\"cd\"+e", {L"\"ab\"+\"", L"e"}},
    {L"\"ab\"+c+d", {L"\"ab\"+c+d"}},
    {L"\"+", {L"\"+"}},
};

TEST(SplitTokens, OddityQuoteIsClosedBehindThePlus) {
  for (const TokenRow& row : kTokenRows)
    EXPECT_EQ(SplitTokens(row.line, 0), row.expected) << row.line;
}

TEST(SplitTokens, TokensBeginWhereTheCallerSays) {
  EXPECT_EQ(SplitTokens(L"x+y=a+b", 4), (Tokens{L"a", L"b"}));
  EXPECT_EQ(SplitTokens(L"x=", 2), Tokens{L""});
}

class VariablesTest : public CommandTest {
 protected:
  // What becomes of a line: "(consumed)", or the line as it goes on.
  std::wstring Handled(std::wstring line) {
    return HandleVariableLine(app_, line) ? L"(consumed)" : line;
  }

  std::wstring Substituted(std::wstring line) {
    const std::wstring before = line;
    if (SubstituteVariables(app_, line) == 0) return line;
    EXPECT_EQ(line, before);
    return L"(dropped)";
  }

  // Every assignment that waits, as "name row" with a blank behind.
  std::wstring Pending() const {
    return app_.pendingListAssignments.With([](const PendingListAssignments& queue) {
      std::wstring text;
      for (const PendingListAssignment& entry : queue) {
        text += entry.variableName + L" " + std::to_wstring(entry.itemNumber) + L" ";
      }
      return text;
    });
  }

  std::size_t Count() const {
    return app_.variables.With([](const VariableTable& table) { return table.size(); });
  }

  static std::wstring NewValue(const std::wstring& name, const std::wstring& value) {
    return L"VARIABLE> Variable '" + name + L"' has new value '" + value + L"'.\n";
  }
  static std::wstring Missing(const std::wstring& name) {
    return ErrorText(L"Can't find variable '" + name + L"'.");
  }
};

TEST_F(VariablesTest, AssignmentOfALiteral) {
  EXPECT_EQ(Handled(L"a b = \"x y\""), L"(consumed)");
  EXPECT_EQ(ValueOf(L"ab"), L"x y");
  EXPECT_EQ(console_.TakeTexts(), Texts{NewValue(L"ab", L"x y")});
}

TEST_F(VariablesTest, AssignmentJoinsLiteralsAndVariables) {
  Set(L"v", L"value");
  EXPECT_EQ(Handled(L"r=v+\"a+b\"+v+\" c\""), L"(consumed)");
  EXPECT_EQ(ValueOf(L"r"), L"valuea+bvalue c");
  EXPECT_EQ(Printed(), NewValue(L"r", L"valuea+bvalue c"));
}

TEST_F(VariablesTest, AssignmentReplacesTheFormerValueAndMayUseIt) {
  Set(L"v", L"old");
  Handled(L"v=v+\"er\"");
  EXPECT_EQ(ValueOf(L"v"), L"older");
}

TEST_F(VariablesTest, NameIsLettersAndDigitsAndMayBeginWithEither) {
  for (const std::wstring name : {L"0", L"9z", L"Az", L"zA", L"Z"}) {
    EXPECT_EQ(Handled(name + L"=\"v\""), L"(consumed)") << name;
    EXPECT_EQ(ValueOf(name), L"v") << name;
  }
}

TEST_F(VariablesTest, LineWithAnotherCharacterBeforeTheEqualsIsNoAssignment) {
  for (const std::wstring line : {L"a_b=\"v\"", L"a-b=\"v\"", L"\u00E9=\"v\"", L"\"a\"=\"v\"",
                                  L"search(a=b,c)", L"$$a$$=\"v\"", L"@=\"v\""}) {
    EXPECT_EQ(Handled(line), line);
  }
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(VariablesTest, LineOfLettersAndDigitsOnlyIsNoAssignment) {
  EXPECT_EQ(Handled(L"quit"), L"quit");
  EXPECT_EQ(Handled(L"4"), L"4");
  EXPECT_EQ(Handled(L""), L"");
}

TEST_F(VariablesTest, LineThatIsNoAssignmentIsStrippedNevertheless) {
  EXPECT_EQ(Handled(L" spell ( \"a b\" ) "), L"spell(\"a b\")");
  EXPECT_EQ(Handled(L"  \t "), L"");
}

TEST_F(VariablesTest, NothingBehindTheEqualsIsTheVariableWithoutAName) {
  EXPECT_EQ(Handled(L"x="), L"(consumed)");
  EXPECT_EQ(Printed(), Missing(L" ''"));
  Set(L"", L"nameless");
  EXPECT_EQ(Handled(L"x="), L"(consumed)");
  EXPECT_EQ(ValueOf(L"x"), L"nameless");
}

TEST_F(VariablesTest, NothingBeforeTheEqualsSetsTheVariableWithoutAName) {
  EXPECT_EQ(Handled(L"=\"v\""), L"(consumed)");
  EXPECT_EQ(ValueOf(L""), L"v");
  EXPECT_EQ(Substituted(L"a$$$$b"), L"avb");
}

TEST_F(VariablesTest, WordWithoutQuotesIsAVariableEvenIfItIsANumber) {
  EXPECT_EQ(Handled(L"a=5"), L"(consumed)");
  EXPECT_EQ(Printed(), Missing(L" '5'"));
  EXPECT_EQ(ValueOf(L"a"), L"(none)");
}

TEST_F(VariablesTest, AllMissingVariablesAreNamedAndNothingIsSet) {
  Set(L"a", L"old");
  Set(L"there", L"v");
  EXPECT_EQ(Handled(L"a=x+there+\"l+m\"+y"), L"(consumed)");
  EXPECT_EQ(console_.TakeTexts(), Texts{Missing(L" 'x' 'y'")});
  EXPECT_EQ(ValueOf(L"a"), L"old");
}

TEST_F(VariablesTest, OddityQuotedTextBeforeAVariableIsOneUnknownName) {
  Set(L"c", L"v");
  EXPECT_EQ(Handled(L"a=\"ab\"+c"), L"(consumed)");
  EXPECT_EQ(Printed(), Missing(L" '\"ab\"+c'"));
}

TEST_F(VariablesTest, OddityTwoQuotedTextsAreOneLiteral) {
  Handled(L"a=\"ab\"+\"cd\"");
  EXPECT_EQ(ValueOf(L"a"), L"ab\"+\"cd");
}

TEST_F(VariablesTest, OddityReferencesMeanNothingInAnAssignment) {
  Set(L"b", L"v");
  EXPECT_EQ(Handled(L"a=$$b$$"), L"(consumed)");
  EXPECT_EQ(Printed(), Missing(L" '$$b$$'"));
}

TEST_F(VariablesTest, CommaWithoutAParenthesisIsAnOrdinaryLine) {
  EXPECT_EQ(Handled(L"a=1,b"), L"a=1,b");
  EXPECT_EQ(Handled(L"a=\"1,b\""), L"a=\"1,b\"");
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Pending(), L"");
}

TEST_F(VariablesTest, ParenthesisWithoutACommaIsAnAssignment) {
  EXPECT_EQ(Handled(L"a=\"(x)\""), L"(consumed)");
  EXPECT_EQ(ValueOf(L"a"), L"(x)");
}

TEST_F(VariablesTest, ListAssignmentWaitsAndTheRestOfTheLineGoesOn) {
  EXPECT_EQ(Handled(L"row = 3, list(\"x\")"), L"list(\"x\")");
  EXPECT_EQ(Pending(), L"row 3 ");
  EXPECT_EQ(Count(), 0u);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(VariablesTest, ListAssignmentOfAnIncompleteCommand) {
  EXPECT_EQ(Handled(L"a=1,b("), L"b(");
  EXPECT_EQ(Pending(), L"a 1 ");
}

TEST_F(VariablesTest, OddityParenthesisMayStandBeforeTheComma) {
  EXPECT_EQ(Handled(L"foo=bar(1,2)"), L"2)");
  EXPECT_EQ(Pending(), L"foo 0 ");
}

TEST_F(VariablesTest, OddityQuotesDontHideCommaAndParenthesis) {
  EXPECT_EQ(Handled(L"a=\"x(,y\""), L"y\"");
  EXPECT_EQ(Pending(), L"a 0 ");
}

TEST_F(VariablesTest, RowNumberIsReadInBase10) {
  Handled(L"a=010,l(");
  EXPECT_EQ(Pending(), L"a 10 ");
  Handled(L"a=0x10,l(");
  EXPECT_EQ(Pending(), L"a 0 ");
  Handled(L"a=-2x,l(");
  EXPECT_EQ(Pending(), L"a -2 ");
  Handled(L"a=,l(");
  EXPECT_EQ(Pending(), L"a 0 ");
  Handled(L"a=99999999999,l(");
  EXPECT_EQ(Pending(), L"a " + std::to_wstring(INT_MAX) + L" ");
  Handled(L"a=-99999999999,l(");
  EXPECT_EQ(Pending(), L"a " + std::to_wstring(INT_MIN) + L" ");
}

TEST_F(VariablesTest, ListAssignmentMayHaveNoName) {
  Handled(L"=2,l(");
  EXPECT_EQ(Pending(), L" 2 ");
}

TEST_F(VariablesTest, NextLineOfAnyKindDropsTheListAssignment) {
  for (const std::wstring next : {L"verd", L"v=\"x\"", L"v=nosuch", L"#", L" ", L"$$nosuch$$"}) {
    Handled(L"row=3,list(");
    Handled(next);
    EXPECT_EQ(Pending(), L"") << next;
  }
  Handled(L"row=3,list(");
  Handled(L"other=4,list(");
  EXPECT_EQ(Pending(), L"other 4 ");
}

TEST_F(VariablesTest, ConcatTakesALoneQuoteForAnEmptyLiteral) {
  VariableConcat(app_, L"a", {L"\"", L"\"\"", L"\"x\""});
  EXPECT_EQ(ValueOf(L"a"), L"x");
}

using VariablesDeathTest = VariablesTest;

TEST_F(VariablesDeathTest, ConcatWithoutTokensIsAFaultOfTheProgram) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  console_.onPrint = [](const std::wstring& text) { std::fputs(WideToUtf8(text).c_str(), stderr); };
  EXPECT_DEATH(VariableConcat(app_, L"a", {}),
               "ASSERT FAILED!\nfile:variables\nline:[0-9]+\nfunc:VariableConcat\n");
}

TEST_F(VariablesTest, LineWithoutReferencesStaysAsItIs) {
  EXPECT_EQ(Substituted(L"spell(\"$a$\")"), L"spell(\"$a$\")");
  EXPECT_EQ(Substituted(L""), L"");
}

TEST_F(VariablesTest, EachReferenceIsReplacedByTheValue) {
  Set(L"a", L"one two");
  Set(L"b", L"");
  EXPECT_EQ(Substituted(L"$$a$$"), L"one two");
  EXPECT_EQ(Substituted(L"x$$a$$$$a$$y$$b$$z"), L"xone twoone twoyz");
  EXPECT_EQ(Printed(), L"");
}

TEST_F(VariablesTest, ValueIsNotLookedAtAgain) {
  Set(L"a", L"$$b$$");
  Set(L"b", L"never");
  Set(L"c", L"$");
  EXPECT_EQ(Substituted(L"<$$a$$>"), L"<$$b$$>");
  EXPECT_EQ(Substituted(L"$$c$$$$c$$"), L"$$");
}

TEST_F(VariablesTest, ReferenceThatIsNotClosedDropsTheLine) {
  Set(L"a", L"v");
  for (const std::wstring line : {L"$$a", L"x$$", L"$$a$$ $$", L"$$$", L"$$a$"}) {
    EXPECT_EQ(Substituted(line), L"(dropped)") << line;
    EXPECT_EQ(console_.TakeTexts(), Texts{ErrorText(L"Bad syntax! Check variables input.")});
  }
}

TEST_F(VariablesTest, UnknownReferenceDropsTheLine) {
  Set(L"a", L"v");
  EXPECT_EQ(Substituted(L"$$a$$ $$nosuch$$ $$other$$"), L"(dropped)");
  EXPECT_EQ(console_.TakeTexts(), Texts{ErrorText(L"Variable 'nosuch' doesn't exist!")});
  EXPECT_EQ(Substituted(L"$$$$"), L"(dropped)");
  EXPECT_EQ(Printed(), ErrorText(L"Variable '' doesn't exist!"));
}

TEST_F(VariablesTest, NameOfAReferenceMayHoldAnything) {
  Set(L"a b(\"$", L"v");
  EXPECT_EQ(Substituted(L"$$a b(\"$$$"), L"(dropped)");
  Set(L"a b(\"", L"w");
  EXPECT_EQ(Substituted(L"$$a b(\"$$$"), L"w$");
}

TEST_F(VariablesTest, VarShowsTheValue) {
  Set(L"a", L"x y");
  Run(L"var(\"a\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"VARIABLE> Variable 'a' is 'x y'.\n"});
  Run(L"var(\"b\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{Missing(L"b")});
}

TEST_F(VariablesTest, VarassignTakesTheValueOfAVariableOrTheTextItself) {
  Set(L"v", L"value");
  Run(L"varassign(\"a\",\"v\")");
  Run(L"varassign(\"b\",\"some text\")");
  EXPECT_EQ(ValueOf(L"a"), L"value");
  EXPECT_EQ(ValueOf(L"b"), L"some text");
  EXPECT_EQ(Printed(), L"");
}

TEST_F(VariablesTest, VarassignAfterSubstitution) {
  Set(L"b", L"v w");
  Run(L"varassign(\"a\",\"$$b$$\")");
  EXPECT_EQ(ValueOf(L"a"), L"v w");
}

TEST_F(VariablesTest, VarconcatAppendsTheValueOfAVariableOrTheTextItself) {
  Set(L"v", L"value");
  Set(L"a", L"x");
  Run(L"varconcat(\"a\",\"v\")");
  Run(L"varconcat(\"a\",\" text\")");
  Run(L"varconcat(\"a\",\"a\")");
  EXPECT_EQ(ValueOf(L"a"), L"xvalue textxvalue text");
  EXPECT_EQ(Printed(), L"");
}

TEST_F(VariablesTest, VarconcatNeedsItsTarget) {
  Set(L"v", L"value");
  Run(L"varconcat(\"a\",\"v\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{Missing(L"a")});
  EXPECT_EQ(ValueOf(L"a"), L"(none)");
}

TEST_F(VariablesTest, WrongCountsAreReported) {
  Run(L"var");
  EXPECT_EQ(Printed(), CountError(L'v', 1));
  Run(L"varassign(\"a\")");
  EXPECT_EQ(Printed(), CountError(L'v', 2));
  Run(L"varconcat(\"a\",\"b\",\"c\")");
  EXPECT_EQ(Printed(), CountError(L'v', 2));
}

TEST_F(VariablesTest, SubstitutedBlanksAreKept) {
  Set(L"eis", L"<CTY>New York<*>");
  Run(L"varassign(\"a\", \"$$eis$$\")");
  EXPECT_EQ(ValueOf(L"a"), L"<CTY>New York<*>");
}

// White space goes before values come in, so a value keeps what a line would lose.
TEST_F(VariablesTest, SubstitutedWhiteSpaceIsNotStripped) {
  Set(L"tabbed", L"a\tb");
  Run(L"varassign(\"a\", \"$$tabbed$$\")");
  EXPECT_EQ(ValueOf(L"a"), L"a\tb");
  Set(L"command", L"var (\"a\")");
  Run(L"$$command$$");
  EXPECT_EQ(Printed(), kUnknownCommand);
}

TEST_F(VariablesTest, ClearingTheListsLeavesTheVariables) {
  Set(L"a", L"v");
  Run(L"done");
  EXPECT_EQ(ValueOf(L"a"), L"v");
}

}  // namespace
}  // namespace ventrik::tests
