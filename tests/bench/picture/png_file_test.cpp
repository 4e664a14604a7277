// SPDX-License-Identifier: Apache-2.0
#include "bench/picture/png_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

#include "tests/bench/picture/read_png.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::bench {
namespace {

Picture TwoPixels() {
  return {2, 1, {255, 0, 0, 255, 1, 2, 3, 4}};
}

std::string TextOf(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

class PngFileTest : public ::testing::Test {
 protected:
  std::string PathOf(const std::string& name) const { return folder_.path() + "/" + name; }
  bool Save(const std::string& name) { return SavePng(folder_.path(), name, TwoPixels(), error_); }

  tests::TemporaryDirectory folder_;
  std::string error_;
};

TEST_F(PngFileTest, WhatIsSavedIsReadBack) {
  ASSERT_TRUE(Save("a.png")) << error_;
  const Picture picture = ReadPng(PathOf("a.png"));
  EXPECT_EQ(picture.width, 2);
  EXPECT_EQ(picture.height, 1);
  EXPECT_EQ(picture.pixels, TwoPixels().pixels);
}

TEST_F(PngFileTest, NothingElseIsLeft) {
  ASSERT_TRUE(Save("a.png"));
  EXPECT_EQ(unlink(PathOf("a.png").c_str()), 0);
  EXPECT_EQ(rmdir(folder_.path().c_str()), 0) << "the folder isn't empty";
  ASSERT_EQ(mkdir(folder_.path().c_str(), 0700), 0);
}

TEST_F(PngFileTest, ALinkIsReplacedAndNotWrittenThrough) {
  const std::string elsewhere = PathOf("elsewhere");
  std::ofstream(elsewhere) << "precious";
  for (const char* link : {"a.png", ".a.png.part"}) {
    ASSERT_EQ(symlink(elsewhere.c_str(), PathOf(link).c_str()), 0);
  }
  EXPECT_TRUE(Save("a.png")) << error_;
  EXPECT_EQ(TextOf(elsewhere), "precious");
  EXPECT_EQ(ReadPng(PathOf("a.png")).pixels, TwoPixels().pixels);
}

TEST_F(PngFileTest, APipeHoldsNothingUp) {
  ASSERT_EQ(mkfifo(PathOf("a.png").c_str(), 0600), 0);
  ASSERT_EQ(mkfifo(PathOf(".a.png.part").c_str(), 0600), 0);
  EXPECT_TRUE(Save("a.png")) << error_;
  EXPECT_EQ(ReadPng(PathOf("a.png")).width, 2);
}

TEST_F(PngFileTest, AFailureSaysThePath) {
  ASSERT_EQ(mkdir(PathOf("a.png").c_str(), 0700), 0);
  EXPECT_FALSE(Save("a.png"));
  EXPECT_EQ(error_, PathOf("a.png") + ": Is a directory");
  EXPECT_NE(access(PathOf(".a.png.part").c_str(), F_OK), 0);
  EXPECT_FALSE(SavePng(PathOf("none"), "a.png", TwoPixels(), error_));
  EXPECT_EQ(error_, PathOf("none") + "/a.png: No such file or directory");
}

TEST(PngEncoding, SizesMustFitThePixels) {
  EXPECT_TRUE(EncodePng(TwoPixels()));
  EXPECT_FALSE(EncodePng({}));
  EXPECT_FALSE(EncodePng({1, 1, {1, 2, 3}}));
  EXPECT_FALSE(EncodePng({-1, -1, {1, 2, 3, 4}}));
  EXPECT_FALSE(EncodePng({2, 2, TwoPixels().pixels}));
}

TEST(PlainFileName, OnlyANameInAFolder) {
  for (const char* good : {"a", "shot.png", "M\u00FCnchen 1", "gwx_0", "a..b", "-"}) {
    EXPECT_TRUE(IsPlainFileName(good)) << good;
  }
  for (const char* bad :
       {"", ".", "..", ".hidden", "../x", "/tmp/x", "a/b", "a/", "a\nb", "\x1B[2J", "\x7F"}) {
    EXPECT_FALSE(IsPlainFileName(bad)) << bad;
  }
  EXPECT_TRUE(IsPlainFileName(std::string(200, 'x')));
  EXPECT_FALSE(IsPlainFileName(std::string(201, 'x')));
  EXPECT_FALSE(IsPlainFileName(std::string("a\0b", 3)));
}

}  // namespace
}  // namespace ventrik::bench
