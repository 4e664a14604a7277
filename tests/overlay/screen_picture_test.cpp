// SPDX-License-Identifier: Apache-2.0
// Pictures of areas with and without images, pixel by pixel.
#include <cmath>
#include <filesystem>
#include <limits>
#include <thread>

#include "tests/overlay/screen_fixture.h"

namespace ventrik::tests {
namespace {

using ScreenPicture = ScreenTest;
using Pixel = PictureModel::Pixel;

Pixel At(const std::vector<std::uint8_t>& picture, int column, int row) {
  const std::size_t place =
      4 * (static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column));
  return {picture[place], picture[place + 1], picture[place + 2], picture[place + 3]};
}

// Lines of these runs, each with its end.
std::string Lines(int count, const std::string& runs) {
  std::string codes;
  for (int i = 0; i < count; ++i) codes += runs + kEndOfLine;
  return codes;
}

// Colours in every pixel of 40 by 30, with black among them.
std::string Mosaic() {
  std::string codes;
  for (int line = 0; line < 30; ++line) {
    for (int x = 0; x < 40; x += 2) codes += Codes({2, (x / 2 + line * 3) % 6});
    codes += kEndOfLine;
  }
  return codes;
}

TEST_F(ScreenPicture, WithoutImagesTheFrameIsAlone) {
  ExpectPicture(kPixels, {});
  EXPECT_EQ(errors_.find("CWeatherImageController"), std::string::npos);
}

TEST_F(ScreenPicture, FrameIsYellowAroundAndEmptyBeyond) {
  const auto picture = PictureOf(kPixels);
  EXPECT_EQ(At(picture, 320, 4), (Pixel{255, 255, 26, 255}));
  EXPECT_EQ(At(picture, 320, 475), (Pixel{255, 255, 26, 255}));
  EXPECT_EQ(At(picture, 6, 240), (Pixel{255, 255, 26, 255}));
  EXPECT_EQ(At(picture, 633, 240), (Pixel{255, 255, 26, 255}));
  for (const auto& [column, row] : {std::pair{0, 0}, {320, 2}, {320, 477}, {4, 240}, {635, 240}}) {
    EXPECT_EQ(At(picture, column, row), (Pixel{0, 0, 0, 0})) << column << " " << row;
  }
}

TEST_F(ScreenPicture, RedCornerOfTheFrameIsSouthWest) {
  const auto picture = PictureOf(kPixels);
  const Pixel southWest = At(picture, 9, 471);
  const Pixel southEast = At(picture, 630, 471);
  EXPECT_GT(southWest[0], 180);
  EXPECT_LT(southWest[1], 10);
  EXPECT_GT(southEast[1], 58);
  EXPECT_LT(southEast[0], 10);
}

TEST_F(ScreenPicture, FirstRowIsTheNorthernEdge) {
  // A line of its own colour in the south and one in the north.
  const TestImage image = ImageAt(kPixels, 2, 48,
                                  Codes({1, 1, 1, 2}) + kEndOfLine + Lines(46, Codes({2, 0})) +
                                      Codes({1, 3, 1, 4}) + kEndOfBitmap);
  ExpectPicture(kPixels, {image});
  const auto picture = PictureOf(kPixels);
  EXPECT_EQ(At(picture, 100, 0), (Pixel{0, 0, 204, 163})) << "blue in the north-west";
  EXPECT_EQ(At(picture, 500, 0), (Pixel{204, 204, 204, 163})) << "white in the north-east";
  EXPECT_EQ(At(picture, 100, 479), (Pixel{204, 0, 0, 163})) << "red in the south-west";
  EXPECT_EQ(At(picture, 500, 479), (Pixel{0, 204, 0, 163})) << "green in the south-east";
}

TEST_F(ScreenPicture, RunsAreBlendedOverTheFrame) {
  ExpectPicture(kPixels, {ImageAt(kPixels, 40, 30, Mosaic() + kEndOfBitmap)});
}

TEST_F(ScreenPicture, BlackLeavesTheFrameVisible) {
  const auto frame = PictureOf(kPixels);
  screen_.reset();
  const TestImage image = ImageAt(kPixels, 4, 1, Codes({1, 0, 1, 1, 1, 0, 1, 9}) + kEndOfBitmap);
  ExpectPicture(kPixels, {image});
  const auto picture = PictureOf(kPixels);
  for (const int column : {100, 400, 500}) {
    EXPECT_EQ(At(picture, column, 240), At(frame, column, 240)) << column;
  }
  EXPECT_NE(At(picture, 240, 240), At(frame, 240, 240));
}

TEST_F(ScreenPicture, NearlyBlackIsNotTransparent) {
  TestImage image = ImageAt(kPixels, 3, 1, Codes({1, 1, 1, 2, 1, 3}) + kEndOfBitmap);
  image.file.palette = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  ExpectPicture(kPixels, {image});
}

TEST_F(ScreenPicture, ImageFarFromTheOriginOfTheMap) {
  const GeoRect area = {900000, 5000000, 900000 + 1280, 5000000 + 960};
  const GeoRect place = {900000 + 320, 5000000 + 240, 900000 + 960, 5000000 + 720};
  ExpectPicture(area, {ImageAt(place, 40, 30, Mosaic() + kEndOfBitmap)});
  const GeoRect south = {-900000 - 1280, -5000000 - 960, -900000, -5000000};
  screen_.reset();
  ExpectPicture(south, {ImageAt({-900000 - 960, -5000000 - 720, -900000 - 320, -5000000 - 240}, 40,
                                30, Mosaic() + kEndOfBitmap)});
}

TEST_F(ScreenPicture, ImageThatIsNotAlignedToPixels) {
  const GeoRect area = {0, 0, 9999, 7001};
  const TestImage image = ImageAt({611, 501, 8000, 6500}, 40, 30, Mosaic() + kEndOfBitmap);
  ExpectPicture(area, {image});
}

TEST_F(ScreenPicture, ImagePartlyOutside) {
  for (const GeoRect& place : {GeoRect{-320, -240, 320, 240}, GeoRect{320, 240, 960, 720},
                               GeoRect{-640, -480, 1280, 960}, GeoRect{160, -4800, 480, 4800}}) {
    screen_.reset();
    ExpectPicture(kPixels, {ImageAt(place, 40, 30, Mosaic() + kEndOfBitmap)});
  }
}

TEST_F(ScreenPicture, ImageOutsideIsNotDrawn) {
  ExpectPicture(kPixels, {ImageAt({640, 0, 1280, 480}, 1, 1, Codes({1, 1}) + kEndOfBitmap)});
  EXPECT_EQ(errors_.find("  +"), std::string::npos);
}

TEST_F(ScreenPicture, LaterImagesLieOverEarlierOnes) {
  const TestImage red = ImageAt({100, 100, 400, 300}, 1, 1, Codes({1, 1}) + kEndOfBitmap);
  const TestImage green = ImageAt({200, 150, 500, 400}, 1, 1, Codes({1, 2}) + kEndOfBitmap);
  ExpectPicture(kPixels, {red, green});
  const auto redFirst = PictureOf(kPixels);
  EXPECT_GT(At(redFirst, 300, 280)[1], 160) << "green above";
  screen_.reset();
  ExpectPicture(kPixels, {green, red});
}

TEST_F(ScreenPicture, OnlyTheFirstSetIsShown) {
  WriteImages({});
  WriteFile("resources/one/a.logfile", PlaceText(0, 0, 0.00444, 0.00216));
  WriteFile("resources/one/two/b.logfile", PlaceText(0.00444, 0, 0.01, 0.01));
  BmpFile file = ImageAt(kPixels, 1, 1, Codes({1, 4}) + kEndOfBitmap).file;
  WriteFile("resources/one/a.bmp", file.Bytes());
  WriteFile("resources/one/two/b.bmp", file.Bytes());
  Screen();
  // Which is the first is up to the file system.
  const bool isOuter = errors_.find("set:0 dir:resources/one\n") != std::string::npos;
  EXPECT_NE(errors_.find("set:1 "), std::string::npos);
  Render(kPixels);
  const std::string drawn = isOuter ? "+resources/one/a.bmp\n" : "+resources/one/two/b.bmp\n";
  ASSERT_NE(errors_.find("  +"), std::string::npos);
  EXPECT_EQ(errors_.find(drawn), errors_.find("  +") + 2) << errors_;
  EXPECT_EQ(errors_.find("  +"), errors_.rfind("  +")) << errors_;
}

TEST(ScaleFor, NoStepsHaveNoScale) {
  EXPECT_EQ(ScaleFor(640, 0), 0.0F);
  EXPECT_EQ(ScaleFor(0, 0), 0.0F);
  EXPECT_EQ(ScaleFor(640, 320), 2.0F);
  EXPECT_EQ(ScaleFor(-640, 320), -2.0F);
  EXPECT_EQ(ScaleFor(std::int64_t{4294967295}, 1), 4294967296.0F);
}

// Files that are not as they should be.

TEST_F(ScreenPicture, DeltaLeavesTheDeviceOnItsLine) {
  ExpectPicture(kPixels, {ImageAt(kPixels, 8, 6,
                                  Codes({1, 1, 0, 2, 3, 2, 1, 2}) + kEndOfLine + Codes({2, 3}) +
                                      kEndOfBitmap)});
}

TEST_F(ScreenPicture, CoordinatesWrapAroundAt16Bits) {
  std::string line;
  for (int i = 0; i < 129; ++i) line += Codes({255, i % 5 + 1});
  ExpectPicture(kPixels, {ImageAt(kPixels, 33000, 2, line + kEndOfLine + line + kEndOfBitmap)});
}

TEST_F(ScreenPicture, LinesBeyondTheImageAreDrawnBeyondItsPlace) {
  ExpectPicture(kPixels,
                {ImageAt({100, 100, 200, 200}, 10, 10, Lines(20, Codes({20, 5})) + kEndOfBitmap)});
}

TEST_F(ScreenPicture, ImageWithoutPixelsInOneDirectionShowsNothing) {
  for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {0, 0}}) {
    screen_.reset();
    ExpectPicture(kPixels, {ImageAt(kPixels, width, height, Codes({255, 4}) + kEndOfBitmap)});
  }
}

