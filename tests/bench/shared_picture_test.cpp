// SPDX-License-Identifier: Apache-2.0
#include "bench/shared_picture.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "bench/picture/shared_surface.h"
#include "tests/bench/picture/shared_object.h"

namespace ventrik::bench {
namespace {

class SharedPictureTest : public ::testing::Test {
 protected:
  std::string Path() const { return "/" + name_; }
  // What a tester would read; nothing if it is no picture.
  std::vector<std::uint8_t> Shared() const {
    std::string error;
    const auto picture = ReadSurface(name_, error);
    return picture ? picture->pixels : std::vector<std::uint8_t>{};
  }
  bool Exists() const {
    const int object = shm_open(Path().c_str(), O_RDONLY, 0);
    if (object != -1) close(object);
    return object != -1;
  }

  const std::string name_ = OwnObjectName("picture");
};

TEST_F(SharedPictureTest, ThePictureHasItsSizeAndItsColours) {
  const auto bytes = SharedTestPicture();
  ASSERT_EQ(bytes.size(), 1'228'800u);
  const auto pixel = [&bytes](std::size_t x, std::size_t y) {
    const auto* at = &bytes[y * 2560 + x * 4];
    return std::vector<int>(at, at + 4);
  };
  EXPECT_EQ(pixel(0, 0), (std::vector<int>{0, 0, 0, 255}));
  EXPECT_EQ(pixel(100, 0), (std::vector<int>{0, 0, 255, 255}));
  EXPECT_EQ(pixel(400, 0), (std::vector<int>{255, 0, 255, 255}));
  EXPECT_EQ(pixel(639, 359), (std::vector<int>{255, 255, 255, 255}));
  EXPECT_EQ(pixel(0, 479), (std::vector<int>{0, 0, 0, 255}));
  EXPECT_EQ(pixel(639, 479), (std::vector<int>{255, 255, 255, 255}));
}

TEST_F(SharedPictureTest, ItIsThereFromBeginningToEnd) {
  {
    const SharedPicture picture(Path());
    EXPECT_TRUE(picture.isOwner());
    EXPECT_EQ(Shared(), SharedTestPicture());
    const int object = shm_open(Path().c_str(), O_RDWR, 0);
    EXPECT_NE(object, -1) << "a tester opens it for writing";
    close(object);
  }
  EXPECT_FALSE(Exists());
}

TEST_F(SharedPictureTest, ItCanBeRemovedBeforeTheEnd) {
  SharedPicture picture(Path());
  picture.Remove();
  EXPECT_FALSE(Exists());
  const SharedPicture next(Path());
  picture.Remove();
  EXPECT_TRUE(Exists()) << "it is the next one's";
}

TEST_F(SharedPictureTest, TwoDoNotFight) {
  const SharedPicture first(Path());
  std::optional<SharedPicture> second;
  testing::internal::CaptureStderr();
  second.emplace(Path());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(second->isOwner());
  second.reset();
  EXPECT_EQ(Shared(), SharedTestPicture());
}

TEST_F(SharedPictureTest, SomebodyElsesObjectIsLeftAlone) {
  SharedObject object(name_, 1'228'800);
  object.Write({1, 2, 3, 4}, 0);
  {
    const SharedPicture picture(Path());
    EXPECT_FALSE(picture.isOwner());
  }
  const auto shared = Shared();
  ASSERT_FALSE(shared.empty());
  EXPECT_EQ(shared[3], 4);
}

TEST_F(SharedPictureTest, WhatAKilledEngineLeftIsTakenOver) {
  {
    SharedObject object(name_, 0);
    object.Write(SharedTestPicture(), 0);
    const SharedPicture picture(Path());
    EXPECT_TRUE(picture.isOwner());
    EXPECT_TRUE(Exists());
  }
  EXPECT_FALSE(Exists());
}

TEST_F(SharedPictureTest, AFailureIsReported) {
  const std::string name = "/" + std::string(300, 'x');
  testing::internal::CaptureStderr();
  const SharedPicture picture(name);
  const std::string report = testing::internal::GetCapturedStderr();
  EXPECT_EQ(report.find("kelmora-bench: " + name + " can't be made: "), 0u) << report;
  EXPECT_EQ(report.find('\n'), report.size() - 1) << report;
  EXPECT_FALSE(picture.isOwner());
}

}  // namespace
}  // namespace ventrik::bench
