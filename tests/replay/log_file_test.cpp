// SPDX-License-Identifier: Apache-2.0
#include "replay/log_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "tests/support/temporary_directory.h"

namespace ventrik::tests {
namespace {

class LogFileTest : public testing::Test {
 protected:
  std::string Path(const std::string& name) const { return directory_.path() + "/" + name; }

  std::unique_ptr<LogFile> Opened(const std::string& content) {
    std::ofstream(Path("log"), std::ios::binary) << content;
    auto file = std::make_unique<LogFile>();
    EXPECT_TRUE(file->Open(Path("log").c_str()));
    return file;
  }

  TemporaryDirectory directory_;
};

// No two stretches of it are alike.
std::string Counted(std::size_t size) {
  std::string text;
  for (int number = 0; text.size() < size; ++number) text += std::to_string(number) + ",";
  text.resize(size);
  return text;
}

TEST_F(LogFileTest, ReadsPieceByPieceOverTheEndsOfItsBlocks) {
  for (const std::size_t piece :
       {std::size_t{1}, std::size_t{8}, std::size_t{1000}, kLongestRead}) {
    const std::string content = Counted(4 * kLongestRead * 3 + 17);
    const auto file = Opened(content);
    std::string read;
    while (!file->IsAtEnd()) {
      EXPECT_EQ(file->Position(), read.size());
      read += file->Read(piece);
    }
    ASSERT_EQ(read, content) << piece;
  }
}

TEST_F(LogFileTest, IsAtItsEndOnceAReadHasMetIt) {
  const auto file = Opened("12345678");
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_EQ(file->Read(8), "12345678");
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_EQ(file->Read(0), "");
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_EQ(file->Read(1), "");
  EXPECT_TRUE(file->IsAtEnd());
  file->Seek(6);
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_EQ(file->Read(8), "78");
  EXPECT_TRUE(file->IsAtEnd());
  EXPECT_EQ(file->Position(), 8u);
}

TEST_F(LogFileTest, EmptyFileIsAtItsEndOnlyWhenRead) {
  const auto file = Opened("");
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_FALSE(file->Skip('\n'));
  EXPECT_TRUE(file->IsAtEnd());
}

TEST_F(LogFileTest, SkipsOneByteIfItIsTheOneAskedFor) {
  const auto file = Opened("\n\nab");
  EXPECT_TRUE(file->Skip('\n'));
  EXPECT_EQ(file->Position(), 1u);
  EXPECT_TRUE(file->Skip('\n'));
  EXPECT_FALSE(file->Skip('\n'));
  EXPECT_FALSE(file->IsAtEnd());
  EXPECT_EQ(file->Position(), 2u);
  EXPECT_EQ(file->Read(2), "ab");
}

TEST_F(LogFileTest, GoesBackAndForth) {
  const std::string content = Counted(10 * kLongestRead);
  const auto file = Opened(content);
  for (const std::size_t at : {std::size_t{100'000}, std::size_t{0}, std::size_t{65'530}}) {
    file->Seek(at);
    EXPECT_EQ(file->Position(), at);
    EXPECT_EQ(file->Read(kLongestRead), content.substr(at, kLongestRead));
    EXPECT_EQ(file->Position(), at + kLongestRead);
  }
}

TEST_F(LogFileTest, OpensNoFolderAndNothingThatIsNotThere) {
  EXPECT_FALSE(LogFile().Open(directory_.path().c_str()));
  EXPECT_FALSE(LogFile().Open(Path("nosuch").c_str()));
  EXPECT_FALSE(LogFile().Open(""));
}

TEST_F(LogFileTest, PipeIsEmptyAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  LogFile file;
  EXPECT_TRUE(file.Open(Path("pipe").c_str()));
  EXPECT_EQ(file.Read(8), "");
  EXPECT_TRUE(file.IsAtEnd());
}

}  // namespace
}  // namespace ventrik::tests
