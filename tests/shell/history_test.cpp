// SPDX-License-Identifier: Apache-2.0
#include "shell/history.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/temporary_directory.h"

namespace ventrik {
namespace {

class HistoryTest : public testing::Test {
 protected:
  HistoryTest() {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    std::filesystem::current_path(directory_.path());
  }
  ~HistoryTest() override { std::filesystem::current_path("/"); }

  static void WriteFile(const std::string& bytes) {
    std::ofstream("qhistory.txt", std::ios::binary) << bytes;
  }
  static std::string File() {
    std::ifstream file("qhistory.txt", std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
  }
  std::vector<std::wstring> Load(const std::string& bytes) {
    WriteFile(bytes);
    app_.history.clear();
    LoadHistory(app_);
    return app_.history;
  }

  tests::TemporaryDirectory directory_;
  ClientApp app_;
};

using Lines = std::vector<std::wstring>;

TEST_F(HistoryTest, LoadsOneEntryALine) {
  EXPECT_EQ(Load("first\nsecond\n"), (Lines{L"first", L"second"}));
}

TEST_F(HistoryTest, MissingFileGivesNone) {
  LoadHistory(app_);
  EXPECT_TRUE(app_.history.empty());
}

TEST_F(HistoryTest, TextBehindTheLastLineEndIsDropped) {
  EXPECT_EQ(Load("first\nrest"), (Lines{L"first"}));
}

TEST_F(HistoryTest, BlankLinesAndCarriageReturnsGiveEmptyEntries) {
  EXPECT_EQ(Load("a\r\nb\n\n"), (Lines{L"a", L"", L"b", L""}));
}

TEST_F(HistoryTest, UndecodableBytesEndTheLoading) {
  EXPECT_EQ(Load("first\nse\xFF\xFE\nthird\n"), (Lines{L"first"}));
}

TEST_F(HistoryTest, NonAsciiComesBackAsItWent) {
  LoadHistory(app_);
  AppendToHistory(app_, L"München €  \U0001F600");
  SaveHistory();
  EXPECT_EQ(Load(File()), (Lines{L"München €  \U0001F600"}));
}

TEST_F(HistoryTest, NewestThousandAreSaved) {
  LoadHistory(app_);
  for (int i = 0; i < 1500; ++i) AppendToHistory(app_, std::to_wstring(i));
  SaveHistory();
  const Lines saved = Load(File());
  ASSERT_EQ(saved.size(), 1000u);
  EXPECT_EQ(saved.front(), L"500");
  EXPECT_EQ(saved.back(), L"1499");
}

TEST_F(HistoryTest, FileIsReplacedNotExtended) {
  Load("a long line that was there before\n");
  app_.history = {};
  AppendToHistory(app_, L"short");
  SaveHistory();
  EXPECT_EQ(File(), "short\n");
}

TEST_F(HistoryTest, UnwritableFileIsPassedOver) {
  LoadHistory(app_);
  AppendToHistory(app_, L"x");
  std::filesystem::create_directory("qhistory.txt");
  SaveHistory();
  EXPECT_TRUE(std::filesystem::is_directory("qhistory.txt"));
}

TEST(HistoryFileText, OddityEmptyEntryStopsTheWriting) {
  bool endless = false;
  EXPECT_EQ(HistoryFileText({L"a", L"", L"b"}, endless), "a\n");
  EXPECT_TRUE(endless);
  EXPECT_EQ(HistoryFileText({L"a", L"b"}, endless), "a\nb\n");
  EXPECT_FALSE(endless);
}

TEST(HistoryFileText, EmptyEntryBeforeTheNewestThousandDoesNotMatter) {
  std::vector<std::wstring> history(1001, L"x");
  history[0].clear();
  bool endless = true;
  EXPECT_EQ(HistoryFileText(history, endless).size(), 2000u);
  EXPECT_FALSE(endless);
}

TEST(HistoryFileText, TypedControlCharactersLeaveNoBlankLines) {
  bool endless = true;
  const std::wstring zero(1, L'\0');
  EXPECT_EQ(HistoryFileText({zero, L"a" + zero + L"b", L"abc\r", L"\r", L"d\ne"}, endless),
            "a\nabc\nde\n");
  EXPECT_FALSE(endless);
}

TEST(HistoryFileText, OfNothingIsNothing) {
  bool endless = true;
  EXPECT_EQ(HistoryFileText({}, endless), "");
  EXPECT_FALSE(endless);
}

}  // namespace
}  // namespace ventrik
