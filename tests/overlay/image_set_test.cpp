// SPDX-License-Identifier: Apache-2.0
// One set's images: which are drawn for an area, in which order, and what is said of it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "overlay/weather_images.h"
#include "tests/overlay/bmp_file.h"
#include "tests/overlay/overlay_place.h"
#include "tests/overlay/recording_device.h"

namespace ventrik::tests {
namespace {

// Degrees in units.
GeoRect Rect(int left, int bottom, int right, int top) {
  return {left * 72000, bottom * 111111, right * 72000, top * 111111};
}

const std::string kRequested =
    "CWeatherImageController::render\n"
    "  requested area=\n"
    "  ll=0.000,0.000 ur=10.000,10.000\n";

class ImageSet : public OverlayPlace {
 protected:
  std::string Render(const GeoRect& area = Rect(0, 0, 10, 10)) {
    return ErrorsOf([&] { set_->render(area); });
  }

  // Which widths were begun: each image here has one of its own.
  std::string Drawn() {
    std::string drawn;
    for (const std::string& call : std::exchange(device_.calls, {})) {
      if (call.rfind("BeginImage(", 0) == 0) drawn += call.substr(11, call.find(',') - 11) + " ";
    }
    return drawn;
  }

  void Add(const std::string& path, const GeoRect& place, std::int32_t width) {
    BmpFile file;
    file.width = width;
    WriteFile(path, file.Bytes());
    set_->Add(path, place);
  }

  RecordingDevice device_;
  const std::unique_ptr<CWeatherImageController> set_ =
      std::make_unique<CWeatherImageController>(&device_);
};

TEST_F(ImageSet, TellsWhatItDraws) {
  Add("a.bmp", Rect(-5, 2, 3, 20), 1);
  EXPECT_EQ(Render(), kRequested +
                          "  +a.bmp\n"
                          "  image=\n"
                          "  ll=-5.000,2.000 ur=3.000,20.000\n"
                          "  shared=\n"
                          "  ll=0.000,2.000 ur=3.000,10.000\n");
  EXPECT_EQ(device_.calls, (Calls{"SetAreas(0,0,720000,1111110 -360000,222222,216000,2222220 "
                                  "0,222222,216000,1111110)",
                                  "BeginImage(1,1)", "SetPosition(0,0)"}));
}

TEST_F(ImageSet, EmptySetTellsTheAreaOnly) {
  EXPECT_EQ(Render(), kRequested);
  EXPECT_EQ(device_.calls, Calls{});
}

TEST_F(ImageSet, DrawsWhatOverlapsTheArea) {
  Add("west.bmp", Rect(-5, 0, 0, 10), 1);
  Add("north.bmp", Rect(0, 10, 10, 20), 2);
  Add("in.bmp", Rect(4, 4, 5, 5), 3);
  Add("around.bmp", Rect(-100, -50, 100, 50), 4);
  Add("corner.bmp", Rect(9, 9, 20, 20), 5);
  Add("turned.bmp", Rect(8, 0, 2, 10), 6);
  Add("nowhere.bmp", {0, 0, 0, 0}, 7);
  EXPECT_NE(Render(), kRequested);
  EXPECT_EQ(Drawn(), "4 5 3 ");
  EXPECT_EQ(Render(Rect(50, 60, 70, 80)),
            "CWeatherImageController::render\n"
            "  requested area=\n"
            "  ll=50.000,60.000 ur=70.000,80.000\n");
  EXPECT_EQ(Drawn(), "");
  Render(Rect(-1, -1, 1, 1));
  EXPECT_EQ(Drawn(), "4 1 ") << "one without a place overlaps nothing, around zero too";
}

TEST_F(ImageSet, OrderIsThatOfThePathsBytes) {
  Add("b.bmp", Rect(0, 0, 1, 1), 1);
  Add("a/z.bmp", Rect(0, 0, 1, 1), 2);
  Add("a.bmp", Rect(0, 0, 1, 1), 3);
  Add("B.bmp", Rect(0, 0, 1, 1), 4);
  Add("\xC3\xA4.bmp", Rect(0, 0, 1, 1), 5);
  Add("a10.bmp", Rect(0, 0, 1, 1), 6);
  Add("a9.bmp", Rect(0, 0, 1, 1), 7);
  Render();
  EXPECT_EQ(Drawn(), "4 3 2 6 7 1 5 ");
}

TEST_F(ImageSet, ImageThatIsThereAlreadyKeepsItsPlace) {
  Add("a.bmp", Rect(0, 0, 1, 1), 1);
  Add("a.bmp", Rect(50, 50, 60, 60), 1);
  Render();
  EXPECT_EQ(Drawn(), "1 ");
}

TEST_F(ImageSet, FileIsReadAnewEachTime) {
  Add("a.bmp", Rect(0, 0, 1, 1), 1);
  Render();
  BmpFile file;
  file.width = 77;
  WriteFile("a.bmp", file.Bytes());
  Render();
  EXPECT_EQ(Drawn(), "1 77 ");
  std::filesystem::remove("a.bmp");
  Render();
  EXPECT_EQ(Drawn(), "");
}

TEST_F(ImageSet, MissingImageIsToldLikeOthersAndDrawsNothing) {
  set_->Add("gone.bmp", Rect(0, 0, 1, 1));
  EXPECT_EQ(Render(), kRequested +
                          "  +gone.bmp\n"
                          "  image=\n"
                          "  ll=0.000,0.000 ur=1.000,1.000\n"
                          "  shared=\n"
                          "  ll=0.000,0.000 ur=1.000,1.000\n");
  EXPECT_EQ(device_.calls.size(), 1u) << "its areas";
}

TEST_F(ImageSet, NobodyIsWaitedFor) {
  ASSERT_EQ(mkfifo("pipe.bmp", 0600), 0);
  std::filesystem::create_directory("directory.bmp");
  set_->Add("pipe.bmp", Rect(0, 0, 1, 1));
  set_->Add("directory.bmp", Rect(0, 0, 1, 1));
  Render();
  EXPECT_EQ(Drawn(), "");
  // With a writer that says nothing.
  const int ends = open("pipe.bmp", O_RDWR | O_CLOEXEC);
  Render();
  close(ends);
  EXPECT_EQ(Drawn(), "");
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(ImageSet, UnreadableImageDrawsNothing) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  Add("a.bmp", Rect(0, 0, 1, 1), 1);
  std::filesystem::permissions("a.bmp", std::filesystem::perms::none);
  Render();
  EXPECT_EQ(Drawn(), "");
}

TEST_F(ImageSet, NoDescriptorIsLeftOpen) {
  Add("a.bmp", Rect(0, 0, 1, 1), 1);
  set_->Add("gone.bmp", Rect(0, 0, 1, 1));
  const int before = CountDescriptors();
  for (int i = 0; i < 100; ++i) Render();
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(ImageSet, OddityBufferKeepsTheLastImagesBytesForTheNext) {
  BmpFile first;
  first.palette = {{1, 2, 3}, {4, 5, 6}};
  first.codes = Codes({9, 1, 8, 1});
  BmpFile second = first;
  second.codes = Codes({7, 1, 6});  // half a pair
  WriteFile("1.bmp", first.Bytes());
  WriteFile("2.bmp", second.Bytes());
  set_->Add("1.bmp", Rect(0, 0, 1, 1));
  set_->Add("2.bmp", Rect(0, 0, 1, 1));
  Render();
  ASSERT_FALSE(device_.calls.empty());
  EXPECT_EQ(device_.calls.back(), "DrawRun(7,6,040506)") << "its other half is the first image's";
}

}  // namespace
}  // namespace ventrik::tests
