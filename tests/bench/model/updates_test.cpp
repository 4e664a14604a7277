// SPDX-License-Identifier: Apache-2.0
#include "bench/model/updates.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "bench/model/update_package.h"
#include "messages/word_printers.h"
#include "tests/bench/model/cut_requests.h"
#include "tests/bench/model/model_fixture.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;

struct Judged {
  const char* path;
  std::int32_t result;
  std::int32_t version;
};

TEST(UpdatePackageTest, IsWhatItsNameSays) {
  constexpr Judged kCases[] = {
      {"map-v7.pkg", 0, 7},
      {"map 4", 0, 4},
      {"V0012", 0, 12},
      {"/media/usb/update", 0, 4},
      {"/media/usb/", 0, 4},
      {"/old/none/update-9.zip", 0, 9},
      {"999999", 0, 999'999},
      {"1000000", 0, 4},
      {"99999999999999999999", 0, 4},
      {"golden", 0, 4},
      {"map2", 0, 4},
      {"-5", 0, 5},
      {"2022-03-04", 0, 2022},
      {"\xC3\xBC", 0, 4},
      {"update 3", kSamePackage, 0},
      {"update 2", kOlderPackage, 0},
      {"update 0", kOlderPackage, 0},
      {"same", kSamePackage, 0},
      {"Old_9.pkg", kOlderPackage, 0},
      {"older", kOlderPackage, 0},
      {"BROKEN", kInvalidPackage, 0},
      {"x.invalid", kInvalidPackage, 0},
      {"full 9", kNotEnoughSpace, 0},
      {"none", kNoPackage, 0},
      {"/a/missing/", kNoPackage, 0},
      {"", kNoPackage, 0},
      {"///", kNoPackage, 0},
      {"full-old.pkg", kNotEnoughSpace | kOlderPackage, 0},
      {"invalid full old none same", 0x3D, 0},
  };
  for (const Judged& row : kCases) {
    const UpdatePackage package = JudgeUpdatePackage(row.path, 3);
    EXPECT_EQ(package.result, row.result) << row.path;
    EXPECT_EQ(package.version, row.version) << row.path;
  }
}

TEST(UpdatePackageTest, FlagsAreThoseThatATesterPrints) {
  EXPECT_EQ(UpdateResultText(kUpdateSuccess), "updSuccess(0)");
  EXPECT_EQ(UpdateResultText(kInvalidPackage | kNotEnoughSpace | kOlderPackage | kNoPackage |
                             kSamePackage),
            "updInvalidPackage|updNotEnoughSpace|updOlderPackage|updNoPackage|updSamePackage(61)");
}

TEST(UpdatePackageTest, AVeryLongPathIsInvalid) {
  EXPECT_EQ(JudgeUpdatePackage(std::string(kLongestUpdatePath, 'x'), 3).result, kUpdateSuccess);
  EXPECT_EQ(JudgeUpdatePackage(std::string(kLongestUpdatePath + 1, 'x'), 3).result,
            kInvalidPackage);
}

class UpdatesTest : public ModelFixture {
 protected:
  // What a check tells, without the progress that follows it.
  Sent Check(const std::string& path) {
    std::vector<Sent> sent = Handle(encode::REQU_CHECK_FOR_UPDATE(path));
    EXPECT_FALSE(sent.empty());
    if (sent.empty()) return {};
    EXPECT_EQ(sent[0].id, RESP_CHECK_FOR_UPDATE);
    EXPECT_EQ(sent[0].audience, Audience::requester);
    return sent[0];
  }

  void ExpectRefused(const std::string& path, std::int32_t result) {
    const auto sent = Handle(encode::REQU_CHECK_FOR_UPDATE(path));
    ASSERT_EQ(sent.size(), 1u) << path;
    EXPECT_EQ(sent[0].fields, (MessageFields{{"path", path},
                                             {"result", result},
                                             {"update", kNo},
                                             {"delete", Texts{}},
                                             {"copy", Texts{}}}));
    EXPECT_TRUE(Pass(std::chrono::minutes(1)).empty());
  }
};

TEST_F(UpdatesTest, IsInstalledStepByStep) {
  const auto sent = Handle(encode::REQU_CHECK_FOR_UPDATE("/usb/map-3"));
  ASSERT_EQ(sent.size(), 2u);
  EXPECT_EQ(sent[0].id, RESP_CHECK_FOR_UPDATE);
  EXPECT_EQ(sent[0].fields,
            (MessageFields{{"path", std::string("/usb/map-3")},
                           {"result", 0},
                           {"update", kYes},
                           {"delete", Texts{"maps/places-1.db", "maps/roads-1.db"}},
                           {"copy", Texts{"maps/places-3.db", "maps/roads-3.db"}}}));
  EXPECT_EQ(sent[1].id, INFO_UPDATE_PROGRESS);
  EXPECT_EQ(sent[1].audience, Audience::everyone);
  EXPECT_EQ(sent[1].fields,
            (MessageFields{{"updatePath", std::string("/usb/map-3")}, {"percent", 0}}));
  for (std::int32_t percent = kUpdateStep; percent <= 100; percent += kUpdateStep) {
    EXPECT_EQ(state().updates.installed, 1);
    EXPECT_TRUE(Pass(kUpdateStepTime - Milliseconds(1)).empty());
    const auto progress = Pass(Milliseconds(1));
    ASSERT_EQ(progress.size(), 1u) << percent;
    EXPECT_EQ(progress[0].fields,
              (MessageFields{{"updatePath", std::string("/usb/map-3")}, {"percent", percent}}));
  }
  EXPECT_EQ(state().updates.installed, 3);
  EXPECT_TRUE(Pass(std::chrono::minutes(1)).empty());
}

TEST_F(UpdatesTest, WhatIsInstalledDecidesOnTheNext) {
  EXPECT_EQ(UpdateSuffix(state().updates), "");
  Check("map-3");
  Pass(std::chrono::minutes(1));
  EXPECT_EQ(UpdateSuffix(state().updates), ", update 3");
  ExpectRefused("map-3", kSamePackage);
  ExpectRefused("map-2", kOlderPackage);
  EXPECT_EQ(Check("map").Field<Texts>("copy"), (Texts{"maps/places-4.db", "maps/roads-4.db"}));
  Pass(std::chrono::minutes(1));
  EXPECT_EQ(UpdateSuffix(state().updates), ", update 4");
}

TEST_F(UpdatesTest, OneIsInstalledAtATime) {
  Check("map-3");
  Pass(kUpdateStepTime);
  const auto second = Handle(encode::REQU_CHECK_FOR_UPDATE("map-9"));
  ASSERT_EQ(second.size(), 1u);
  EXPECT_EQ(second[0].Number("result"), 0);
  EXPECT_EQ(second[0].Number("update"), kNo);
  for (const Sent& progress : Pass(std::chrono::minutes(1))) {
    EXPECT_EQ(progress.Text("updatePath"), "map-3");
  }
  EXPECT_EQ(state().updates.installed, 3);
}

TEST_F(UpdatesTest, LateTicksMissNoStep) {
  Check("map-3");
  now_ += std::chrono::hours(1);
  EXPECT_EQ(Pass(Milliseconds(0)).size(), 10u);
  EXPECT_EQ(state().updates.installed, 3);
}

TEST_F(UpdatesTest, BadPackagesAreRefused) {
  ExpectRefused("", kNoPackage);
  ExpectRefused("broken", kInvalidPackage);
  ExpectRefused("full same", kNotEnoughSpace | kSamePackage);
  EXPECT_EQ(state().updates.installed, 1);
}

TEST_F(UpdatesTest, APathThatFitsNoAnswerIsLeftOut) {
  const Sent answer = Check(std::string(700'000, 'x'));
  EXPECT_EQ(answer.Text("path"), "");
  EXPECT_EQ(answer.Number("result"), kInvalidPackage);
}

TEST_F(UpdatesTest, CutShort) {
  HandleCutShort(model_, encode::REQU_CHECK_FOR_UPDATE("map-3"), now_);
  HandleCutShort(model_, encode::REQU_STORE_DEVICE_STATUS("status.txt"), now_);
  Pass(std::chrono::minutes(1));
  EXPECT_FALSE(state().updates.running);
}

class DeviceStatusTest : public UpdatesTest {
 protected:
  DeviceStatusTest() {
    std::string name = ::testing::TempDir() + "ventrik-status-XXXXXX";
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
    state().pictureFolder = folder_;
  }
  ~DeviceStatusTest() override { std::filesystem::remove_all(folder_); }

  std::int32_t Store(const std::string& path) {
    const auto sent = Handle(encode::REQU_STORE_DEVICE_STATUS(path));
    EXPECT_EQ(sent.size(), 1u);
    if (sent.size() != 1) return 0;
    EXPECT_EQ(sent[0].id, RESP_STORE_DEVICE_STATUS);
    EXPECT_EQ(sent[0].audience, Audience::requester);
    EXPECT_EQ(sent[0].Text("path"), path);
    return sent[0].Number("result");
  }

  std::string Contents(const std::string& name) const {
    std::ostringstream text;
    text << std::ifstream(folder_ / name).rdbuf();
    return text.str();
  }

  Texts Names() const {
    Texts names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  std::filesystem::path folder_;
};

TEST_F(DeviceStatusTest, IsWrittenUnderTheLastPartOfThePath) {
  EXPECT_EQ(Store("/tmp/somewhere/status.txt"), kYes);
  EXPECT_EQ(Contents("status.txt"),
            ProgramVersion() + "\nupdate: 1\npackages loaded: 0\ntraffic: on, 0 events\n");
  EXPECT_EQ(Names(), Texts{"status.txt"});
}

TEST_F(DeviceStatusTest, TellsWhatHasHappened) {
  Check("map-3");
  Handle(encode::TMC_DATA("EVENT htmc=1 loc=2 age=60 event_1=401"));
  Pass(std::chrono::minutes(1));
  EXPECT_EQ(Store("status.txt"), kYes);
  EXPECT_EQ(Contents("status.txt"),
            ProgramVersion() + "\nupdate: 3\npackages loaded: 0\ntraffic: on, 1 events\n");
  state().traffic.on = false;
  EXPECT_EQ(Store("status.txt"), kYes);
  EXPECT_NE(Contents("status.txt").find("traffic: off, "), std::string::npos);
}

TEST_F(DeviceStatusTest, UnsafeNamesAreRefused) {
  for (const char* path : {"", "/", "..", "../..", ".hidden", "a/..", "a\nb"}) {
    EXPECT_EQ(Store(path), kNo) << path;
  }
  EXPECT_EQ(Store(std::string(5000, 'x')), kNo);
  EXPECT_EQ(Names(), Texts{});
  EXPECT_EQ(Store("a/../b/"), kYes);
  EXPECT_EQ(Names(), Texts{"b"});
}

TEST_F(DeviceStatusTest, LinksAndPipesAreRefused) {
  std::filesystem::create_symlink("elsewhere", folder_ / "link");
  EXPECT_EQ(Store("link"), kNo);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "elsewhere"));
  ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(Store("pipe"), kNo);
}

TEST_F(DeviceStatusTest, WithoutAFolderThereIsNone) {
  state().pictureFolder = (folder_ / "none").string();
  EXPECT_EQ(Store("status.txt"), kNo);
  state().pictureFolder.clear();
  EXPECT_EQ(Store("status.txt"), kNo);
  EXPECT_EQ(Names(), Texts{});
}

}  // namespace
}  // namespace ventrik::bench
