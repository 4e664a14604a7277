// SPDX-License-Identifier: Apache-2.0
#include "messages/overlay_messages.h"

#include <pthread.h>
#include <unistd.h>

#include <cmath>
#include <future>
#include <utility>

#include "messages/function_ids.h"
#include "tests/ipc/cancellable_thread.h"
#include "tests/messages/handling_fixture.h"

namespace ventrik::tests {
namespace {

// A renderer that keeps what it is asked for; its surfaces are "sid_0", "sid_1" and so on. It is
// always a place where a cancelled thread could end.
std::vector<OverlayArea> asked;
std::vector<std::string> dropped;

std::string GetSid(const OverlayArea& area) {
  pthread_testcancel();
  asked.push_back(area);
  return "sid_" + std::to_string(asked.size() - 1);
}

void DropSid(const std::string& sid) {
  pthread_testcancel();
  dropped.push_back(sid);
}

constexpr OverlayRenderer kRenderer = {GetSid, DropSid};

constexpr const char* kNoCorners = "tl= -> 0.000000 0.000000\nur= -> 0.000000 0.000000\n";

Bytes Area(const std::string& eis) {
  return Hex("7C000000 01000000 '" + eis + "' 00");
}

Bytes SurfaceInvalid(const std::string& eis) {
  return Hex("7E000000 01000000 '" + eis + "' 00");
}

std::vector<float> Floats(const OverlayArea& area) {
  return {area.lowerLeftLongitude, area.lowerLeftLatitude, area.upperRightLongitude,
          area.upperRightLatitude};
}

std::wstring Wide(const std::string& ascii) {
  return {ascii.begin(), ascii.end()};
}

class OverlayMessages : public HandlingTest {
 protected:
  OverlayMessages() {
    asked.clear();
    dropped.clear();
    overlayRenderer = &kRenderer;
    testing::internal::CaptureStderr();
  }
  ~OverlayMessages() override {
    if (capturing_) TakeStderr();
  }

  std::string TakeStderr() {
    capturing_ = false;
    return testing::internal::GetCapturedStderr();
  }

  void ExpectDropped(const std::string& eis, const std::vector<std::string>& sids) {
    Handle(SurfaceInvalid(eis));
    EXPECT_EQ(std::exchange(dropped, {}), sids) << eis;
    EXPECT_EQ(console_.TakeText(), Wide("INFO_MAP_OVERLAY_SURFACE_INVALID> \"" + eis + "\"\n"));
  }

