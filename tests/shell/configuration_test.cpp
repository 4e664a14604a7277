// SPDX-License-Identifier: Apache-2.0
#include "shell/configuration.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/temporary_directory.h"

namespace ventrik {
namespace {

struct Switches {
  int batchHistory;
  int hideComments;
};

Switches Apply(const std::string& text) {
  ClientApp app;
  ApplyConfiguration(app, text);
  return {app.batchHistory, app.hideComments};
}

TEST(Configuration, OnlyEvenSpacingGivesTheKey) {
  const struct {
    const char* line;
    int hideComments;
  } rows[] = {
      {"hidecomments=1", 1},    {"hidecomments = 1", 1},   {"hidecomments =1", 0},
      {"hidecomments= 1", 0},   {"hidecomments  =  1", 0}, {"hidecomments=  1", 0},
      {"hidecomments =  1", 1},  // blanks before the value are skipped, however many
  };
  for (const auto& row : rows)
    EXPECT_EQ(Apply(row.line).hideComments, row.hideComments) << row.line;
}

TEST(Configuration, BothKeysAreKnown) {
  const Switches both = Apply("batchhistory=1\nhidecomments = 1\n");
  EXPECT_EQ(both.batchHistory, 1);
  EXPECT_EQ(both.hideComments, 1);
}

TEST(Configuration, OnlyExactlyOneSets) {
  for (const char* value : {"0", "2", "11", "1 ", "01", "on", "", "1\r"}) {
    EXPECT_EQ(Apply(std::string("hidecomments=") + value).hideComments, 0) << value;
  }
}

TEST(Configuration, CarriageReturnsSpoilTheValue) {
  const Switches none = Apply("hidecomments=1\r\nbatchhistory=1\r\n");
  EXPECT_EQ(none.hideComments, 0);
  EXPECT_EQ(none.batchHistory, 0);
}

TEST(Configuration, OtherKeysAndBareLinesDoNothing) {
  const Switches none = Apply("\n\nHideComments=1\nhidecomments\n=1\n = 1\n1\n hidecomments=1\n");
  EXPECT_EQ(none.batchHistory, 0);
  EXPECT_EQ(none.hideComments, 0);
}

TEST(Configuration, OdditySecondByteIsTheCommentMark) {
  EXPECT_EQ(Apply("x;hidecomments=1").hideComments, 0);
  EXPECT_EQ(Apply(";hidecomments=1").hideComments, 0) << "no comment, but no known key either";
}

TEST(Configuration, LastLineNeedsNoEnd) {
  EXPECT_EQ(Apply("x=1\nhidecomments=1").hideComments, 1);
  EXPECT_EQ(Apply("hidecomments=").hideComments, 0);
  EXPECT_EQ(Apply("").hideComments, 0);
}

TEST(Configuration, AnyBytesAreRead) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += std::string(3, static_cast<char>(byte));
  EXPECT_EQ(Apply(all + "\nhidecomments=1").hideComments, 1);
}

TEST(Configuration, FileOfTheWorkingDirectoryIsReadWhole) {
  const tests::TemporaryDirectory directory;
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  ClientApp app;
  LoadConfiguration(app);  // there is none
  EXPECT_EQ(app.batchHistory, 0);
  std::ofstream("qconfig.txt", std::ios::binary) << "; \xFF\nbatchhistory=1\nhidecomments=1";
  LoadConfiguration(app);
  EXPECT_EQ(app.batchHistory, 1);
  EXPECT_EQ(app.hideComments, 1);
  std::filesystem::current_path(before);
}

}  // namespace
}  // namespace ventrik
