// SPDX-License-Identifier: Apache-2.0
#include "console/response_printer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <thread>

#include "state/process_state.h"
#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {
namespace {

using Texts = std::vector<std::wstring>;

class ResponsePrinterTest : public testing::Test {
 protected:
  ~ResponsePrinterTest() override { holdOutput = 0; }

  std::string PathOf(const std::string& name) const { return directory_.path() + "/" + name; }

  void Start(const std::string& name) { StartLog(printer_, PathOf(name).c_str()); }
  void Queue(const std::string& text) { QueueResponseText(printer_, text); }

  // What a file holds; "(none)" if it isn't there.
  std::string Content(const std::string& name) const {
    std::ifstream file(PathOf(name), std::ios::binary);
    if (!file) return "(none)";
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }

  TemporaryDirectory directory_;
  RecordedConsole console_;
  ResponsePrinter printer_;
};

TEST_F(ResponsePrinterTest, TextGoesToTheConsoleAsWideText) {
  Queue("swVersion: 1\xC3\xA9\n");
  EXPECT_EQ(console_.TakeText(), L"swVersion: 1\u00E9\n");
}

TEST_F(ResponsePrinterTest, MalformedBytesShowAsQuestionMarks) {
  Queue("a\xC3z\xFF\n");
  EXPECT_EQ(console_.TakeText(), L"a?z?\n");
}

TEST_F(ResponsePrinterTest, NulOfAnOverlongFormTakesNothingAway) {
  Queue("ro\xC0\x80w)\n\xE0\x80\x80last\n");
  EXPECT_EQ(console_.TakeText(), L"ro?w)\n?last\n");
}

TEST_F(ResponsePrinterTest, LongTextIsPrintedInPiecesOf100Characters) {
  Queue(std::string(250, 'x'));
  EXPECT_EQ(console_.TakeTexts(),
            (Texts{std::wstring(100, 'x'), std::wstring(100, 'x'), std::wstring(50, 'x')}));
}

TEST_F(ResponsePrinterTest, PieceIsAsLongAsCanBe) {
  Queue(std::string(100, 'x'));
  EXPECT_EQ(console_.TakeTexts(), Texts{std::wstring(100, 'x')});
  Queue(std::string(101, 'x'));
  EXPECT_EQ(console_.TakeTexts(), (Texts{std::wstring(100, 'x'), L"x"}));
  Queue(std::string(200, 'x'));
  EXPECT_EQ(console_.TakeTexts().size(), 2u);
}

TEST_F(ResponsePrinterTest, PiecesAreCountedInCharactersNotInBytes) {
  std::string text;
  for (int i = 0; i < 150; ++i) text += "\xE2\x82\xAC";
  Queue(text);
  EXPECT_EQ(console_.TakeTexts(),
            (Texts{std::wstring(100, L'\u20AC'), std::wstring(50, L'\u20AC')}));
}

TEST_F(ResponsePrinterTest, EmptyTextPrintsNothing) {
  Queue("");
  EXPECT_EQ(console_.TakeTexts(), Texts{});
}

TEST_F(ResponsePrinterTest, TextWaitsWhileALineIsTyped) {
  holdOutput = 1;
  Queue("one\n");
  Queue("two\n");
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(ResponsePrinterTest, EndOfThePromptAloneShowsNothing) {
  holdOutput = 1;
  Queue("one\n");
  holdOutput = 0;
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_EQ(printer_.queuedTexts.Copy(), std::vector<std::string>{"one\n"});
}

TEST_F(ResponsePrinterTest, NextTextBringsAllThatWaitOldestFirst) {
  holdOutput = 1;
  Queue("one\n");
  Queue("two\n");
  holdOutput = 0;
  Queue("three\n");
  EXPECT_EQ(console_.TakeTexts(), (Texts{L"one\n", L"two\n", L"three\n"}));
  Queue("four\n");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"four\n"});
}

TEST_F(ResponsePrinterTest, EmptyTextBringsWhatWaits) {
  holdOutput = 1;
  Queue("one\n");
  holdOutput = 0;
  Queue("");
  EXPECT_EQ(console_.TakeText(), L"one\n");
}

TEST_F(ResponsePrinterTest, LogHoldsTheBytesUnchanged) {
  const std::string text = std::string(ColourRed) + "bad \xFF\xC3 caf\xC3\xA9\r\n" + ColourReset;
  Start("a.txt");
  Queue(text);
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), text);
}

TEST_F(ResponsePrinterTest, TextsReachLogAndConsoleInTheSameOrder) {
  Start("a.txt");
  holdOutput = 1;
  Queue("one\n");
  holdOutput = 0;
  Queue("two\n");
  Queue("three\n");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "one\ntwo\nthree\n");
  EXPECT_EQ(console_.TakeText(), L"one\ntwo\nthree\n");
}

TEST_F(ResponsePrinterTest, TextThatWaitsIsLoggedWhenItIsShown) {
  Start("before.txt");
  holdOutput = 1;
  Queue("one\n");
  StopLog(printer_);
  EXPECT_EQ(Content("before.txt"), "");
  Start("after.txt");
  holdOutput = 0;
  Queue("two\n");
  StopLog(printer_);
  EXPECT_EQ(Content("after.txt"), "one\ntwo\n");
}

TEST_F(ResponsePrinterTest, SecondLogIsNotStarted) {
  Start("a.txt");
  Start("b.txt");
  Queue("one\n");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "one\n");
  EXPECT_EQ(Content("b.txt"), "(none)");
}

TEST_F(ResponsePrinterTest, LogCanBeStartedAnewAfterItWasStopped) {
  Start("a.txt");
  Queue("one\n");
  StopLog(printer_);
  Queue("two\n");
  Start("b.txt");
  Queue("three\n");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "one\n");
  EXPECT_EQ(Content("b.txt"), "three\n");
}

TEST_F(ResponsePrinterTest, ExistingFileIsTruncated) {
  std::ofstream(PathOf("a.txt")) << "old text";
  Start("a.txt");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "");
}

TEST_F(ResponsePrinterTest, StoppingWithoutALogDoesNothing) {
  StopLog(printer_);
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(ResponsePrinterTest, FileThatCantBeOpenedIsNotReportedAndLeavesNoLog) {
  Start("no/such/place.txt");
  EXPECT_FALSE(printer_.logFile.Copy());
  Queue("one\n");
  EXPECT_EQ(console_.TakeText(), L"one\n");
  Start("a.txt");
  Queue("two\n");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "two\n");
}

TEST_F(ResponsePrinterTest, OnlyResponseTextIsLogged) {
  Start("a.txt");
  logger->print(L"The server is changed to x.\n");
  StopLog(printer_);
  EXPECT_EQ(Content("a.txt"), "");
}

TEST_F(ResponsePrinterTest, LogMayComeAndGoWhileTextIsWritten) {
  std::thread commands([this] {
    for (int i = 0; i < 500; ++i) {
      Start("a.txt");
      StopLog(printer_);
    }
  });
  std::wstring expected;
  for (int i = 0; i < 500; ++i) {
    Queue("text\n");
    expected += L"text\n";
  }
  commands.join();
  EXPECT_EQ(console_.TakeText(), expected);
}

TEST_F(ResponsePrinterTest, MapIdIsMapUntilSetAndACopyAfterwards) {
  EXPECT_EQ(printer_.mapId.Copy(), "map");
  std::string text = "left";
  SetMapId(printer_, text);
  text = "none";
  EXPECT_EQ(printer_.mapId.Copy(), "left");
}

}  // namespace
}  // namespace ventrik::tests
