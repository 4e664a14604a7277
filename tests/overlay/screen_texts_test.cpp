// SPDX-License-Identifier: Apache-2.0
// What the renderer says, and its surfaces' coming and going.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "tests/overlay/screen_fixture.h"

namespace ventrik::tests {
namespace {

namespace fs = std::filesystem;

class ScreenTexts : public ScreenTest {
 protected:
  // Standard output and standard error in the order in which they come; lines of standard output
  // are marked with "|", and EGL's own words are replaced.
  std::string AllTextsOf(const std::function<void()>& work) {
    console_.onPrint = [](const std::wstring& text) {
      const bool isOfEgl = text.rfind(L"GL ext:  ", 0) == 0 && text.back() == L'\n';
      std::fprintf(stderr, "|%ls", isOfEgl ? L"GL ext:  ...\n" : text.c_str());
    };
    const std::string all = ErrorsOf(work);
    console_.onPrint = nullptr;
    return all;
  }

  void Drop(const std::string& sid) {
    ErrorsOf([&] { Screen().DropSid(sid.c_str()); });
  }

  static int NumberOf(const std::string& sid) {
    EXPECT_EQ(sid.rfind("gwx_", 0), 0u);
    return std::stoi(sid.substr(4));
  }

  // The identifier of the surface that is made next.
  std::string NextSid() {
    const std::string last = Render(kPixels);
    Drop(last);
    PrivateObjects::Remove(last);
    return "gwx_" + std::to_string(NumberOf(last) + 1);
  }

  // How many of the test's surfaces are mapped and open.
  void ExpectHeld(int surfaces) const {
    EXPECT_EQ(CountMappedObjects() - mappedBefore_, surfaces);
    EXPECT_EQ(CountOpenObjects() - openBefore_, surfaces);
  }

