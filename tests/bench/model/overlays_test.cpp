// SPDX-License-Identifier: Apache-2.0
#include "bench/model/overlays.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "bench/model/map_picks.h"
#include "bench/picture/shared_surface.h"
#include "tests/bench/model/model_fixture.h"
#include "tests/bench/picture/read_png.h"
#include "tests/bench/picture/shared_object.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::bench {
namespace {

using Texts = std::vector<std::string>;

constexpr auto kSize = static_cast<off_t>(kSurfaceBytes);

class OverlaysTest : public ModelFixture {
 protected:
  OverlaysTest() {
    state().overlayFolder = folder_.path();
    state().report = [this](const std::string& text) { reports_.push_back(text); };
    Handle(encode::REQU_MAP_CONTROLS("<MID>map<*>"));
  }

  std::vector<Sent> Offer(const std::string& sid, const std::string& map = "map") {
    return Handle(encode::REQU_MAP_OVERLAY_SURFACE("<MID>" + map +
                                                   "<*><GLL>1 2<*><GUR>3 4<*><SID>" + sid + "<*>"));
  }

  // The texts of the messages that end a surface, for that audience.
  static Texts Ended(const std::vector<Sent>& sent, Audience audience = Audience::everyone) {
    Texts texts;
    for (const Sent& message : sent) {
      if (message.id != INFO_MAP_OVERLAY_SURFACE_INVALID) continue;
      EXPECT_EQ(message.audience, audience);
      texts.push_back(message.Text("eis"));
    }
    return texts;
  }
  // Whether the one offering the surface, and nobody else, is told that it isn't taken.
  bool IsRefused(const std::string& sid) {
    reports_.clear();
    const auto sent = Offer(sid);
    return sent.size() == 1 && Ended(sent, Audience::requester).size() == 1 &&
           reports_.size() == 1 && SurfacesOf(state(), "map").empty();
  }
  static bool Exists(const std::string& sid) {
    return access(("/dev/shm/" + sid).c_str(), F_OK) == 0;
  }
  std::string PathOf(const std::string& sid) const { return folder_.path() + "/" + sid + ".png"; }