TEST_F(ScreenPicture, NegativeSizesTurnTheImageAround) {
  // Away from its place, to the west and south of its lower left corner.
  ExpectPicture(kPixels, {ImageAt({320, 240, 640, 480}, -40, -30, Mosaic() + kEndOfBitmap)});
}

TEST_F(ScreenPicture, HugeSizesShowNothing) {
  ExpectPicture(kPixels, {ImageAt(kPixels, 2147483647, -2147483647 - 1, Mosaic() + kEndOfBitmap)});
}

// What an image leaves behind for the next one in the same picture.

const TestImage kSecond =
    ImageAt({10, 20, 110, 70}, 50, 25, Lines(25, Codes({25, 2, 25, 5})) + kEndOfBitmap);

TEST_F(ScreenPicture, OddityImageWithoutAnEndMovesTheNextOne) {
  const TestImage unfinished = ImageAt({100, 50, 420, 290}, 160, 120, Lines(60, Codes({80, 1})));
  ExpectPicture(kPixels, {unfinished, kSecond});
  const auto first = PictureOf(kPixels);
  EXPECT_EQ(PictureOf(kPixels), first) << "and not the next picture";
  EXPECT_EQ(At(first, 130, 480 - 100), (Pixel{45, 205, 0, 200}))
      << "green over red at its new place";
}

