// SPDX-License-Identifier: Apache-2.0
// The walk that finds the image sets, and what it says.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "overlay/weather_images.h"
#include "tests/overlay/bmp_file.h"
#include "tests/overlay/overlay_place.h"
#include "tests/overlay/recording_device.h"

namespace ventrik::tests {
namespace {

namespace fs = std::filesystem;

class ResourceWalk : public OverlayPlace {
 protected:
  // Sets are made to live as long as the process; the test's are its own.
  ~ResourceWalk() override {
    for (CWeatherImageController* set : sets_) delete set;
  }

  std::string Find(const std::string& directory = "resources") {
    return ErrorsOf([&] { EXPECT_EQ(findResourceSets(directory, &device_, sets_), 0); });
  }

  // How often the text holds the part.
  static int Count(const std::string& text, const std::string& part) {
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
      ++count;
    }
    return count;
  }

  RecordingDevice device_;
  std::vector<CWeatherImageController*> sets_;
};

TEST_F(ResourceWalk, TellsEachSetAndEachImage) {
  WriteFile("resources/rain.logfile", PlaceText(12.5, 51, 14.25, 53));
  EXPECT_EQ(Find(),
            "findResourceSets set:0 dir:resources\n"
            "new file:resources/rain\n"
            "  rect 12.500000 50.999994 - 14.250000 52.999992\n");
  EXPECT_EQ(sets_.size(), 1u);
}

TEST_F(ResourceWalk, TextWithoutImageAndWithoutContentIsFoundAsWell) {
  WriteFile("resources/.logfile", "");
  EXPECT_EQ(Find(),
            "findResourceSets set:0 dir:resources\n"
            "new file:resources/\n"
            "  rect 0.000000 0.000000 - 0.000000 0.000000\n");
}

TEST_F(ResourceWalk, MissingOrClosedDirectoryIsPassedOverSilently) {
  EXPECT_EQ(Find(), "");
  WriteFile("file", "");
  EXPECT_EQ(Find("file"), "");
  fs::create_directory("resources");
  EXPECT_EQ(Find(), "") << "an empty one";
  EXPECT_EQ(Find(""), "");
  EXPECT_TRUE(sets_.empty());
}

TEST_F(ResourceWalk, UnreadableDirectoryIsPassedOverSilently) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  WriteFile("resources/a.logfile", "");
  fs::permissions("resources", fs::perms::none);
  EXPECT_EQ(Find(), "");
  fs::permissions("resources", fs::perms::owner_all);
}

TEST_F(ResourceWalk, OtherNamesAreNotImages) {
  for (const char* name : {"a.bmp", "a.logfil", "a.logfile2", "a.LOGFILE", "alogfile", "logfile"}) {
    WriteFile(std::string("resources/") + name, "");
  }
  EXPECT_EQ(Find(), "");
}

TEST_F(ResourceWalk, WalkedDirectoryMayBeNamedLikeTheEnding) {
  WriteFile("x.logfile/y/z", "");
  EXPECT_EQ(Find("x.logfile"), "") << "the ending counts for what isn't a directory";
  WriteFile("resources/sub.logfile/a.logfile", "");
  EXPECT_EQ(Count(Find(), "new file:"), 1);
}

TEST_F(ResourceWalk, OddityWhatEndsInAFullStopIsSkipped) {
  WriteFile("resources/x./a.logfile", "");
  WriteFile("resources/y../a.logfile", "");
  WriteFile("resources/a.logfile.", "");
  EXPECT_EQ(Find(), "");
  EXPECT_NE(Find("resources/x."), "") << "it is its name among the others that counts";
}