 private:
  bool capturing_ = true;
};

TEST_F(OverlayMessages, AreaShowsItsCornersAndThenItsText) {
  Handle(Area("<GLL>-10.5 20.25<*><GUR>11 21.125<*>"));
  EXPECT_EQ(console_.TakeText(),
            L"tl=-10.5 20.25 -> -10.500000 20.250000\n"
            L"ur=11 21.125 -> 11.000000 21.125000\n"
            L"INFO_MAP_OVERLAY_AREA> \"<GLL>-10.5 20.25<*><GUR>11 21.125<*>\"\n");
}

TEST_F(OverlayMessages, CornersThatAreMissingAreShownToo) {
  Handle(Area("<GUR>3 4<*>"));
  EXPECT_EQ(console_.TakeText(),
            Wide(std::string(kNoCorners) + "INFO_MAP_OVERLAY_AREA> \"<GUR>3 4<*>\"\n"));
  Handle(Area("<GLL>1 2<*>"));
  EXPECT_EQ(console_.TakeText(),
            L"tl=1 2 -> 1.000000 2.000000\n"
            L"ur= -> 0.000000 0.000000\n"
            L"INFO_MAP_OVERLAY_AREA> \"<GLL>1 2<*>\"\n");
}

TEST_F(OverlayMessages, AreaWithoutATextIsAnEmptyOne) {
  for (const Bytes& message : {Hex("7C000000 00000000 '<GLL>1 2<*>' 00"), Hex("7C000000")}) {
    Handle(message);
    EXPECT_EQ(console_.TakeText(), Wide(std::string(kNoCorners) + "INFO_MAP_OVERLAY_AREA> \"\"\n"));
  }
}

TEST_F(OverlayMessages, CornersShowTheirTextAsItStands) {
  Handle(Area("<GLL>%s 5\xC3\xA9<*><GUR>1 2 \xE2\x82\xAC <*>"));
  EXPECT_EQ(console_.TakeText(),
            L"tl=%s 5\u00E9 -> 0.000000 0.000000\n"
            L"ur=1 2 \u20AC  -> 1.000000 2.000000\n"
            L"INFO_MAP_OVERLAY_AREA> \"<GLL>%s 5\u00E9<*><GUR>1 2 \u20AC <*>\"\n");
}

TEST_F(OverlayMessages, CornersDontWaitForTheConsoleAsTheTextDoes) {
  holdOutput = 1;
  Handle(Area(""));
  EXPECT_EQ(console_.TakeText(), Wide(kNoCorners));
  EXPECT_EQ(printer_.queuedTexts.Copy(), std::vector<std::string>{"INFO_MAP_OVERLAY_AREA> \"\"\n"});
}

TEST_F(OverlayMessages, WithWeatherOffNoSurfaceIsMade) {
  Handle(Area("<GLL>1 2<*><GUR>3 4<*>"));
  EXPECT_EQ(asked.size(), 0u);
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(TakeStderr(), "");
}

TEST_F(OverlayMessages, WithWeatherOnASurfaceIsMadeAndOffered) {
  weatherOn = 1;
  Handle(Area("<GLL>1 2<*><GUR>3 4<*>"));
  ASSERT_EQ(asked.size(), 1u);
  EXPECT_EQ(Floats(asked[0]), (std::vector<float>{1, 2, 3, 4}));
  EXPECT_EQ(TakeStderr(), "SID=sid_0\n");
  EXPECT_EQ(server_.TakeSent(),
            std::vector<Bytes>{Hex("7D000000 23000000 '<GLL>1 2<*><GUR>3 4<*><SID>sid_0<*>' 00")});
  EXPECT_EQ(console_.TakeText(),
            L"tl=1 2 -> 1.000000 2.000000\n"
            L"ur=3 4 -> 3.000000 4.000000\n"
            L"INFO_MAP_OVERLAY_AREA> \"<GLL>1 2<*><GUR>3 4<*>\"\n");
}

TEST_F(OverlayMessages, TheWholeReceivedTextIsRepeatedWhateverItIs) {
  weatherOn = 1;
  Handle(Area("\xC3\xA9%s<SID>old<*> "));
  Handle(Area(""));
  EXPECT_EQ(server_.TakeSent(),
            (std::vector<Bytes>{Hex("7D000000 1D000000 C3A9 '%s<SID>old<*> <SID>sid_0<*>' 000000"),
                                Hex("7D000000 0D000000 '<SID>sid_1<*>' 000000")}));
}

TEST_F(OverlayMessages, EachAreaGetsASurfaceOfItsOwnThoughItIsTheSame) {
  weatherOn = 1;
  Handle(Area("<GLL>1 2<*>"));
  Handle(Area("<GLL>1 2<*>"));
  EXPECT_EQ(asked.size(), 2u);
  EXPECT_EQ(TakeStderr(), "SID=sid_0\nSID=sid_1\n");
  EXPECT_EQ(server_.TakeEvents(), (std::vector<std::string>{"send 125", "send 125"}));
}

TEST_F(OverlayMessages, WithoutARendererNoSurfaceIsOffered) {
  overlayRenderer = nullptr;
  weatherOn = 1;
  Handle(Area("<GLL>1 2<*><GUR>3 4<*>"));
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(TakeStderr(), "");
  EXPECT_NE(console_.TakeText().find(L"INFO_MAP_OVERLAY_AREA> "), std::wstring::npos);
}

TEST_F(OverlayMessages, CornersComeBeforeTheSurfaceAndTheTextBehindIt) {
  weatherOn = 1;
  std::vector<std::string> events;
  server_.onSend = [&] { events.push_back("send after " + std::to_string(asked.size())); };
  console_.onPrint = [&](const std::wstring& text) {
    events.push_back("print " + std::string(text.begin(), text.begin() + 2) + " after " +
                     std::to_string(asked.size()));
  };
  Handle(Area(""));
  EXPECT_EQ(events, (std::vector<std::string>{"print tl after 0", "print ur after 0",
                                              "send after 1", "print IN after 1"}));
}

TEST_F(OverlayMessages, SilencedAreaDoesNothing) {
  weatherOn = 1;
  app_.responseFilter.Store({INFO_MAP_OVERLAY_AREA});
  Handle(Area("<GLL>1 2<*><GUR>3 4<*>"));
  EXPECT_EQ(asked.size(), 0u);
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_EQ(TakeStderr(), "");
}

TEST_F(OverlayMessages, OfferTakesNoCommandLock) {
  weatherOn = 1;
  bool free = false;
  server_.onSend = [&free] { free = CommandLockIsFree(); };
  Handle(Area(""));
  EXPECT_TRUE(free);
  EXPECT_EQ(dropped, std::vector<std::string>{});
}

TEST_F(OverlayMessages, CancelledThreadEndsInTheOfferAndNotBefore) {
  weatherOn = 1;
  server_.onSend = pthread_testcancel;
  console_.onPrint = [](const std::wstring&) { pthread_testcancel(); };
  CancellableThread listener([this] {
    pthread_cancel(pthread_self());
    Handle(Area(""));
  });
  EXPECT_TRUE(listener.Join());
  EXPECT_EQ(asked.size(), 1u);
  EXPECT_EQ(dropped, std::vector<std::string>{"sid_0"});
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), Wide(kNoCorners));
}

