// SPDX-License-Identifier: Apache-2.0
#include "bench/recorder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <vector>

#include "tests/support/temporary_directory.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;

std::string Format(std::uint32_t time, const std::vector<std::uint8_t>& bytes) {
  return FormatRecord(time, {bytes.data(), bytes.size()});
}

TEST(FormatRecord, WritesUpperCaseDigitsHighestFirst) {
  EXPECT_EQ(Format(31, {0x2E, 0x01, 0x00, 0x00}), "0000001F000000042E010000\n");
  EXPECT_EQ(Format(0x89ABCDEF, {0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10}),
            "89ABCDEF00000008FEDCBA9876543210\n");
}

TEST(FormatRecord, WritesAnEmptyMessage) {
  EXPECT_EQ(FormatRecord(0, {nullptr, 0}), "0000000000000000\n");
}

TEST(FormatRecord, WritesTheLongestMessage) {
  const std::vector<std::uint8_t> bytes(kMaxRecordedPayload, 0xA5);
  const std::string record = Format(0xFFFFFFFF, bytes);
  EXPECT_EQ(record.size(), 17 + 2 * kMaxRecordedPayload);
  EXPECT_EQ(record.substr(0, 20), "FFFFFFFF00002000A5A5");
  EXPECT_EQ(record.substr(record.size() - 5), "A5A5\n");
}

class RecorderTest : public ::testing::Test {
 protected:
  // The file as another process would find it now.
  std::string Content() const {
    std::ifstream file(path_, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  tests::TemporaryDirectory directory_;
  const std::string path_ = directory_.path() + "/record.log";
  Recorder recorder_;
  std::string error_;
};

TEST_F(RecorderTest, WritesEachRecordAtOnce) {
  ASSERT_TRUE(recorder_.Open(path_, error_)) << error_;
  EXPECT_EQ(Content(), "");
  const std::uint8_t bytes[] = {1, 2};
  recorder_.Record(milliseconds(16), {bytes, 2});
  EXPECT_EQ(Content(), "00000010000000020102\n");
  recorder_.Record(milliseconds(17), {bytes, 1});
  EXPECT_EQ(Content(), "00000010000000020102\n000000110000000101\n");
}

TEST_F(RecorderTest, CountsTimeModuloThirtyTwoBits) {
  ASSERT_TRUE(recorder_.Open(path_, error_)) << error_;
  recorder_.Record(milliseconds(0x1'0000'0002), {nullptr, 0});
  EXPECT_EQ(Content(), "0000000200000000\n");
}

TEST_F(RecorderTest, LeavesOutWhatIsTooLongAndSaysSo) {
  ASSERT_TRUE(recorder_.Open(path_, error_)) << error_;
  const std::vector<std::uint8_t> bytes(kMaxRecordedPayload + 1, 0);
  testing::internal::CaptureStderr();
  recorder_.Record(milliseconds(1), {bytes.data(), bytes.size()});
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "kelmora-bench: message 0 of 8193 bytes is too long to be recorded\n");
  EXPECT_EQ(Content(), "");
  recorder_.Record(milliseconds(1), {bytes.data(), kMaxRecordedPayload});
  EXPECT_EQ(Content().size(), 17 + 2 * kMaxRecordedPayload);
}

TEST_F(RecorderTest, EmptiesAnOldFile) {
  std::ofstream(path_) << "old";
  ASSERT_TRUE(recorder_.Open(path_, error_)) << error_;
  EXPECT_EQ(Content(), "");
}

TEST_F(RecorderTest, SaysWhyAFileCannotBeMade) {
  EXPECT_FALSE(recorder_.Open(directory_.path() + "/no/file", error_));
  EXPECT_EQ(error_, directory_.path() + "/no/file: No such file or directory");
}

TEST_F(RecorderTest, StopsAtTheFirstFailureToWrite) {
  ASSERT_TRUE(recorder_.Open("/dev/full", error_)) << error_;
  testing::internal::CaptureStderr();
  recorder_.Record(milliseconds(1), {nullptr, 0});
  recorder_.Record(milliseconds(2), {nullptr, 0});
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "kelmora-bench: the recording ends here: No space left on device\n");
}

TEST_F(RecorderTest, RecordsNothingWithoutAFile) {
  testing::internal::CaptureStderr();
  recorder_.Record(milliseconds(1), {nullptr, 0});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace ventrik::bench