TEST_F(ResourceWalk, EachDirectoryWithTextsIsASetOfItsOwn) {
  WriteFile("resources/a.logfile", "");
  WriteFile("resources/b.logfile", "");
  WriteFile("resources/one/a.logfile", "");
  WriteFile("resources/none/a.bmp", "");
  WriteFile("resources/none/two/a.logfile", "");
  const std::string told = Find();
  EXPECT_EQ(sets_.size(), 3u);
  for (const char* directory : {"resources", "resources/one", "resources/none/two"}) {
    EXPECT_EQ(Count(told, std::string(" dir:") + directory + "\n"), 1) << directory;
  }
  for (const char* number : {"set:0 ", "set:1 ", "set:2 "}) EXPECT_EQ(Count(told, number), 1);
  EXPECT_EQ(Count(told, "new file:"), 4);
  EXPECT_LT(told.find("set:0 "), told.find("set:1 "));
  EXPECT_LT(told.find("set:1 "), told.find("set:2 "));
}

TEST_F(ResourceWalk, SetsFollowThoseThatAreThereAlready) {
  WriteFile("one/a.logfile", "");
  WriteFile("two/a.logfile", "");
  Find("one");
  EXPECT_EQ(Find("two").substr(0, 32), "findResourceSets set:1 dir:two\nn");
}

TEST_F(ResourceWalk, LinkBackIntoTheWalkIsNotFollowed) {
  WriteFile("resources/sub/a.logfile", "");
  fs::create_directory_symlink("..", "resources/sub/back");
  fs::create_directory_symlink(".", "resources/self");
  const std::string told = Find();
  EXPECT_EQ(sets_.size(), 1u);
  EXPECT_EQ(Count(told, "new file:"), 1);
}

TEST_F(ResourceWalk, LinkElsewhereIsFollowed) {
  WriteFile("elsewhere/a.logfile", "");
  fs::create_directory("resources");
  fs::create_directory_symlink("../elsewhere", "resources/one");
  fs::create_directory_symlink("../elsewhere", "resources/two");
  Find();
  EXPECT_EQ(sets_.size(), 2u);
}

TEST_F(ResourceWalk, WhatIsNoPlainFileIsTakenAsOneWithoutAPlace) {
  fs::create_directory("resources");
  ASSERT_EQ(mkfifo("resources/pipe.logfile", 0600), 0);
  EXPECT_EQ(Find(),
            "findResourceSets set:0 dir:resources\n"
            "new file:resources/pipe\n"
            "  rect 0.000000 0.000000 - 0.000000 0.000000\n");
  fs::create_directory("dangling");
  fs::create_symlink("nowhere", "dangling/x.logfile");
  EXPECT_EQ(Count(Find("dangling"), "new file:dangling/x\n"), 1);
}

TEST_F(ResourceWalk, MoreLevelsThanDescriptorsEndSilently) {
  std::string path = "resources";
  for (int i = 0; i < 100; ++i) path += "/d";
  fs::create_directories(path);
  WriteFile("resources/d/a.logfile", "");
  WriteFile(path + "/b.logfile", "");
  const int before = CountDescriptors();
  rlimit usual = {};
  getrlimit(RLIMIT_NOFILE, &usual);
  const rlimit few = {static_cast<rlim_t>(before) + 50, usual.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  const std::string told = Find();
  setrlimit(RLIMIT_NOFILE, &usual);
  EXPECT_EQ(Count(told, "new file:"), 1) << "what it could reach";
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(ResourceWalk, NamesInAnyBytes) {
  WriteFile("resources/\xFF\x01%s\n.logfile", "");
  EXPECT_EQ(Count(Find(), "new file:resources/\xFF\x01%s\n\n"), 1);
}

TEST_F(ResourceWalk, SetsDrawWhatWasFound) {
  WriteFile("resources/rain.logfile", PlaceText(1, 1, 2, 2));
  WriteFile("resources/rain.bmp", BmpFile().Bytes());
  Find();
  ASSERT_EQ(sets_.size(), 1u);
  ErrorsOf([this] { sets_[0]->render({0, 0, 720000, 720000}); });
  EXPECT_EQ(device_.calls, (Calls{"SetAreas(0,0,720000,720000 72000,111111,144000,222222 "
                                  "72000,111111,144000,222222)",
                                  "BeginImage(4,1)", "SetPosition(0,0)"}));
}

}  // namespace
}  // namespace ventrik::tests