TEST_F(ScreenPicture, OddityImageOfAnotherCompressionMovesTheNextOne) {
  TestImage other = ImageAt({100, 50, 420, 290}, 160, 120, Codes({80, 1}) + kEndOfBitmap);
  other.file.compression = 0;
  ExpectPicture(kPixels, {other, kSecond});
  const auto first = PictureOf(kPixels);
  EXPECT_EQ(PictureOf(kPixels), first);
}

TEST_F(ScreenPicture, OddityUnfinishedImagesAddUp) {
  const TestImage unfinished = ImageAt({10, 10, 650, 490}, 640, 480, "");
  std::vector<TestImage> images(12, unfinished);
  images.push_back(kSecond);
  ExpectPicture(kPixels, images);
  const auto first = PictureOf(kPixels);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(PictureOf(kPixels), first) << "none is left over";
}

TEST_F(ScreenPicture, OddityTooManyEndsTakeThePictureFromTheNextImage) {
  const TestImage finished = ImageAt({100, 50, 420, 290}, 160, 120,
                                     Lines(60, Codes({80, 1})) + kEndOfBitmap + kEndOfBitmap);
  // What follows is in halves of the picture, from its middle, with the north up.
  const TestImage next =
      ImageAt({0, 0, 1, 1}, 2, 2, Codes({1, 2, 1, 3}) + kEndOfLine + Codes({2, 4}) + kEndOfBitmap);
  ExpectPicture(kPixels, {finished, next});
  const auto first = PictureOf(kPixels);
  EXPECT_EQ(PictureOf(kPixels), first);
}