  tests::TemporaryDirectory folder_;
  const std::string sid_ = OwnObjectName("a");
  Texts reports_;
};

TEST_F(OverlaysTest, ASurfaceIsTakenSavedAndGivenUp) {
  SharedObject object(sid_, kSize);
  object.Write({1, 2, 3, 4}, 0);
  object.Write({5, 6, 7, 8}, 4 * 640 * 479 + 4 * 639);
  EXPECT_TRUE(Offer(sid_).empty());
  EXPECT_EQ(SurfacesOf(state(), "map"), Texts{sid_});

  const Picture picture = ReadPng(PathOf(sid_));
  EXPECT_EQ(picture.width, 640);
  EXPECT_EQ(picture.height, 480);
  EXPECT_EQ(PixelOf(picture, 0, 0), (Pixel{1, 2, 3, 4})) << "the first row is the upper one";
  EXPECT_EQ(PixelOf(picture, 639, 479), (Pixel{5, 6, 7, 8}));

  EXPECT_TRUE(Pass(kSurfaceLife - Milliseconds(1)).empty());
  EXPECT_TRUE(Exists(sid_));
  EXPECT_EQ(Ended(Pass(Milliseconds(1))), Texts{"<SID>" + sid_ + "<*>"});
  EXPECT_FALSE(Exists(sid_));
  EXPECT_TRUE(SurfacesOf(state(), "map").empty());
  EXPECT_TRUE(Pass(Milliseconds(60'000)).empty());
  EXPECT_TRUE(reports_.empty());
}

TEST_F(OverlaysTest, WithoutAFolderNothingIsSaved) {
  state().overlayFolder.clear();
  const SharedObject object(sid_, kSize);
  EXPECT_TRUE(Offer(sid_).empty());
  EXPECT_EQ(SurfacesOf(state(), "map"), Texts{sid_});
  EXPECT_EQ(ReadPng(PathOf(sid_)).width, 0);
}

TEST_F(OverlaysTest, AFolderThatIsNotThereIsReported) {
  state().overlayFolder = folder_.path() + "/none";
  const SharedObject object(sid_, kSize);
  EXPECT_TRUE(Offer(sid_).empty());
  EXPECT_EQ(SurfacesOf(state(), "map"), Texts{sid_});
  EXPECT_EQ(reports_,
            Texts{state().overlayFolder + "/" + sid_ + ".png: No such file or directory"});
}

TEST_F(OverlaysTest, ASurfaceEndsWhenItsMapMovesOn) {
  const std::string other = OwnObjectName("b");
  const SharedObject object(sid_, kSize);
  const SharedObject second(other, kSize);
  Offer(sid_);
  Offer(other, "two");
  const auto moved = Handle(encode::REQU_MAP_CONTROLS("<MID>map<*><MZ>900<*>"));
  ASSERT_EQ(moved.size(), 3u);
  EXPECT_EQ(moved[1].id, INFO_MAP_OVERLAY_SURFACE_INVALID);
  EXPECT_EQ(moved[2].id, INFO_MAP_OVERLAY_AREA);
  EXPECT_EQ(Ended(moved), Texts{"<SID>" + sid_ + "<*>"});
  EXPECT_FALSE(Exists(sid_));
  EXPECT_TRUE(Exists(other));
  EXPECT_EQ(Ended(Pass(kSurfaceLife)), Texts{"<SID>" + other + "<*>"});
}

TEST_F(OverlaysTest, ASurfaceEndsWhenItsMapIsHidden) {
  const SharedObject object(sid_, kSize);
  Offer(sid_);
  EXPECT_EQ(Ended(Handle(encode::REQU_MAP_CONTROLS("<MVI>0<*>"))), Texts{"<SID>" + sid_ + "<*>"});
  EXPECT_FALSE(Exists(sid_));
}

TEST_F(OverlaysTest, SeveralSurfacesEndEachAtItsTime) {
  const std::string other = OwnObjectName("b");
  const SharedObject object(sid_, kSize);
  const SharedObject second(other, kSize);
  Offer(sid_);
  Pass(Milliseconds(1000));
  Offer(other);
  Pass(Milliseconds(1000));
  Offer(sid_);  // anew
  const auto sent = Pass(kSurfaceLife);
  EXPECT_EQ(Ended(sent), (Texts{"<SID>" + other + "<*>", "<SID>" + sid_ + "<*>"}));
}

TEST_F(OverlaysTest, TheEndOfTheEngineLeavesNoObjects) {
  const SharedObject object(sid_, kSize);
  {
    Model ending(BuiltInWorld());
    ending.state().overlays.surfaces.push_back({sid_, "map", now_ + kSurfaceLife});
    ending.state().overlays.surfaces.push_back({"../" + sid_, "map", now_ + kSurfaceLife});
    EXPECT_TRUE(Exists(sid_));
  }
  EXPECT_FALSE(Exists(sid_));
}

TEST_F(OverlaysTest, AMapTellsItsSurfacesToAPick) {
  const SharedObject object(sid_, kSize);
  Offer(sid_);
  const auto picked = Handle(encode::REQU_PICK_INFO("<MID>map<*>", 1, 1, kWeatherData, 1));
  ASSERT_EQ(picked.size(), 1u);
  EXPECT_EQ(picked[0].Field<Texts>("pickInfo"), Texts{"<SID>" + sid_ + "<*>"});
}

TEST_F(OverlaysTest, AMissingObject) {
  EXPECT_TRUE(IsRefused(sid_));
  EXPECT_EQ(reports_[0], "the surface \"" + sid_ + "\" is invalid: No such file or directory");
}

TEST_F(OverlaysTest, HostileNames) {
  for (const std::string& sid :
       {std::string(), std::string("/"), std::string("."), std::string(".."),
        std::string("../../etc/passwd"), std::string("a/b"), std::string("/gwx_0"),
        std::string("\x1B[2J"), std::string(201, 'x'), std::string(5000, 'x')}) {
    EXPECT_TRUE(IsRefused(sid)) << sid.substr(0, 30);
    EXPECT_EQ(reports_.at(0),
              "the surface of a bad name is invalid: not the name of a memory object");
  }
}

TEST_F(OverlaysTest, WrongSizes) {
  for (const off_t size : {off_t{0}, off_t{1}, kSize - 1, kSize + 1, off_t{1} << 40}) {
    const SharedObject object(sid_, size);
    EXPECT_TRUE(IsRefused(sid_)) << size;
    EXPECT_TRUE(Exists(sid_)) << "it was no surface";
    EXPECT_EQ(reports_.at(0), "the surface \"" + sid_ + "\" is invalid: " + std::to_string(size) +
                                  " bytes instead of 1228800");
  }
  EXPECT_EQ(ReadPng(PathOf(sid_)).width, 0);
}

TEST_F(OverlaysTest, AnObjectThatMayNotBeRead) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is hidden from root";
  const SharedObject object(sid_, kSize);
  ASSERT_EQ(chmod(("/dev/shm/" + sid_).c_str(), 0), 0);
  EXPECT_TRUE(IsRefused(sid_));
}

TEST_F(OverlaysTest, APipeHoldsNothingUp) {
  const std::string path = "/dev/shm/" + sid_;
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_TRUE(IsRefused(sid_));
  unlink(path.c_str());
}

// Each reading sees a whole surface or none, while its owner makes it small and large again.
TEST_F(OverlaysTest, AnObjectThatShrinksWhileItIsRead) {
  SharedObject object(sid_, kSize);
  std::atomic<bool> done{false};
  std::thread owner([&object, &done] {
    while (!done) {
      object.Resize(4096);
      object.Resize(kSize);
    }
  });
  for (int reading = 0; reading < 200; ++reading) {
    std::string error;
    const auto picture = ReadSurface(sid_, error);
    EXPECT_TRUE(picture ? picture->pixels.size() == kSurfaceBytes : !error.empty());
  }
  done = true;
  owner.join();
}

TEST_F(OverlaysTest, ThereIsAnEndToSurfaces) {
  state().overlayFolder.clear();
  const SharedObject refused(sid_, kSize);
  for (std::size_t number = 0; number < kMostSurfaces; ++number) {
    state().overlays.surfaces.push_back(
        {OwnObjectName(std::to_string(number)), "two", now_ + kSurfaceLife});
  }
  EXPECT_TRUE(IsRefused(sid_));
  EXPECT_FALSE(Exists(sid_)) << "it was one too much";
  EXPECT_EQ(Ended(Pass(kSurfaceLife)).size(), kMostSurfaces);
  const SharedObject object(sid_, kSize);
  EXPECT_TRUE(Offer(sid_).empty());
}

TEST_F(OverlaysTest, AnOfferWithoutASurface) {
  for (const char* text : {"", "nonsense", "<MID>map<*>"}) {
    reports_.clear();
    EXPECT_TRUE(Handle(encode::REQU_MAP_OVERLAY_SURFACE(text)).empty()) << text;
    EXPECT_EQ(reports_, Texts{"a surface is invalid: it has no SID"}) << text;
  }
  EXPECT_EQ(Handle(encode::REQU_MAP_OVERLAY_SURFACE("<SID>" + std::string(600'000, 'x'))).size(),
            1u);
}

TEST_F(OverlaysTest, OffersCutShort) {
  const SharedObject object(sid_, kSize);
  const auto answers =
      HandleEveryPrefix(encode::REQU_MAP_OVERLAY_SURFACE("<MID>map<*><SID>" + sid_ + "<*>"));
  for (const auto& sent : answers) EXPECT_LE(sent.size(), 1u);
  EXPECT_TRUE(answers.back().empty());
  EXPECT_EQ(SurfacesOf(state(), "map").back(), sid_);
}

}  // namespace
}  // namespace ventrik::bench
