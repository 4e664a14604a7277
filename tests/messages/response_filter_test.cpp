// SPDX-License-Identifier: Apache-2.0
#include "messages/response_filter.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "console/response_printer.h"
#include "messages/dispatch.h"
#include "messages/function_ids.h"
#include "state/process_state.h"
#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {
namespace {

using Ids = std::vector<std::int32_t>;
using Texts = std::vector<std::wstring>;

TEST(ParseResponseFilter, NameAndA0SilenceAMessage) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST 0\n"), Ids{307});
  EXPECT_EQ(ParseResponseFilter(L"INFO_HEARTBEAT 0\n"), Ids{621});
}

TEST(ParseResponseFilter, AnythingElseKeepsAMessageVisible) {
  for (const wchar_t* line :
       {L"RESP_GET_LIST 1\n", L"RESP_GET_LIST x0\n", L"RESP_GET_LIST -0\n", L"RESP_GET_LIST \n",
        L"RESP_GET_LIST     \n", L"RESP_GET_LIST \t0\n", L"RESP_GET_LIST off\n"}) {
    EXPECT_EQ(ParseResponseFilter(line), Ids{}) << line;
  }
}

TEST(ParseResponseFilter, OnlyTheFirstCharacterBehindTheBlanksCounts) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST 01\n"), Ids{307});
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST 0 # silent\n"), Ids{307});
}

TEST(ParseResponseFilter, ThereMayBeSeveralBlanks) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST      0\n"), Ids{307});
}

TEST(ParseResponseFilter, LinesKeepTheirOrderAndMayRepeat) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_SPELL 0\nRESP_INIT 1\nRESP_GET_LIST 0\n"
                                L"RESP_GET_SPELL 0\n"),
            (Ids{303, 307, 303}));
}

TEST(ParseResponseFilter, UnknownNameGivesMinus1) {
  EXPECT_EQ(ParseResponseFilter(L"NO_SUCH_NAME 0\n"), Ids{-1});
  EXPECT_EQ(ParseResponseFilter(L"resp_get_list 0\n"), Ids{-1});
  EXPECT_EQ(ParseResponseFilter(L"FUNC_INVALID 0\n"), Ids{-1});
  EXPECT_EQ(ParseResponseFilter(L" RESP_GET_LIST 0\n"), Ids{});
  EXPECT_EQ(ParseResponseFilter(L" 0\n"), Ids{-1});
}

TEST(ParseResponseFilter, EmptyLinesAreSkipped) {
  EXPECT_EQ(ParseResponseFilter(L""), Ids{});
  EXPECT_EQ(ParseResponseFilter(L"\n\nRESP_GET_LIST 0\n\n"), Ids{307});
}

TEST(ParseResponseFilter, LineWithoutABlankKeepsEverythingVisible) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST\nRESP_GET_SPELL0\n0\nRESP_INIT 0\n"), Ids{1});
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST"), Ids{});
}

TEST(ParseResponseFilter, LastLineNeedsNoLineEnd) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_INIT 0\nRESP_GET_LIST 0"), (Ids{1, 307}));
}

TEST(ParseResponseFilter, LinesMayEndWithCarriageReturns) {
  EXPECT_EQ(ParseResponseFilter(L"RESP_GET_LIST 0\r\n\r\nRESP_GET_SPELL 1\r\nRESP_INIT 0\r\n"),
            (Ids{307, 1}));
}

TEST(ParseResponseFilter, LinesMayBeOfAnyLength) {
  const std::wstring longName(100000, L'X');
  EXPECT_EQ(ParseResponseFilter(longName + L" 0\nRESP_GET_LIST" + std::wstring(100000, L' ') +
                                L"0" + longName + L"\n" + longName),
            (Ids{-1, 307}));
}

class ResponseFilterFile : public testing::Test {
 protected:
  ResponseFilterFile() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(directory_.path());
  }
  ~ResponseFilterFile() override { std::filesystem::current_path(before_); }

  static void Write(const std::string& text) {
    std::ofstream("response_filter.txt", std::ios::binary) << text;
  }

  RecordedConsole console_;
  ClientApp app_;

 private:
  const std::string before_;
  TemporaryDirectory directory_;
};

TEST_F(ResponseFilterFile, LoadingReplacesTheFilterSilently) {
  app_.responseFilter.Store({1, 2, 3});
  Write("RESP_GET_LIST 0\n");
  LoadResponseFilter(app_);
  EXPECT_EQ(app_.responseFilter.Copy(), Ids{307});
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(ResponseFilterFile, MissingFileEmptiesTheFilterSilently) {
  app_.responseFilter.Store({1});
  LoadResponseFilter(app_);
  EXPECT_EQ(app_.responseFilter.Copy(), Ids{});
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(ResponseFilterFile, UnreadableFileEmptiesTheFilter) {
  app_.responseFilter.Store({1});
  ASSERT_EQ(mkdir("response_filter.txt", 0700), 0);
  LoadResponseFilter(app_);
  EXPECT_EQ(app_.responseFilter.Copy(), Ids{});
}

TEST_F(ResponseFilterFile, BytesThatAreNoTextDontHurt) {
  Write("RESP_GET_LIST 0\n\xFF\xFE\x80 0\n# caf\xE9\nRESP_INIT 0\n");
  LoadResponseFilter(app_);
  EXPECT_EQ(app_.responseFilter.Copy(), (Ids{307, -1, 1}));
}

TEST_F(ResponseFilterFile, PipeThatNobodyWritesToIsEmpty) {
  app_.responseFilter.Store({1});
  ASSERT_EQ(mkfifo("response_filter.txt", 0600), 0);
  LoadResponseFilter(app_);
  EXPECT_EQ(app_.responseFilter.Copy(), Ids{});
}

TEST_F(ResponseFilterFile, SilencedHeartbeatStillEndsItsWait) {
  Write("INFO_HEARTBEAT 0\n");
  LoadResponseFilter(app_);
  ResponsePrinter printer;
  const std::int32_t heartbeat = INFO_HEARTBEAT;
  waitResponseId = INFO_HEARTBEAT;
  HandleServerMessage(app_, printer, &heartbeat, sizeof heartbeat);
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_EQ(waitResponseId, 0);
}

TEST_F(ResponseFilterFile, Mode1LoadsAndSaysOn) {
  Write("RESP_GET_LIST 0\n");
  SetResponseFilter(app_, 1);
  EXPECT_EQ(app_.responseFilter.Copy(), Ids{307});
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Response Filter : ON\n"});
}

TEST_F(ResponseFilterFile, OtherModesEmptyAndSayOff) {
  Write("RESP_GET_LIST 0\n");
  for (const std::int32_t mode : {2, 0, -1}) {
    app_.responseFilter.Store({307});
    SetResponseFilter(app_, mode);
    EXPECT_EQ(app_.responseFilter.Copy(), Ids{});
    EXPECT_EQ(console_.TakeTexts(), Texts{L"Response Filter : OFF\n"});
  }
}

TEST_F(ResponseFilterFile, OnlyListedNumbersAreFiltered) {
  app_.responseFilter.Store({307, -1, 307});
  EXPECT_TRUE(IsFiltered(app_, 307));
  EXPECT_FALSE(IsFiltered(app_, 306));
  EXPECT_FALSE(IsFiltered(app_, 0));
  app_.responseFilter.Store({});
  EXPECT_FALSE(IsFiltered(app_, 307));
}

}  // namespace
}  // namespace ventrik::tests