TEST_F(OverlayMessages, OfferThatHangsCanBeCancelled) {
  weatherOn = 1;
  std::promise<void> sending;
  server_.onSend = [&] {
    sending.set_value();
    for (;;) pause();
  };
  CancellableThread listener([this] { Handle(Area("")); });
  sending.get_future().wait();
  EXPECT_TRUE(listener.CancelAndJoin());
  EXPECT_EQ(dropped, std::vector<std::string>{"sid_0"});
  EXPECT_EQ(console_.TakeText(), Wide(kNoCorners));
}

TEST_F(OverlayMessages, InvalidSurfaceIsGivenBack) {
  ExpectDropped("<SID>sid_0<*>", {"sid_0"});
  ExpectDropped("<GLL>1 2<*><SID>gwx_12<*><X>9<*>", {"gwx_12"});
}

TEST_F(OverlayMessages, InvalidSurfaceIsGivenBackWhateverWeatherIs) {
  weatherOn = 1;
  ExpectDropped("<SID>sid_0<*>", {"sid_0"});
  weatherOn = 0;
  ExpectDropped("<SID>sid_0<*>", {"sid_0"});
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(TakeStderr(), "");
}

TEST_F(OverlayMessages, OnlyTheFirstSurfaceIsGivenBack) {
  ExpectDropped("<SID>a<*><SID>b<*>", {"a"});
  ExpectDropped("<SID><SID>b<*>", {"<SID>b"});
}

TEST_F(OverlayMessages, NameOfAnInvalidSurfaceMayBeEmptyOrOdd) {
  ExpectDropped("<SID><*>", {""});
  ExpectDropped("<SID> %s <*>", {" %s "});
}

TEST_F(OverlayMessages, WithoutAWholeTagNothingIsGivenBack) {
  for (const char* eis : {"", "sid_0", "<SID>", "<SID>sid_0", "<SID>sid_0<*", "<sid>sid_0<*>",
                          "<*><SID>sid_0", "<SIC>sid_0<*>"}) {
    ExpectDropped(eis, {});
  }
}

TEST_F(OverlayMessages, InvalidSurfaceWithoutATextGivesNothingBack) {
  Handle(Hex("7E000000 00000000 '<SID>a<*>' 00"));
  Handle(Hex("7E000000"));
  EXPECT_EQ(dropped.size(), 0u);
  EXPECT_EQ(console_.TakeText(),
            L"INFO_MAP_OVERLAY_SURFACE_INVALID> \"\"\nINFO_MAP_OVERLAY_SURFACE_INVALID> \"\"\n");
}

TEST_F(OverlayMessages, InvalidSurfaceWithoutARendererIsOnlyPrinted) {
  overlayRenderer = nullptr;
  ExpectDropped("<SID>sid_0<*>", {});
}

TEST_F(OverlayMessages, SurfaceIsGivenBackBeforeTheTextShows) {
  std::size_t droppedBefore = 0;
  console_.onPrint = [&](const std::wstring&) { droppedBefore = dropped.size(); };
  Handle(SurfaceInvalid("<SID>a<*>"));
  EXPECT_EQ(droppedBefore, 1u);
}

