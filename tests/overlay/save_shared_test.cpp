// SPDX-License-Identifier: Apache-2.0
#include "overlay/save_shared.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/overlay/bmp_file.h"
#include "tests/overlay/overlay_place.h"
#include "tests/overlay/private_objects.h"

namespace ventrik::tests {
namespace {

constexpr char kName[] = "TORVALE_GLES2";
constexpr std::size_t kSize = 1228800;

// Byte by byte what stands before the pixels.
const std::string kHeaders = Codes({'B',  'M',               // type
                                    0x36, 0xC0, 0x12, 0x00,  // 1228854 bytes
                                    0,    0,    0,    0,     // reserved
                                    54,   0,    0,    0,     // where the pixels begin
                                    40,   0,    0,    0,     // info header
                                    0x80, 0x02, 0,    0,     // width 640
                                    0xE0, 0x01, 0,    0,     // height 480
                                    1,    0,                 // planes
                                    32,   0,                 // bits a pixel
                                    0,    0,    0,    0,     // compression
                                    0x00, 0xC0, 0x12, 0x00,  // 1228800 bytes of pixels
                                    0x10, 0x27, 0,    0,     // resolution 10000
                                    0x10, 0x27, 0,    0,     //
                                    0,    0,    0,    0,     // colours used
                                    0,    0,    0,    0});   // important colours

class SaveSharedTest : public OverlayPlace {
 protected:
  static std::vector<std::uint8_t> Pixels(std::size_t size = kSize) {
    std::vector<std::uint8_t> pixels(size);
    for (std::size_t i = 0; i < size; ++i) pixels[i] = static_cast<std::uint8_t>(i % 251);
    return pixels;
  }

  static std::string Save(const char* path) {
    return ErrorsOf([path] { SaveShared(path); });
  }

  // Descriptors and mappings of the object that have come since.
  void ExpectLeft(int descriptors, int mappings) const {
    EXPECT_EQ(CountOpenObjects() - descriptorsBefore_, descriptors);
    EXPECT_EQ(CountMappedObjects() - mappingsBefore_, mappings);
  }

  PrivateObjects objects_;
  const int descriptorsBefore_ = CountOpenObjects();
  const int mappingsBefore_ = CountMappedObjects();
};

TEST_F(SaveSharedTest, WritesHeadersAndPixelsAsTheyLie) {
  PrivateObjects::Make(kName, Pixels());
  EXPECT_EQ(Save("screen.bmp"), "");
  const std::string file = Content("screen.bmp");
  ASSERT_EQ(file.size(), 1228854u);
  EXPECT_EQ(file.substr(0, 54), kHeaders);
  const auto pixels = Pixels();
  EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(),
                         reinterpret_cast<const std::uint8_t*>(file.data()) + 54));
  ExpectLeft(0, 0);
  EXPECT_EQ(PrivateObjects::Read(kName), pixels) << "and leaves the object as it is";
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(SaveSharedTest, FileThatIsThereIsWrittenAnew) {
  PrivateObjects::Make(kName, Pixels());
  WriteFile("screen.bmp", std::string(2000000, 'x'));
  Save("screen.bmp");
  EXPECT_EQ(Content("screen.bmp").size(), 1228854u);
}

TEST_F(SaveSharedTest, LargerObjectGivesItsFirstBytes) {
  PrivateObjects::Make(kName, Pixels(kSize + 5000));
  EXPECT_EQ(Save("screen.bmp"), "");
  EXPECT_EQ(Content("screen.bmp").size(), 1228854u);
  ExpectLeft(0, 0);
}

TEST_F(SaveSharedTest, MissingObject) {
  EXPECT_EQ(Save("screen.bmp"), "Open /TORVALE_GLES2 failed:No such file or directory\n");
  EXPECT_FALSE(std::filesystem::exists("screen.bmp"));
  EXPECT_FALSE(PrivateObjects::Exists(kName)) << "it is never made here";
  ExpectLeft(0, 0);
}

TEST_F(SaveSharedTest, OddityObjectThatCanNotBeMappedStaysOpen) {
  PrivateObjects::Make(kName, Pixels(kSize - 1));
  EXPECT_EQ(Save("screen.bmp"), "mmap failed:No such device or address\n");
  EXPECT_FALSE(std::filesystem::exists("screen.bmp"));
  ExpectLeft(1, 0);
}

TEST_F(SaveSharedTest, OddityObjectStaysMappedWhenTheFileCanNotBeOpened) {
  PrivateObjects::Make(kName, Pixels());
  EXPECT_EQ(Save("no/screen.bmp"), "Failed to open no/screen.bmp");
  ExpectLeft(1, 1);
  EXPECT_EQ(Save(""), "Failed to open ");
  ExpectLeft(2, 2);
}

TEST_F(SaveSharedTest, FullDiskLeavesAShortFileAndNothingOpen) {
  PrivateObjects::Make(kName, Pixels());
  const int before = CountDescriptors();
  EXPECT_EQ(Save("/dev/full"), "");
  rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit little = {100000, limit.rlim_max};
  void (*const handler)(int) = signal(SIGXFSZ, SIG_IGN);
  testing::internal::CaptureStderr();
  setrlimit(RLIMIT_FSIZE, &little);
  SaveShared("screen.bmp");
  setrlimit(RLIMIT_FSIZE, &limit);
  signal(SIGXFSZ, handler);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(Content("screen.bmp").size(), 100000u);
  EXPECT_EQ(CountDescriptors(), before);
  ExpectLeft(0, 0);
}

}  // namespace
}  // namespace ventrik::tests
