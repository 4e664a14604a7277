// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/screen_fixture.h"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include <cstdio>

#include "platform/graphics.h"

namespace ventrik::tests {
namespace {

constexpr int kCornerPixels = 4 * 3 * 3;  // that the model leaves free in every picture

// As main does it, before there are threads. And leaks are looked for at the end while the driver's
// threads stand still: at the process's end some are just going, over which the leak sanitizer has
// been seen to stumble.
class Graphics : public testing::Environment {
 public:
  void SetUp() override { platform::PrepareGraphics(); }
#ifdef __SANITIZE_ADDRESS__
  void TearDown() override {
    __lsan_do_leak_check();
  }
#endif
};
const testing::Environment* const graphics = testing::AddGlobalTestEnvironment(new Graphics);

// Degrees that become these units, though both GetSID's numbers and a text file's are cut off.
double Longitude(std::int32_t units) {
  return (units + (units > 0 ? 0.5 : units < 0 ? -0.5 : 0)) / kUnitsPerLongitude;
}
double Latitude(std::int32_t units) {
  return (units + (units > 0 ? 0.5 : units < 0 ? -0.5 : 0)) / kUnitsPerLatitude;
}

}  // namespace

std::vector<Entry> Palette() {
  return {{0, 0, 0}, {0, 0, 255}, {0, 255, 0}, {255, 0, 0}, {255, 255, 255}, {77, 130, 201}};
}

TestImage ImageAt(const GeoRect& place, std::int32_t width, std::int32_t height,
                  const std::string& codes) {
  TestImage image = {place, {}};
  image.file.width = width;
  image.file.height = height;
  image.file.palette = Palette();
  image.file.codes = codes;
  return image;
}

ScreenTest::ScreenTest() {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";  // a copy of EGL's threads doesn't run
}

ScreenTest::~ScreenTest() {
  screen_.reset();
}

void ScreenTest::WriteImages(const std::vector<TestImage>& images) {
  int number = 0;
  for (const TestImage& image : images) {
    char name[32];
    std::snprintf(name, sizeof name, "resources/%04d", number++);
    WriteFile(name + std::string(".bmp"), image.file.Bytes());
    const GeoRect& place = image.place;
    WriteFile(name + std::string(".logfile"),
              PlaceText(Longitude(place.left), Latitude(place.bottom), Longitude(place.right),
                        Latitude(place.top)));
  }
}

WeatherOverlay_Screen& ScreenTest::Screen() {
  if (!screen_) {
    errors_ = ErrorsOf([this] { screen_ = std::make_unique<WeatherOverlay_Screen>(); });
  }
  return *screen_;
}

std::string ScreenTest::Render(const GeoRect& area) {
  WeatherOverlay_Screen& screen = Screen();
  std::string sid;
  errors_ = ErrorsOf([&] {
    sid = screen.GetSID(
        static_cast<float>(Longitude(area.left)), static_cast<float>(Latitude(area.bottom)),
        static_cast<float>(Longitude(area.right)), static_cast<float>(Latitude(area.top)));
  });
  return sid;
}

std::vector<std::uint8_t> ScreenTest::PictureOf(const GeoRect& area) {
  const std::string sid = Render(area);
  auto picture = PrivateObjects::Read(sid);
  ErrorsOf([&] { Screen().DropSid(sid.c_str()); });
  PrivateObjects::Remove(sid);
  return picture;
}

PictureModel::Comparison ScreenTest::Compare(const GeoRect& area,
                                             const std::vector<TestImage>& images) {
  WriteImages(images);
  return PictureModel(area, images).Compare(PictureOf(area));
}

void ScreenTest::ExpectPicture(const GeoRect& area, const std::vector<TestImage>& images) {
  const PictureModel::Comparison result = Compare(area, images);
  EXPECT_EQ(result.wrong, 0) << result.firstWrong;
  EXPECT_EQ(result.free, kCornerPixels);
  EXPECT_EQ(result.compared + result.free, kWidth * kHeight);
}

}  // namespace ventrik::tests

// Image sets live as long as the process, so each renderer of a test leaves its own behind.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:ventrik::findResourceSets\n";
}