TEST_F(ScreenPicture, RunsBehindTheEndAreDrawnWithoutTheImagesPlace) {
  ExpectPicture(kPixels, {ImageAt({100, 50, 420, 290}, 160, 120,
                                  Codes({80, 1}) + kEndOfBitmap + Codes({80, 2}) + kEndOfLine +
                                      Codes({200, 3}))});
}

TEST_F(ScreenPicture, ThousandthPictureIsLikeTheFirst) {
  const TestImage unfinished = ImageAt({100, 50, 420, 290}, 160, 120, Lines(3, Codes({80, 1})));
  const TestImage finished = ImageAt({50, 50, 90, 90}, 4, 4, Codes({4, 2}) + kEndOfBitmap);
  WriteImages({unfinished, finished});
  const auto first = PictureOf(kPixels);
  std::vector<std::uint8_t> last;
  for (int i = 1; i < 1000; ++i) last = PictureOf(kPixels);
  EXPECT_EQ(last, first);
}

// Areas.

class AreaOf : public ScreenPicture {
 protected:
  void ExpectFrame(float left, float bottom, float right, float top) {
    WriteImages(
        {ImageAt({-100000, -100000, 100000, 100000}, 2, 1, Codes({1, 1, 1, 2}) + kEndOfBitmap)});
    Screen();
    const auto frame = PictureModel({0, 0, 0, 0}, {});
    std::string sid;
    ErrorsOf([&] { sid = screen_->GetSID(left, bottom, right, top); });
    const auto result = frame.Compare(PrivateObjects::Read(sid));
    EXPECT_EQ(result.wrong, 0) << result.firstWrong;
    ErrorsOf([&] { screen_->DropSid(sid.c_str()); });
    PrivateObjects::Remove(sid);
  }
};

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST_F(AreaOf, NoWidthOrNoHeightIsTheFrameAlone) {
  ExpectFrame(0.5F, 0, 0.5F, 1);
  ExpectFrame(0, 0.5F, 1, 0.5F);
  ExpectFrame(0, 0, 0, 0);
  ExpectFrame(0.5F, 0, 0.500001F, 1);  // in whole units
}

TEST_F(AreaOf, WhatIsNoNumberIsTheFrameAlone) {
  ExpectFrame(kNan, kNan, kNan, kNan);
  ExpectFrame(0, 0, kNan, 1);
  ExpectFrame(0, 0, 1, kNan);
  ExpectFrame(kInfinity, 0, kInfinity, 1);
  ExpectFrame(-kInfinity, -kInfinity, -kInfinity, -kInfinity);
}

TEST_F(AreaOf, InfiniteAreaShowsTheImagesTooSmallToSee) {
  // Its edges pass through no pixel's centre.
  ExpectFrame(-kInfinity, -kInfinity, kInfinity, kInfinity);
  ExpectFrame(-1e30F, -1e30F, 1e30F, 1e30F);
}

TEST_F(AreaOf, LeftRightOfRightIsTheFrameAlone) {
  ExpectFrame(1, 0, -1, 1);
  ExpectFrame(kInfinity, 0, -kInfinity, 1);
}

TEST_F(AreaOf, NothingKnownThereIsTheFrameAlone) {
  ExpectFrame(100, 50, 110, 60);
}

TEST_F(ScreenPicture, UpsideDownAreaShowsAnImageThatIsLargeEnoughUpsideDown) {
  ExpectPicture({0, 480, 640, 0},
                {ImageAt({0, -960, 640, 1440}, 8, 15,
                         Lines(15, Codes({1, 1, 2, 2, 3, 3, 2, 4})) + kEndOfBitmap)});
}

TEST_F(ScreenPicture, AreaOfOneUnit) {
  ExpectPicture({5, 5, 6, 6}, {ImageAt({0, 0, 16, 16}, 64, 64, Mosaic() + kEndOfBitmap)});
}

}  // namespace
}  // namespace ventrik::tests
