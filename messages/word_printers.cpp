// SPDX-License-Identifier: Apache-2.0
#include "messages/word_printers.h"

#include <cstddef>

namespace ventrik {
namespace {

struct NameRow {
  std::int32_t value;
  const char* name;
};

constexpr std::int32_t kUnknownUpdateResults = 127;  // above it, the engine means something new

constexpr NameRow kMeasurementSystems[] = {
    {1, "undefined"},
    {2, "imperialyards"},
    {4, "imperialfeet"},
    {8, "metric"},
};

constexpr NameRow kLanguages[] = {
    {0, "LangUndef"},           {1, "LangDansk"},
    {2, "LangGerman"},          {3, "LangEngGB"},
    {4, "LangEngUS"},           {5, "LangSpanish"},
    {6, "LangSpanishUS"},       {7, "LangFrench"},
    {8, "LangItalian"},         {9, "LangNetherlands"},
    {10, "LangPortuguese"},     {11, "LangSwedish"},
    {12, "LangTurkish"},        {13, "LangFlemish"},
    {14, "LangArabic"},         {15, "LangChineseTraditional"},
    {16, "LangChineseSimple"},  {17, "LangKorean"},
    {18, "LangJapanese"},       {19, "LangBrazilianPortuguese"},
    {20, "LangFrenchCanadian"}, {21, "LangFinnish"},
    {22, "LangGreek"},          {23, "LangNorwegian"},
    {24, "LangPolish"},         {25, "LangRussian"},
    {26, "LangHindi"},
};

constexpr NameRow kRouteCalcStates[] = {
    {0, "Idle"},       {1, "Planning"}, {2, "Planned"}, {3, "Calculating"},
    {4, "Calculated"}, {5, "Routing"},  {6, "Routed"},  {7, "Failed"},
};

constexpr NameRow kSortOptions[] = {
    {0, "defaultSort"},
    {1, "ascending"},
    {2, "descending"},
    {4, "nearFirst"},
    {8, "farFirst"},
    {16, "hierarchicalSort"},
    {32, "hierarchicalDescSort"},
};

constexpr NameRow kRouteModes[] = {
    {0x1, "fastest"},
    {0x2, "shortest"},
    {0x4, "eScenicRoute"},
    {0x8, "avoidMotorways"},
    {0x10, "avoidFerries"},
    {0x20, "avoidTollroads"},
    {0x40, "avoidIPD"},
    {0x80, "avoidUnpaved"},
    {0x100, "avoidBorder"},
    {0x200, "ecoRoute"},
    {0x400, "optimizeDestOrder"},
    {0x800, "avoidCarTrain"},
    {0x1000, "avoidTimeRestricted"},
    {0x2000, "avoidSeasonalRestricted"},
    {0x4000, "avoidTunnels"},
    {0x8000, "optimizeDestOrderKeepLastDest"},
    {0x10000, "ignoreTrafficPatterns"},
    {0x20000, "noIPDGuidance"},
    {0x40000, "avoidRestrictedAccess"},
    {0x80000, "sportRoute"},
    {0x100000, "trailGuidance"},
    {0x200000, "trailGuidanceFromEnd"},
};

constexpr NameRow kWorldProperties[] = {{0x1, "zoom "}, {0x2, "highlight "}, {0x4, "visible "}};

constexpr NameRow kWorldElements[] = {
    {0x1, "geoCoordinate "}, {0x2, "locationDetails "}, {0x4, "poiData "},
    {0x8, "tmcData "},       {0x10, "weatherData"},
};

constexpr NameRow kUpdateResults[] = {
    {0x1, "updInvalidPackage"}, {0x4, "updNotEnoughSpace"}, {0x8, "updOlderPackage"},
    {0x10, "updNoPackage"},     {0x20, "updSamePackage"},
};

template <std::size_t N>
const char* NameOf(const NameRow (&table)[N], std::int32_t value, const char* byDefault) {
  for (const NameRow& row : table) {
    if (row.value == value) return row.name;
  }
  return byDefault;
}

template <std::size_t N>
std::string NamesOf(const NameRow (&table)[N], std::int32_t flags, const char* separator) {
  std::string text;
  for (const NameRow& row : table) {
    if ((flags & row.value) == 0) continue;
    if (!text.empty()) text += separator;
    text += row.name;
  }
  return text;
}

}  // namespace

const char* MeasurementSystemText(std::int32_t value) {
  return NameOf(kMeasurementSystems, value, "");
}

const char* LanguageText(std::int32_t value) {
  return NameOf(kLanguages, value, "");
}

const char* RouteCalcStateText(std::int32_t value) {
  return NameOf(kRouteCalcStates, value, "");
}

std::string SortOptionText(std::int32_t value) {
  const char* name = NameOf(kSortOptions, value, nullptr);
  return name != nullptr ? name : std::to_string(value);
}

std::string RouteModeText(std::int32_t flags) {
  const std::string names = NamesOf(kRouteModes, flags, "|");
  return names.empty() ? std::to_string(flags) : names;
}

std::string WorldPropertyText(std::int32_t flags) {
  return NamesOf(kWorldProperties, flags, "");
}

std::string WorldElementText(std::int32_t flags) {
  return NamesOf(kWorldElements, flags, "");
}

std::string UpdateResultText(std::int32_t flags) {
  std::string text = flags == 0 ? "updSuccess" : NamesOf(kUpdateResults, flags, "|");
  if (flags > kUnknownUpdateResults) {
    if (!text.empty()) text += '|';
    text += "unknown";
  }
  return text + '(' + std::to_string(flags) + ')';
}

std::string NextRouteMode(BlockCursor& cursor) {
  return RouteModeText(cursor.NextWord());
}

std::string NextSortOption(BlockCursor& cursor) {
  return SortOptionText(cursor.NextWord());
}

}  // namespace ventrik
