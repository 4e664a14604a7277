// SPDX-License-Identifier: Apache-2.0
#include "shell/line_editor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ventrik {
namespace {

class LineEditorTest : public testing::Test {
 protected:
  // A fresh prompt on a console of that width.
  void Open(std::int32_t columns = 80) {
    editor_ = std::make_unique<LineEditor>(L"Cmd> ", columns, history_, historyCursor_, overwrite_);
  }

  // Types the keys, returns what the last one printed.
  std::wstring Type(const std::wstring& keys) {
    if (!editor_) Open();
    std::wstring printed;
    for (const wchar_t key : keys) printed = editor_->TakeKey(static_cast<std::uint32_t>(key));
    return printed;
  }

  // The line after the keys, with "|" at the cursor.
  std::wstring LineAfter(const std::wstring& keys) {
    Type(keys);
    std::wstring line = editor_->line();
    line.insert(editor_->position(), L"|");
    return line;
  }

  static std::wstring Padded(std::wstring text, std::size_t width) {
    text.resize(width, L' ');
    return text;
  }

  std::vector<std::wstring> history_;
  std::int32_t historyCursor_ = 0;
  Flag overwrite_ = 0;
  std::unique_ptr<LineEditor> editor_;
};

const std::wstring kLeft = L"\033[D";
const std::wstring kRight = L"\033[C";
const std::wstring kUp = L"\033[A";
const std::wstring kDown = L"\033[B";
const std::wstring kHome = L"\033[1~";
const std::wstring kInsert = L"\033[2~";
const std::wstring kDelete = L"\033[3~";
const std::wstring kEnd = L"\033[4~";
const std::wstring kBackspace = L"\177";

TEST_F(LineEditorTest, BeginPrintsThePromptAndSavesTheCursor) {
  Open();
  EXPECT_EQ(editor_->Begin(), L"Cmd> \033[1;32m\033[s");
}

TEST_F(LineEditorTest, KeyRedrawsTheWholeWidthAndPlacesTheCursor) {
  EXPECT_EQ(Type(L"ab"), L"\033[u" + Padded(L"ab", 74) + L"\033[u\033[2C");
}

TEST_F(LineEditorTest, OddityCursorAtTheStartMovesByMinusOne) {
  EXPECT_EQ(Type(L"a" + kLeft), L"\033[u" + Padded(L"a", 74) + L"\033[u\033[-1C");
}

TEST_F(LineEditorTest, EnterEndsAfterARedrawAndPrintsTheLine) {
  const std::wstring printed = Type(L"quit\n");
  EXPECT_EQ(printed, L"\033[u" + Padded(L"quit", 74) + L"\033[u\033[4C");
  EXPECT_TRUE(editor_->Done());
  EXPECT_EQ(editor_->End(), L"\033[uquit\033[0;37m\n");
  EXPECT_EQ(editor_->line(), L"quit");
}

TEST_F(LineEditorTest, CursorKeysAndEditing) {
  EXPECT_EQ(LineAfter(L"abc" + kLeft + L"x"), L"abx|c");
  EXPECT_EQ(LineAfter(kHome + L"y" + kEnd + L"z"), L"yabxcz|");
  EXPECT_EQ(LineAfter(kRight), L"yabxcz|");
  EXPECT_EQ(LineAfter(kHome + kLeft + kRight + kRight), L"ya|bxcz");
  EXPECT_EQ(LineAfter(kBackspace), L"y|bxcz");
  EXPECT_EQ(LineAfter(kDelete), L"y|xcz");
  EXPECT_EQ(LineAfter(kEnd + kDelete), L"yxcz|");
  EXPECT_EQ(LineAfter(kHome + kBackspace), L"|yxcz");
}

TEST_F(LineEditorTest, OverwriteReplacesAndInsertsAtTheEnd) {
  EXPECT_EQ(LineAfter(L"abc" + kHome + kInsert + L"XY"), L"XY|c");
  EXPECT_EQ(overwrite_, 1);
  EXPECT_EQ(LineAfter(L"ZW"), L"XYZW|");
  EXPECT_EQ(LineAfter(kHome + kInsert + L"_"), L"_|XYZW");
  EXPECT_EQ(overwrite_, 0);
}

TEST_F(LineEditorTest, ControlCharactersAreText) {
  EXPECT_EQ(LineAfter(L"\b\r\t"), L"\b\r\t|");
}

TEST_F(LineEditorTest, EscapeSequencePrintsNothingUntilItIsComplete) {
  EXPECT_EQ(Type(L"\033"), L"");
  EXPECT_EQ(Type(L"["), L"");
  EXPECT_NE(Type(L"D"), L"");
  EXPECT_EQ(Type(L"\033[4"), L"");
  EXPECT_NE(Type(L"~"), L"");
}

TEST_F(LineEditorTest, SecondKeyOfASequenceIsNotLookedAt) {
  EXPECT_EQ(LineAfter(L"ab\033OD"), L"a|b");
  EXPECT_EQ(LineAfter(L"\033xZ"), L"a|b");
}

TEST_F(LineEditorTest, EnterAsTheLastKeyOfASequenceEndsTheLine) {
  Type(L"ab\033[1\n");
  EXPECT_TRUE(editor_->Done());
  EXPECT_EQ(editor_->position(), 0u);
  Open();
  Type(L"ab\033[\n");
  EXPECT_TRUE(editor_->Done());
  Open();
  Type(L"ab\033\n");
  EXPECT_FALSE(editor_->Done()) << "the second key is any key";
}

TEST_F(LineEditorTest, HistoryUpAndDown) {
  history_ = {L"first", L"second"};
  Open();
  EXPECT_EQ(historyCursor_, 2);
  EXPECT_EQ(LineAfter(L"typed" + kUp), L"second|");
  EXPECT_EQ(LineAfter(kUp), L"first|");
  EXPECT_EQ(LineAfter(kUp), L"first|") << "the oldest stays";
  EXPECT_EQ(LineAfter(kDown), L"second|");
  EXPECT_EQ(LineAfter(kDown), L"|");
  EXPECT_EQ(LineAfter(L"x" + kDown), L"|") << "what was typed is gone";
  EXPECT_EQ(historyCursor_, 2);
}

TEST_F(LineEditorTest, EditingARecalledLineLeavesTheHistoryAsItIs) {
  history_ = {L"first", L"second"};
  EXPECT_EQ(LineAfter(kUp + L"!"), L"second!|");
  EXPECT_EQ(LineAfter(kUp + kDown), L"second|");
}

TEST_F(LineEditorTest, OverwritingGoesOnAtTheNextPrompt) {
  Type(kInsert + L"\n");
  Open();
  EXPECT_EQ(LineAfter(L"ab" + kHome + L"X"), L"X|b");
}

TEST_F(LineEditorTest, EnterAsTheLastKeyOfInsertTogglesAndEnds) {
  Type(L"\033[2\n");
  EXPECT_EQ(overwrite_, 1);
  EXPECT_TRUE(editor_->Done());
}

TEST_F(LineEditorTest, HistoryKeysWithoutAHistoryLeaveAnEmptyLine) {
  EXPECT_EQ(LineAfter(L"x" + kUp), L"x|");
  EXPECT_EQ(LineAfter(kDown), L"|");
}

TEST_F(LineEditorTest, LongLineScrollsSideways) {
  Open(20);  // 14 columns for the line
  EXPECT_EQ(Type(L"abcdefghijklm"), L"\033[uabcdefghijklm \033[u\033[13C");
  EXPECT_EQ(Type(L"n"), L"\033[uabcdefghijklmn\033[u\033[14C");
  EXPECT_EQ(Type(L"o"), L"\033[ubcdefghijklmno\033[u\033[14C");
  EXPECT_EQ(Type(kLeft), L"\033[uabcdefghijklmn\033[u\033[14C");
  EXPECT_EQ(Type(kLeft), L"\033[uabcdefghijklmn\033[u\033[13C");
  Type(L"\n");
  EXPECT_EQ(editor_->End(), L"\033[uabcdefghijklmno\033[0;37m\n");
}

TEST_F(LineEditorTest, NoWidthShowsNothingAndStillEdits) {
  Open(6);  // exactly none left
  EXPECT_EQ(Type(L"a"), L"\033[u\033[u\033[-1C");
  EXPECT_EQ(editor_->line(), L"a");
}

TEST_F(LineEditorTest, NegativeWidthPadsToItsMagnitudeAndStillEdits) {
  for (const std::int32_t columns : {0, -1, -1000, 5}) {
    Open(columns);
    const std::int32_t width = columns - 6;
    EXPECT_EQ(Type(L"ab"), L"\033[u" + std::wstring(static_cast<std::size_t>(-width), L' ') +
                               L"\033[u\033[" + std::to_wstring(width) + L"C");
    EXPECT_EQ(editor_->line(), L"ab");
  }
}

TEST_F(LineEditorTest, WidthThatNoTerminalHasCostsNoMemory) {
  for (const std::int32_t columns : {2147483647, -2147483647 - 1}) {
    Open(columns);
    EXPECT_LE(Type(L"ab").size(), 65600u);
    EXPECT_EQ(editor_->line(), L"ab");
  }
}

TEST_F(LineEditorTest, CharacterZeroEndsWhatIsShown) {
  Type(std::wstring(L"ab") + L'\0' + L"c");
  EXPECT_EQ(editor_->line().size(), 4u);
  EXPECT_EQ(Type(L"d"), L"\033[u" + Padded(L"ab", 74) + L"\033[u\033[5C");
}

}  // namespace
}  // namespace ventrik
