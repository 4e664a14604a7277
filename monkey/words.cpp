// SPDX-License-Identifier: Apache-2.0
#include "monkey/words.h"

#include <cstddef>

#include "monkey/draw.h"

namespace ventrik {
namespace {

constexpr const wchar_t* kOnOff[] = {L"off", L"on"};
constexpr const wchar_t* kSafetyWarningModes[] = {L"safetyWarningsOn", L"safetyWarningsOff"};
constexpr const wchar_t* kWarningModes[] = {L"warningsOff", L"valueMode"};
constexpr const wchar_t* kBlockActions[] = {L"AddBlock", L"RemoveBlock"};
constexpr const wchar_t* kTuningModes[] = {L"tmcTuningManual", L"tmcTuningAutomatic"};
constexpr const wchar_t* kTmcActions[] = {L"tmcAuto", L"tmcAvoid", L"tmcIgnore"};
constexpr const wchar_t* kAudioModes[] = {L"AudioIdle", L"AudioAutomatic", L"AudioManual"};
constexpr const wchar_t* kMeasurementUnits[] = {L"imperialyards", L"imperialfeet", L"metric"};
constexpr const wchar_t* kTmcModes[] = {L"tmcOff", L"tmcStatic", L"tmcAutomatic", L"tmcDelay"};
constexpr const wchar_t* kSendingModes[] = {L"disable", L"once", L"onChange", L"frequency"};
constexpr const wchar_t* kContentTypes[] = {
    L"geoCoordinate", L"locationDetails", L"poiData", L"tmcData", L"weatherData",
};
constexpr const wchar_t* kSortOrders[] = {
    L"ascending", L"descending", L"nearFirst", L"farFirst", L"defaultSort",
};
constexpr const wchar_t* kTmcMessageClasses[] = {
    L"tmcOnRoute",     L"tmcSignificent", L"tmcNonSignificent",
    L"tmcAllMessages", L"tmcAvoided",     L"tmcIgnoredMessages",
};
constexpr const wchar_t* kItemTags[] = {
    L"<ALL>", L"<CTR>", L"<STA>", L"<CTY>", L"<SAB>", L"<ZIP>", L"<STR>",
    L"<HNO>", L"<TEL>", L"<TMC>", L"<TEV>", L"<TET>", L"<GEO>",
};
constexpr const wchar_t* kLanguages[] = {
    L"LangDansk",         L"LangGerman",  L"LangEngGB",
    L"LangEngUS",         L"LangSpanish", L"LangSpanishUS",
    L"LangFrench",        L"LangItalian", L"LangNetherlands",
    L"LangPortuguese",    L"LangSwedish", L"LangTurkish",
    L"LangFlemish",       L"LangArabic",  L"LangChineseTraditional",
    L"LangChineseSimple", L"LangKorean",  L"LangJapanese",
    L"LangUndef",
};
constexpr const wchar_t* kRouteModes[] = {
    L"fastest",
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
    L"trailGuidanceFromEnd",
};

template <std::size_t N>
const wchar_t* DrawWord(const wchar_t* const (&words)[N]) {
  return words[DrawBelow(static_cast<int>(N))];
}

}  // namespace

const wchar_t* DrawOnOff() {
  return DrawWord(kOnOff);
}
const wchar_t* DrawSafetyWarningMode() {
  return DrawWord(kSafetyWarningModes);
}
const wchar_t* DrawWarningMode() {
  return DrawWord(kWarningModes);
}
const wchar_t* DrawBlockAction() {
  return DrawWord(kBlockActions);
}
const wchar_t* DrawTuningMode() {
  return DrawWord(kTuningModes);
}
const wchar_t* DrawTmcAction() {
  return DrawWord(kTmcActions);
}
const wchar_t* DrawAudioMode() {
  return DrawWord(kAudioModes);
}
const wchar_t* DrawMeasurementUnit() {
  return DrawWord(kMeasurementUnits);
}
const wchar_t* DrawTmcMode() {
  return DrawWord(kTmcModes);
}
const wchar_t* DrawSendingMode() {
  return DrawWord(kSendingModes);
}
const wchar_t* DrawContentType() {
  return DrawWord(kContentTypes);
}
const wchar_t* DrawSortOrder() {
  return DrawWord(kSortOrders);
}
const wchar_t* DrawTmcMessageClass() {
  return DrawWord(kTmcMessageClasses);
}
const wchar_t* DrawItemTag() {
  return DrawWord(kItemTags);
}
const wchar_t* DrawLanguage() {
  return DrawWord(kLanguages);
}
const wchar_t* DrawRouteMode() {
  return DrawWord(kRouteModes);
}

}  // namespace ventrik