  const int mappedBefore_ = CountMappedObjects();
  const int openBefore_ = CountOpenObjects();
};

const std::string kConstruction =
    "|Found config.\n"
    "|GL ext:  ...\n"
    "|pbuffer ok\n"
    "|make current ok\n"
    "|Real size 640*480\n";

TEST_F(ScreenTexts, ConstructionWithoutResources) {
  EXPECT_EQ(AllTextsOf([] { WeatherOverlay_Screen(); }),
            kConstruction + "|Found 0 image controllers\n");
}

TEST_F(ScreenTexts, ConstructionWithAnImage) {
  WriteFile("resources/a.logfile", PlaceText(1, 2, 3, 4));
  EXPECT_EQ(AllTextsOf([] { WeatherOverlay_Screen(); }),
            kConstruction +
                "findResourceSets set:0 dir:resources\n"
                "new file:resources/a\n"
                "  rect 1.000000 1.999998 - 3.000000 3.999996\n"
                "|Found 1 image controllers\n");
}

TEST_F(ScreenTexts, ASurface) {
  WriteImages({ImageAt({36000, 55555, 144000, 222222}, 1, 1, Codes({1, 1}) + kEndOfBitmap)});
  const std::string sid = NextSid();
  EXPECT_EQ(AllTextsOf([&] { EXPECT_EQ(screen_->GetSID(0, 0, 1, 1), sid); }),
            "new SID = " + sid + "\nInit buffer:" + sid +
                "\n"
                "|stride: 2560\tbytes: 1228800\n"
                "|WeatherOverlay_Screen::GetSID: start drawing\n"
                "CWeatherImageController::render\n"
                "  requested area=\n"
                "  ll=0.000,0.000 ur=1.000,1.000\n"
                "  +resources/0000.bmp\n"
                "  image=\n"
                "  ll=0.500,0.500 ur=2.000,2.000\n"
                "  shared=\n"
                "  ll=0.500,0.500 ur=1.000,1.000\n"
                "|Copying buffer.\n");
}

TEST_F(ScreenTexts, ASurfaceWithoutImages) {
  const std::string sid = NextSid();
  EXPECT_EQ(AllTextsOf([this] { screen_->GetSID(0, 0, 1, 1); }),
            "new SID = " + sid + "\nInit buffer:" + sid +
                "\n"
                "|stride: 2560\tbytes: 1228800\n"
                "|WeatherOverlay_Screen::GetSID: start drawing\n"
                "|Copying buffer.\n");
}

TEST_F(ScreenTexts, DroppingASurface) {
  const std::string sid = Render(kPixels);
  EXPECT_EQ(AllTextsOf([&] { screen_->DropSid(sid.c_str()); }),
            "WeatherOverlay_Screen::DropSid(\"" + sid +
                "\")\n"
                "  found buffeerClose buffer:" +
                sid + "\n");
  EXPECT_EQ(AllTextsOf([&] { screen_->DropSid(sid.c_str()); }),
            "WeatherOverlay_Screen::DropSid(\"" + sid + "\")\n")
      << "it is unknown now";
}

TEST_F(ScreenTexts, DroppingWhatIsUnknown) {
  const std::string known = Render(kPixels);
  for (const std::string& sid : {std::string(), std::string("gwx_"), std::string("GWX_0"),
                                 "0" + known, known + " ", known + known + known + known}) {
    EXPECT_EQ(AllTextsOf([&] { screen_->DropSid(sid.c_str()); }),
              "WeatherOverlay_Screen::DropSid(\"" + sid + "\")\n");
  }
  ExpectHeld(1);
}

// Surfaces.

TEST_F(ScreenTexts, EachSurfaceIsANewOne) {
  const std::string first = Render(kPixels);
  const std::string second = Render(kPixels);
  EXPECT_EQ(NumberOf(second), NumberOf(first) + 1);
  EXPECT_TRUE(PrivateObjects::Exists(first));
  EXPECT_TRUE(PrivateObjects::Exists(second));
  EXPECT_EQ(PrivateObjects::Names().size(), 2u);
  EXPECT_EQ(PrivateObjects::Read(first), PrivateObjects::Read(second));
  ExpectHeld(2);
}

TEST_F(ScreenTexts, NumbersAreNeverUsedAgain) {
  const std::string first = Render(kPixels);
  Drop(first);
  const std::string second = Render(kPixels);
  EXPECT_EQ(NumberOf(second), NumberOf(first) + 1);
  Drop(second);
  screen_.reset();
  EXPECT_EQ(NumberOf(Render(kPixels)), NumberOf(first) + 2) << "nor by the next renderer";
}

TEST_F(ScreenTexts, IdentifierStaysUntilItIsDropped) {
  Screen();
  const char* sid = nullptr;
  std::string text;
  ErrorsOf([&] {
    sid = screen_->GetSID(0, 0, 1, 1);
    text = sid;
    for (int i = 0; i < 50; ++i) screen_->GetSID(0, 0, 1, 1);
  });
  EXPECT_EQ(sid, text);
}

TEST_F(ScreenTexts, DroppedSurfaceKeepsItsObjectAndOthersStay) {
  const std::string first = Render(kPixels);
  const std::string second = Render(kPixels);
  const std::string third = Render(kPixels);
  Drop(second);
  ExpectHeld(2);
  EXPECT_EQ(PrivateObjects::Names().size(), 3u);
  EXPECT_EQ(PrivateObjects::Read(second), PrivateObjects::Read(first));
  Drop(first);
  Drop(third);
  ExpectHeld(0);
}

TEST_F(ScreenTexts, SurfaceTakesOverAnObjectThatIsThere) {
  const std::string sid = NextSid();
  PrivateObjects::Make(sid, std::vector<std::uint8_t>(99, 7));
  Render(kPixels);
  const auto result = PictureModel(kPixels, {}).Compare(PrivateObjects::Read(sid));
  EXPECT_EQ(result.wrong, 0) << result.firstWrong;
}

TEST_F(ScreenTexts, NoDescriptorIsLeftBehindByAThousandSurfaces) {
  PictureOf(kPixels);
  const int before = CountDescriptors();
  for (int i = 0; i < 1000; ++i) PictureOf(kPixels);
  EXPECT_EQ(CountDescriptors(), before);
  ExpectHeld(0);
}

TEST_F(ScreenTexts, ImagesAreLookedForOnceAndReadEachTime) {
  WriteImages({ImageAt(kPixels, 1, 1, Codes({1, 1}) + kEndOfBitmap)});
  const auto red = PictureOf(kPixels);
  const TestImage green = ImageAt(kPixels, 1, 1, Codes({1, 2}) + kEndOfBitmap);
  WriteFile("resources/0000.bmp", green.file.Bytes());
  WriteFile("resources/0001.bmp", green.file.Bytes());
  WriteFile("resources/0001.logfile", Content("resources/0000.logfile"));
  const auto after = PictureOf(kPixels);
  EXPECT_NE(after, red);
  EXPECT_EQ(errors_.find("0001"), std::string::npos);
  EXPECT_EQ(PictureModel(kPixels, {green}).Compare(after).wrong, 0);
}

// Ends of the program.

using ScreenTextsDeathTest = ScreenTexts;

TEST_F(ScreenTextsDeathTest, OnlyOneRendererAtATime) {
  const auto second = [this] {
    console_.onPrint = [](const std::wstring& text) { std::fprintf(stderr, "%ls", text.c_str()); };
    Screen();
    WeatherOverlay_Screen another;
  };
  EXPECT_DEATH(second(),
               "ASSERT FAILED!\n"
               "file:weather_overlay_gles1_adobescreen\n"
               "line:[0-9]+\n"
               "func:WeatherOverlay_Screen\n");
}

TEST_F(ScreenTextsDeathTest, SurfaceThatCanNotBeMadeEndsTheProgram) {
  // The first of the process that dies.
  fs::create_directory(PrivateObjects::PathOf("gwx_0"));
  EXPECT_DEATH(Screen().GetSID(0, 0, 1, 1),
               "^new SID = gwx_0\nInit buffer:gwx_0\nOpen \"/gwx_0\" failed:Invalid argument\n$");
}

}  // namespace
}  // namespace ventrik::tests