TEST_F(OverlayMessages, SilencedInvalidSurfaceStays) {
  app_.responseFilter.Store({INFO_MAP_OVERLAY_SURFACE_INVALID});
  Handle(SurfaceInvalid("<SID>a<*>"));
  EXPECT_EQ(dropped.size(), 0u);
  EXPECT_EQ(console_.TakeText(), L"");
}

struct AreaCase {
  const char* eis;
  std::vector<float> floats;
};

class OverlayAreas : public testing::TestWithParam<AreaCase> {};

TEST_P(OverlayAreas, AreRead) {
  EXPECT_EQ(Floats(ReadOverlayArea(GetParam().eis)), GetParam().floats);
}

const AreaCase kTags[] = {
    {"<GLL>1 2<*><GUR>3 4<*>", {1, 2, 3, 4}},
    {"<A>9 9<*><GLL>1 2<*><B>8 8<*><GUR>3 4<*><C>7 7<*>", {1, 2, 3, 4}},
    {"<GLL>1 2<*><GLL>5 6<*><GUR>3 4<*><GUR>7 8<*>", {1, 2, 3, 4}},
    {"", {0, 0, 0, 0}},
    {"1 2 3 4", {0, 0, 0, 0}},
    {"<GLL>1 2<*>", {1, 2, 0, 0}},
    {"<GUR>3 4<*>", {0, 0, 0, 0}},
    {"<GUR>3 4<*><GLL>1 2<*>", {1, 2, 0, 0}},
    {"<GUR>3 4<*><GLL>1 2<*><GUR>5 6<*>", {1, 2, 5, 6}},
    {"<GLL>1 2", {0, 0, 0, 0}},
    {"<GLL>1 2<GUR>3 4<*>", {1, 2, 0, 0}},
    {"<GLL>1 2<*><GUR>3 4", {1, 2, 0, 0}},
    {"<GLL><*><GUR>3 4<*>", {0, 0, 3, 4}},
    {"<gll>1 2<*><gur>3 4<*>", {0, 0, 0, 0}},
};
INSTANTIATE_TEST_SUITE_P(Tags, OverlayAreas, testing::ValuesIn(kTags));

const AreaCase kNumbers[] = {
    {"<GLL>-13.4321 +48.5665<*><GUR>.5 7.<*>", {-13.4321f, 48.5665f, 0.5f, 7}},
    {"<GLL>1.34e1 -2.5E-3<*><GUR>1e+2 0e9<*>", {13.4f, -0.0025f, 100, 0}},
    {"<GLL>  1 \t  2  <*><GUR>\n3\n4<*>", {1, 2, 3, 4}},
    {"<GLL>1 2 3<*><GUR>4<*>", {1, 2, 4, 0}},
    {"<GLL>1,5 2<*><GUR>1;2<*>", {1, 0, 1, 0}},
    {"<GLL>north 2<*><GUR>3east 4<*>", {0, 0, 3, 0}},
    {"<GLL>1-2<*><GUR>1.2.3<*>", {1, -2, 1.2f, 0.3f}},
    {"<GLL>0x10 0x1p3<*><GUR>007 -0<*>", {16, 8, 7, 0}},
    {"<GLL>1e99 -1e99<*><GUR>inf -infinity<*>", {INFINITY, -INFINITY, INFINITY, -INFINITY}},
    {"<GLL>1e-99 16777217<*><GUR>0.1 123456789012345678901<*>",
     {0, 16777216, 0.1f, 123456789012345678901.0f}},
    {"<GLL>%f %f<*><GUR>- +<*>", {0, 0, 0, 0}},
};
INSTANTIATE_TEST_SUITE_P(Numbers, OverlayAreas, testing::ValuesIn(kNumbers));

TEST(OverlayAreaNumbers, NotANumberIsTakenAsOne) {
  const OverlayArea area = ReadOverlayArea("<GLL>nan 2<*><GUR>3 -nan<*>");
  EXPECT_TRUE(std::isnan(area.lowerLeftLongitude));
  EXPECT_EQ(area.lowerLeftLatitude, 2.0f);
  EXPECT_EQ(area.upperRightLongitude, 3.0f);
  EXPECT_TRUE(std::isnan(area.upperRightLatitude));
}

}  // namespace
}  // namespace ventrik::tests
