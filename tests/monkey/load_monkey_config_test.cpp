// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>
#include <unistd.h>

#include "monkey/monkey_config.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

const std::wstring kNotFound = L"\033[1;31mError: Monkey_config.txt not found!\n\033[0;37m";

class LoadMonkeyConfigTest : public MonkeyTest {
 protected:
  void Load(const std::string& file) {
    WriteFile("monkey_config.txt", file);
    LoadMonkeyConfig(monkey_);
  }

  // The names of the records.
  Texts Names() const {
    Texts names;
    for (const auto& record : monkey_.weights.Copy().commandRecords) names.push_back(record.name);
    return names;
  }

  // What the monkey may have from a run before this one.
  void LeaveRecords() { SetRecords(monkey_, {Record(L"old", 7)}); }
};

TEST_F(LoadMonkeyConfigTest, FileLetsTheMonkeyRun) {
  Load("[verd]\ndefault=5\nifactiveroute=1\n\n[vers]\ndefault=2\nverd=0.5\n");
  EXPECT_EQ(Names(), (Texts{L"verd", L"vers"}));
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{5, 2}));
  EXPECT_EQ(WeightTotal(monkey_), 7);
  EXPECT_EQ(monkey_.monkeyRunning, 1);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LoadMonkeyConfigTest, MissingFileIsSaidAndLeavesNothingToSend) {
  LeaveRecords();
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(console_.TakeTexts(), Texts{kNotFound});
  EXPECT_EQ(Names(), Texts{});
  EXPECT_EQ(WeightTotal(monkey_), 0);
}

TEST_F(LoadMonkeyConfigTest, MissingFileLeavesTheRunningAsItWas) {
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(monkey_.monkeyRunning, 0);
  monkey_.monkeyRunning = 1;
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(monkey_.monkeyRunning, 1);
}

TEST_F(LoadMonkeyConfigTest, FileThatCantBeOpenedIsMissing) {
  ASSERT_EQ(symlink("monkey_config.txt", "monkey_config.txt"), 0);
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(Printed(), kNotFound);
  EXPECT_EQ(monkey_.monkeyRunning, 0);
}

// Either can be opened, which is all that is asked before the monkey may run.
TEST_F(LoadMonkeyConfigTest, DirectoryOrIdlePipeIsAFileWithoutASection) {
  ASSERT_EQ(mkdir("monkey_config.txt", 0700), 0);
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(monkey_.monkeyRunning, 1);
  ASSERT_EQ(rmdir("monkey_config.txt"), 0);
  ASSERT_EQ(mkfifo("monkey_config.txt", 0600), 0);
  monkey_.monkeyRunning = 0;
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(monkey_.monkeyRunning, 1);
  EXPECT_EQ(Names(), Texts{});
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LoadMonkeyConfigTest, FileWithoutASectionIsNotSaid) {
  LeaveRecords();
  Load("text\n");
  EXPECT_EQ(Names(), Texts{});
  EXPECT_EQ(WeightTotal(monkey_), 0);
  EXPECT_EQ(monkey_.monkeyRunning, 1);
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LoadMonkeyConfigTest, RecordsAreReplacedAtEachLoad) {
  Load("[a]\ndefault=1\n\n[b]\ndefault=2\n");
  Load("[c]\ndefault=3\n");
  EXPECT_EQ(Names(), Texts{L"c"});
  EXPECT_EQ(WeightTotal(monkey_), 3);
  Load("[c]\n");
  EXPECT_EQ(WeightTotal(monkey_), 0);
}

TEST_F(LoadMonkeyConfigTest, RegionStaysUntilAnotherIsNamed) {
  Load("[config]\ncontent = na\n");
  EXPECT_EQ(monkey_.region.longitudeMin, -128);
  Load("[a]\n");
  EXPECT_EQ(monkey_.region.longitudeMin, -128);
  EXPECT_EQ(monkey_.region.latitudeMax, 50);
  Load("[config]\ncontent = eu\n");
  EXPECT_EQ(monkey_.region.longitudeMin, -8);
}

TEST_F(LoadMonkeyConfigTest, SumCountsFinalDefaultsAndEverySection) {
  Load("[a]\ndefault=5\ndefault=2\nifactiveroute=9\n\n[b]\n\n[c]\ndefault=-3\n\n[c]\ndefault=1\n");
  EXPECT_EQ(CurrentWeights(monkey_), (std::vector<std::int32_t>{2, 2, -3, 1}));
  EXPECT_EQ(WeightTotal(monkey_), 2);
}

TEST_F(LoadMonkeyConfigTest, SumWrapsAsAWordDoes) {
  Load("[a]\ndefault=2147483647\n\n[b]\n");
  EXPECT_EQ(WeightTotal(monkey_), -2);
}

TEST_F(LoadMonkeyConfigTest, CarriageReturnsSpoilTheFile) {
  Load("[config]\r\ncontent = na\r\n\r\n[start]\r\ndefault=4\r\n");
  EXPECT_EQ(Names(), Texts{L"config]"});
  EXPECT_EQ(WeightTotal(monkey_), 4);
  EXPECT_EQ(monkey_.region.longitudeMin, 0);
}

TEST_F(LoadMonkeyConfigTest, LinesMayBeAMegabyteLong) {
  const std::string megabyte(1u << 20, 'x');
  Load("[a]\n" + megabyte + "=2\ndefault=1\n\n[" + megabyte + "]\n");
  EXPECT_EQ(Names(), (Texts{L"a", std::wstring(1u << 20, L'x')}));
  EXPECT_EQ(WeightTotal(monkey_), 2);
}

TEST_F(LoadMonkeyConfigTest, LogIsEmptied) {
  WriteFile("monkeylog.txt", "verd\n");
  Load("[a]\n");
  EXPECT_EQ(Content("monkeylog.txt"), "");
}

TEST_F(LoadMonkeyConfigTest, LogIsEmptiedWithoutAConfigurationToo) {
  EXPECT_EQ(Content("monkeylog.txt"), "(none)");
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(Content("monkeylog.txt"), "");
  WriteFile("monkeylog.txt", "verd\n");
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(Content("monkeylog.txt"), "");
}

TEST_F(LoadMonkeyConfigTest, LogThatCantBeEmptiedIsNotReported) {
  ASSERT_EQ(mkdir("monkeylog.txt", 0700), 0);
  Load("[a]\ndefault=1\n");
  EXPECT_EQ(Names(), Texts{L"a"});
  EXPECT_EQ(Printed(), L"");
}

TEST_F(LoadMonkeyConfigTest, FilesAreClosed) {
  const int before = CountDescriptors();
  Load("[a]\n");
  ASSERT_EQ(unlink("monkey_config.txt"), 0);
  LoadMonkeyConfig(monkey_);
  EXPECT_EQ(CountDescriptors(), before);
}

}  // namespace
}  // namespace ventrik::tests
