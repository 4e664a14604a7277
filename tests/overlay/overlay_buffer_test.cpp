// SPDX-License-Identifier: Apache-2.0
#include "overlay/overlay_buffer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>

#include "tests/overlay/overlay_place.h"
#include "tests/overlay/private_objects.h"

namespace ventrik::tests {
namespace {

class OverlayBufferTest : public testing::Test {
 protected:
  ~OverlayBufferTest() override {
    if (buffer_.fd != -1) ErrorsOf([this] { CloseBuffer(buffer_); });
  }

  static OverlayBuffer BufferOf(const std::string& sid) {
    OverlayBuffer buffer;
    std::copy(sid.begin(), sid.end(), buffer.sid.begin());
    buffer.width = 640;
    buffer.height = 480;
    buffer.strideAlignment = 8;
    buffer.bytesPerPixel = 4;
    buffer.glFormat = 0x1908;
    return buffer;
  }

  // What InitBuffer says, and its result in `result_`.
  std::string Init() {
    return ErrorsOf([this] { result_ = InitBuffer(buffer_); });
  }

  PrivateObjects objects_;
  RecordedConsole console_;
  OverlayBuffer buffer_ = BufferOf("gwx_7");
  int result_ = -1;
};

TEST_F(OverlayBufferTest, MakesAnObjectOfTheBuffersName) {
  EXPECT_EQ(Init(), "Init buffer:gwx_7\n");
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(console_.TakeText(), L"stride: 2560\tbytes: 1228800\n");
  EXPECT_GE(buffer_.fd, 0);
  EXPECT_EQ(buffer_.size, 1228800u);
  ASSERT_NE(buffer_.pixels, nullptr);
  EXPECT_EQ(PrivateObjects::Names(), std::vector<std::string>{"gwx_7"});
  EXPECT_EQ(PrivateObjects::Read("gwx_7"), std::vector<std::uint8_t>(1228800));
  EXPECT_EQ(buffer_.glFormat, 0x1908u) << "what isn't its business stays";
}

TEST_F(OverlayBufferTest, OthersSeeWhatIsWritten) {
  Init();
  ASSERT_EQ(result_, 0);
  buffer_.pixels[0] = 1;
  buffer_.pixels[1228799] = 2;
  const auto seen = PrivateObjects::Read("gwx_7");
  EXPECT_EQ(seen.front(), 1);
  EXPECT_EQ(seen.back(), 2);
}

TEST_F(OverlayBufferTest, EverybodyMayOpenItWhateverTheUmask) {
  const mode_t before = umask(077);
  Init();
  umask(before);
  struct stat status = {};
  ASSERT_EQ(stat(PrivateObjects::PathOf("gwx_7").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0777u);
}

TEST_F(OverlayBufferTest, DescriptorIsClosedOnExec) {
  Init();
  EXPECT_EQ(fcntl(buffer_.fd, F_GETFD), FD_CLOEXEC);
}

TEST_F(OverlayBufferTest, ObjectThatIsThereIsTakenOver) {
  PrivateObjects::Make("gwx_7", {5, 6});
  EXPECT_EQ(Init(), "Init buffer:gwx_7\n");
  EXPECT_EQ(result_, 0);
  const auto content = PrivateObjects::Read("gwx_7");
  ASSERT_EQ(content.size(), 1228800u);
  EXPECT_EQ(content[1], 6);
  struct stat status = {};
  ASSERT_EQ(stat(PrivateObjects::PathOf("gwx_7").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0777u);
}

TEST_F(OverlayBufferTest, LargerObjectThatIsThereTakesTheSize) {
  PrivateObjects::Make("gwx_7", std::vector<std::uint8_t>(2000000, 1));
  Init();
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(PrivateObjects::Read("gwx_7").size(), 1228800u);
}

TEST_F(OverlayBufferTest, RowsAreAsLongAsTheNextMultiple) {
  struct Row {
    std::int32_t width;
    std::int32_t alignment;
    std::int32_t bytes;
    const wchar_t* text;
  };
  for (const Row& row :
       {Row{1, 8, 4, L"stride: 8\tbytes: 24\n"}, Row{2, 8, 4, L"stride: 8\tbytes: 24\n"},
        Row{3, 8, 4, L"stride: 16\tbytes: 48\n"}, Row{5, 1, 3, L"stride: 15\tbytes: 45\n"},
        Row{5, 64, 3, L"stride: 64\tbytes: 192\n"}, Row{5, 6, 1, L"stride: 6\tbytes: 18\n"}}) {
    OverlayBuffer buffer = BufferOf("row");
    buffer.width = row.width;
    buffer.height = 3;
    buffer.strideAlignment = row.alignment;
    buffer.bytesPerPixel = row.bytes;
    ErrorsOf([&] {
      EXPECT_EQ(InitBuffer(buffer), 0);
      CloseBuffer(buffer);
    });
    EXPECT_EQ(console_.TakeText(), row.text);
  }
}

TEST_F(OverlayBufferTest, CloseLeavesTheObject) {
  Init();
  buffer_.pixels[0] = 9;
  EXPECT_EQ(CountOpenObjects(), 1);
  EXPECT_EQ(CountMappedObjects(), 1);
  EXPECT_EQ(ErrorsOf([this] { CloseBuffer(buffer_); }), "Close buffer:gwx_7\n");
  EXPECT_EQ(CountOpenObjects(), 0);
  EXPECT_EQ(CountMappedObjects(), 0);
  EXPECT_EQ(buffer_.fd, -1);
  EXPECT_EQ(buffer_.size, 0u);
  EXPECT_EQ(buffer_.pixels, nullptr);
  EXPECT_EQ(buffer_.physicalAddress, 0);
  EXPECT_STREQ(buffer_.sid.data(), "gwx_7");
  const auto content = PrivateObjects::Read("gwx_7");
  ASSERT_EQ(content.size(), 1228800u);
  EXPECT_EQ(content[0], 9);
}

// Failures.

TEST_F(OverlayBufferTest, NameThatNoObjectCanHave) {
  buffer_ = BufferOf("a/b");
  EXPECT_EQ(Init(), "Init buffer:a/b\nOpen \"/a/b\" failed:Invalid argument\n");
  EXPECT_EQ(result_, 1);
  EXPECT_EQ(buffer_.fd, -1);
  EXPECT_EQ(buffer_.pixels, nullptr);
  EXPECT_EQ(console_.TakeText(), L"") << "no stride either";
}

TEST_F(OverlayBufferTest, ObjectThatIsADirectory) {
  std::filesystem::create_directory(PrivateObjects::PathOf("gwx_7"));
  EXPECT_EQ(Init(), "Init buffer:gwx_7\nOpen \"/gwx_7\" failed:Invalid argument\n");
  EXPECT_EQ(result_, 1);
  EXPECT_EQ(CountOpenObjects(), 0);
}

TEST_F(OverlayBufferTest, NoDescriptorsLeft) {
  rlimit before = {};
  getrlimit(RLIMIT_NOFILE, &before);
  testing::internal::CaptureStderr();
  const int next = dup(0);
  close(next);
  const rlimit none = {static_cast<rlim_t>(next), before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  result_ = InitBuffer(buffer_);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Init buffer:gwx_7\nOpen \"/gwx_7\" failed:Too many open files\n");
  EXPECT_EQ(result_, 1);
}

TEST_F(OverlayBufferTest, NoRoomForThePixels) {
  buffer_.width = 400'000'000;  // a row of nearly 2 GB
  buffer_.height = 1;
  // A limit is nearer than the end of this machine's memory.
  rlimit before = {};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit little = {1 << 20, before.rlim_max};
  void (*const handler)(int) = signal(SIGXFSZ, SIG_IGN);
  testing::internal::CaptureStderr();
  setrlimit(RLIMIT_FSIZE, &little);
  result_ = InitBuffer(buffer_);
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, handler);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Init buffer:gwx_7\nmmap failed:No such device or address\n");
  EXPECT_EQ(result_, 1);
  EXPECT_EQ(console_.TakeText(), L"stride: 1600000000\tbytes: 1600000000\n");
  EXPECT_EQ(buffer_.pixels, nullptr);
  EXPECT_GE(buffer_.fd, 0) << "stays open: the process aborts";
  close(buffer_.fd);
  buffer_.fd = -1;
}

TEST_F(OverlayBufferTest, BufferWithoutPixelsCanNotBeMapped) {
  buffer_.height = 0;
  EXPECT_EQ(Init(), "Init buffer:gwx_7\nmmap failed:Invalid argument\n");
  EXPECT_EQ(result_, 1);
  close(buffer_.fd);
  buffer_.fd = -1;
}

}  // namespace
}  // namespace ventrik::tests
