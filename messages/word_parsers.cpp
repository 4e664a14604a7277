// SPDX-License-Identifier: Apache-2.0
#include "messages/word_parsers.h"

#include <cstddef>
#include <cwchar>
#include <string>

namespace ventrik {
namespace {

struct WordRow {
  const wchar_t* word;
  std::int32_t value;
};

struct FlagRow {
  const wchar_t* name;
  std::int32_t bit;
  std::size_t advance;  // characters to go on by after a match
};

constexpr FlagRow Flag(const wchar_t* name, std::int32_t bit) {
  return {name, bit, std::char_traits<wchar_t>::length(name)};
}

constexpr WordRow kSpeedWarningModes[] = {{L"valueMode", 1}};

constexpr WordRow kTmcTuningModes[] = {{L"tmcTuningManual", 2}};

constexpr WordRow kTmcRouteModes[] = {
    {L"tmcManual", 2},
    {L"tmcAutomatic", 1},
    {L"tmcDelay", 4},
};

constexpr WordRow kTmcAvoidModes[] = {{L"tmcIgnore", 2}, {L"tmcAvoid", 1}};

constexpr WordRow kSortOptions[] = {
    {L"ascending", 1}, {L"descending", 2},        {L"nearFirst", 4},
    {L"farFirst", 8},  {L"hierarchicalSort", 16}, {L"hierarchicalDescSort", 32},
};

constexpr WordRow kBlockModes[] = {{L"AddBlock", 0}};

constexpr WordRow kStartStopModes[] = {{L"start", 1}, {L"stop", 2}};

constexpr WordRow kAppearanceStyles[] = {{L"night", 2}};

constexpr WordRow kMeasurementSystems[] = {
    {L"imperialyards", 2},
    {L"imperialfeet", 4},
    {L"metric", 8},
};

constexpr WordRow kLanguages[] = {
    {L"LangDansk", 1},
    {L"LangGerman", 2},
    {L"LangEngGB", 3},
    {L"LangEngUS", 4},
    {L"LangSpanish", 5},
    {L"LangSpanishUS", 6},
    {L"LangFrench", 7},
    {L"LangItalian", 8},
    {L"LangNetherlands", 9},
    {L"LangPortuguese", 10},
    {L"LangSwedish", 11},
    {L"LangTurkish", 12},
    {L"LangFlemish", 13},
    {L"LangArabic", 14},
    {L"LangChineseTraditional", 15},
    {L"LangChineseSimple", 16},
    {L"LangKorean", 17},
    {L"LangJapanese", 18},
    {L"LangBrazilianPortuguese", 19},
    {L"LangFrenchCanadian", 20},
    {L"LangFinnish", 21},
    {L"LangGreek", 22},
    {L"LangNorwegian", 23},
    {L"LangPolish", 24},
    {L"LangRussian", 25},
    {L"LangHindi", 26},
};

constexpr WordRow kSafetyCameraModes[] = {{L"safetyWarningsOff", 0}};

constexpr WordRow kNotificationModes[] = {{L"once", 1}, {L"onChange", 2}, {L"frequency", 4}};

constexpr WordRow kAudioSources[] = {
    {L"AudioIdle", 0},
    {L"AudioAutomatic", 1},
    {L"AudioSafetyCamera", 3},
};

// The order decides where one name begins with another.
constexpr FlagRow kRouteModes[] = {
    Flag(L"shortest", 0x2),
    Flag(L"eScenicRoute", 0x4),
    Flag(L"avoidMotorways", 0x8),
    Flag(L"avoidFerries", 0x10),
    Flag(L"avoidTollroads", 0x20),
    Flag(L"avoidIPD", 0x40),
    Flag(L"avoidUnpaved", 0x80),
    Flag(L"avoidBorder", 0x100),
    Flag(L"fastest", 0x1),
    Flag(L"avoidTunnels", 0x4000),
    Flag(L"ecoRoute", 0x200),
    Flag(L"optimizeDestOrder", 0x400),
    Flag(L"avoidCarTrain", 0x800),
    Flag(L"avoidTimeRestricted", 0x1000),
    Flag(L"avoidSeasonalRestricted", 0x2000),
    Flag(L"noIPDGuidance", 0x20000),
    // Goes on in the middle of its own name; no name begins in the rest of it.
    {L"ignoreTrafficPatterns", 0x10000, 13},
    Flag(L"avoidRestrictedAccess", 0x40000),
    Flag(L"sportRoute", 0x80000),
    Flag(L"trailGuidance", 0x100000),
    Flag(L"trailGuidanceFromEnd", 0x200000),  // never reached: the row above fits first
    Flag(L"disableStreetSideAnnouncement", 0x1),
};

constexpr FlagRow kWorldProperties[] = {
    Flag(L"zoomToRouteDifferences", 0x100),
    Flag(L"zoom", 0x1),
    Flag(L"highlight", 0x2),
    Flag(L"visible", 0x4),
    Flag(L"setItemVisibilities", 0x8),
    Flag(L"setTemporaryItems", 0x10),
};

constexpr FlagRow kWorldElements[] = {
    Flag(L"poiData", 0x4),       Flag(L"tmcData", 0x8),         Flag(L"weatherData", 0x10),
    Flag(L"geoCoordinate", 0x1), Flag(L"locationDetails", 0x2),
};

constexpr WordRow kTmcInfoFilters[] = {
    {L"tmcOnRoute", 0x1},     {L"tmcSignificent", 0x2}, {L"tmcNonSignificent", 0x4},
    {L"tmcAllMessages", 0x8}, {L"tmcAvoided", 0x10},    {L"tmcIgnoredMessages", 0x20},
};

template <std::size_t N>
std::int32_t ExactWord(const WordRow (&table)[N], const wchar_t* word, std::int32_t byDefault) {
  for (const WordRow& row : table) {
    if (std::wcscmp(row.word, word) == 0) return row.value;
  }
  return byDefault;
}

template <std::size_t N>
const FlagRow* FirstMatch(const FlagRow (&table)[N], const wchar_t* text) {
  for (const FlagRow& row : table) {
    if (std::wcsncmp(row.name, text, std::char_traits<wchar_t>::length(row.name)) == 0) return &row;
  }
  return nullptr;
}

template <std::size_t N>
std::int32_t ScanFlags(const FlagRow (&table)[N], const wchar_t* words) {
  const std::size_t length = std::wcslen(words);
  std::int32_t flags = 0;
  for (std::size_t at = 0; at < length; ++at) {
    if (const FlagRow* row = FirstMatch(table, words + at)) {
      flags |= row->bit;
      at += row->advance;
    }
  }
  return flags;
}

template <std::size_t N>
WordTable Words(const char* name, std::int32_t (*parse)(const wchar_t*), const WordRow (&table)[N],
                bool flags = false) {
  WordTable listed = {name, parse, flags, {}};
  for (const WordRow& row : table) listed.words.push_back(row.word);
  return listed;
}

template <std::size_t N>
WordTable Words(const char* name, std::int32_t (*parse)(const wchar_t*),
                const FlagRow (&table)[N]) {
  WordTable listed = {name, parse, true, {}};
  for (const FlagRow& row : table) listed.words.push_back(row.name);
  return listed;
}

}  // namespace

std::int32_t ParseSpeedWarningMode(const wchar_t* word) {
  return ExactWord(kSpeedWarningModes, word, 0);
}

std::int32_t ParseTmcTuningMode(const wchar_t* word) {
  return ExactWord(kTmcTuningModes, word, 1);
}

std::int32_t ParseTmcRouteMode(const wchar_t* word) {
  return ExactWord(kTmcRouteModes, word, 0);
}

std::int32_t ParseTmcAvoidMode(const wchar_t* word) {
  return ExactWord(kTmcAvoidModes, word, 0);
}

std::int32_t ParseSortOption(const wchar_t* word) {
  return ExactWord(kSortOptions, word, 0);
}

std::int32_t ParseBlockMode(const wchar_t* word) {
  return ExactWord(kBlockModes, word, 1);
}

std::int32_t ParseStartStopMode(const wchar_t* word) {
  return ExactWord(kStartStopModes, word, 4);
}

std::int32_t ParseAppearanceStyle(const wchar_t* word) {
  return ExactWord(kAppearanceStyles, word, 1);
}

std::int32_t ParseMeasurementSystem(const wchar_t* word) {
  return ExactWord(kMeasurementSystems, word, 1);
}

std::int32_t ParseLanguage(const wchar_t* word) {
  return ExactWord(kLanguages, word, 0);
}

std::int32_t ParseSafetyCameraMode(const wchar_t* word) {
  return ExactWord(kSafetyCameraModes, word, 1);
}

std::int32_t ParseNotificationMode(const wchar_t* word) {
  return ExactWord(kNotificationModes, word, 0);
}

std::int32_t ParseAudioSource(const wchar_t* word) {
  return ExactWord(kAudioSources, word, 2);
}

std::int32_t ParseRouteMode(const wchar_t* words) {
  return ScanFlags(kRouteModes, words);
}

std::int32_t ParseWorldProperty(const wchar_t* words) {
  return ScanFlags(kWorldProperties, words);
}

std::int32_t ParseWorldElement(const wchar_t* words) {
  return ScanFlags(kWorldElements, words);
}

std::int32_t ParseTmcInfoFilter(const wchar_t* words) {
  std::int32_t flags = 0;
  for (const WordRow& row : kTmcInfoFilters) {
    if (std::wcsstr(words, row.word) != nullptr) flags |= row.value;
  }
  return flags;
}

std::vector<WordTable> WordTables() {
  return {
      Words("speed warning mode", ParseSpeedWarningMode, kSpeedWarningModes),
      Words("tuning mode", ParseTmcTuningMode, kTmcTuningModes),
      Words("traffic route mode", ParseTmcRouteMode, kTmcRouteModes),
      Words("traffic avoid mode", ParseTmcAvoidMode, kTmcAvoidModes),
      Words("sort option", ParseSortOption, kSortOptions),
      Words("block mode", ParseBlockMode, kBlockModes),
      Words("start and stop", ParseStartStopMode, kStartStopModes),
      Words("appearance style", ParseAppearanceStyle, kAppearanceStyles),
      Words("measurement system", ParseMeasurementSystem, kMeasurementSystems),
      Words("language", ParseLanguage, kLanguages),
      Words("safety camera mode", ParseSafetyCameraMode, kSafetyCameraModes),
      Words("notification mode", ParseNotificationMode, kNotificationModes),
      Words("audio source", ParseAudioSource, kAudioSources),
      Words("route mode", ParseRouteMode, kRouteModes),
      Words("world property", ParseWorldProperty, kWorldProperties),
      Words("world element", ParseWorldElement, kWorldElements),
      Words("traffic info filter", ParseTmcInfoFilter, kTmcInfoFilters, true),
  };
}

}  // namespace ventrik
