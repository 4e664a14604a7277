// SPDX-License-Identifier: Apache-2.0
#include "monkey/words.h"

#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

struct Chooser {
  const char* name;
  const wchar_t* (*draw)();
  Texts words;  // from the draw 0 upward
};

const Chooser kChoosers[] = {
    {"OnOff", DrawOnOff, {L"off", L"on"}},
    {"SafetyWarningMode", DrawSafetyWarningMode, {L"safetyWarningsOn", L"safetyWarningsOff"}},
    {"WarningMode", DrawWarningMode, {L"warningsOff", L"valueMode"}},
    {"BlockAction", DrawBlockAction, {L"AddBlock", L"RemoveBlock"}},
    {"TuningMode", DrawTuningMode, {L"tmcTuningManual", L"tmcTuningAutomatic"}},
    {"TmcAction", DrawTmcAction, {L"tmcAuto", L"tmcAvoid", L"tmcIgnore"}},
    {"AudioMode", DrawAudioMode, {L"AudioIdle", L"AudioAutomatic", L"AudioManual"}},
    {"MeasurementUnit", DrawMeasurementUnit, {L"imperialyards", L"imperialfeet", L"metric"}},
    {"TmcMode", DrawTmcMode, {L"tmcOff", L"tmcStatic", L"tmcAutomatic", L"tmcDelay"}},
    {"SendingMode", DrawSendingMode, {L"disable", L"once", L"onChange", L"frequency"}},
    {"ContentType",
     DrawContentType,
     {L"geoCoordinate", L"locationDetails", L"poiData", L"tmcData", L"weatherData"}},
    {"SortOrder",
     DrawSortOrder,
     {L"ascending", L"descending", L"nearFirst", L"farFirst", L"defaultSort"}},
    {"TmcMessageClass",
     DrawTmcMessageClass,
     {L"tmcOnRoute", L"tmcSignificent", L"tmcNonSignificent", L"tmcAllMessages", L"tmcAvoided",
      L"tmcIgnoredMessages"}},
    {"ItemTag",
     DrawItemTag,
     {L"<ALL>", L"<CTR>", L"<STA>", L"<CTY>", L"<SAB>", L"<ZIP>", L"<STR>", L"<HNO>", L"<TEL>",
      L"<TMC>", L"<TEV>", L"<TET>", L"<GEO>"}},
    {"Language",
     DrawLanguage,
     {L"LangDansk", L"LangGerman", L"LangEngGB", L"LangEngUS", L"LangSpanish", L"LangSpanishUS",
      L"LangFrench", L"LangItalian", L"LangNetherlands", L"LangPortuguese", L"LangSwedish",
      L"LangTurkish", L"LangFlemish", L"LangArabic", L"LangChineseTraditional",
      L"LangChineseSimple", L"LangKorean", L"LangJapanese", L"LangUndef"}},
    {"RouteMode",
     DrawRouteMode,
     {L"fastest",
      L"shortest",
      L"eScenicRoute",
      L"avoidMotorways",
      L"avoidFerries",
      L"avoidTollroads",
      L"avoidIPD",
      L"avoidUnpaved",
      L"avoidBorder",
      L"ecoRoute",
      L"optimizeDestOrder",
      L"avoidCarTrain",
      L"avoidTimeRestricted",
      L"avoidSeasonalRestricted",
      L"avoidTunnels",
      L"optimizeDestOrderKeepLastDest",
      L"ignoreTrafficPatterns",
      L"noIPDGuidance",
      L"avoidRestrictedAccess",
      L"sportRoute",
      L"trailGuidance",
      L"trailGuidanceFromEnd"}},
};

std::string NameOf(const testing::TestParamInfo<Chooser>& chooser) {
  return chooser.param.name;
}

class MonkeyWords : public testing::TestWithParam<Chooser> {
 protected:
  FedDraws draws_;
};

TEST_P(MonkeyWords, EachRemainderHasItsWord) {
  const Texts& words = GetParam().words;
  const int count = static_cast<int>(words.size());
  for (int drawn = 0; drawn < 2 * count; ++drawn) {
    draws_.Feed({drawn + count * 1000});
    EXPECT_EQ(GetParam().draw(), words[static_cast<std::size_t>(drawn % count)]) << drawn;
  }
}

TEST_P(MonkeyWords, OneNumberIsDrawn) {
  draws_.Feed({1, 2});
  GetParam().draw();
  EXPECT_EQ(draws_.Left(), Draws{2});
}

INSTANTIATE_TEST_SUITE_P(All, MonkeyWords, testing::ValuesIn(kChoosers), NameOf);

}  // namespace
}  // namespace ventrik::tests
