// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_controls.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>

#include "bench/eis.h"
#include "bench/model/map_view.h"

namespace ventrik::bench {
namespace {

struct NumberControl {
  std::string_view tag;
  std::int32_t lowest;
  std::int32_t highest;
  std::optional<std::int32_t> MapControls::*member;  // null: without effect
};

constexpr std::int32_t kAnyBelow = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kAnyAbove = std::numeric_limits<std::int32_t>::max();

constexpr NumberControl kNumbers[] = {
    {"MVI", 0, 1, &MapControls::visible},
    {"MZ", -3, kWidestZoom, &MapControls::zoom},
    {"MSD", 0, 359, &MapControls::direction},
    {"MSS", 1, 100, &MapControls::speed},
    {"MSM", 1, 8, &MapControls::scroll},
    {"SJV", kAnyBelow, kAnyAbove, &MapControls::junction},
    {"MVT", 1, 8, nullptr},
    {"MH", 1, 4, nullptr},
    {"MEV", 0, 90, nullptr},
    {"MAS", 1, 2, nullptr},
    {"M3L", 0, 1, nullptr},
    {"M3T", 0, 1, nullptr},
    {"M3C", 0, 1, nullptr},
    {"MLR", 0, 2, nullptr},
    {"MSP", 0, 1, nullptr},
    {"MSC", 0, 1, nullptr},
    {"MTI", 0, 1, nullptr},
    {"MTF", 0, 1, nullptr},
    {"MSL", 0, 2, nullptr},
    {"MRT", 0, 1, nullptr},
    {"PRE", 0, 1, nullptr},
};

// These count in single bits.
constexpr std::string_view kChoices[] = {"MSM", "MVT", "MH"};

constexpr std::string_view kPairs[] = {"MP", "MR", "MVR", "MVP", "MEP"};

bool IsAmong(const std::string_view* begin, const std::string_view* end, std::string_view tag) {
  return std::find(begin, end, tag) != end;
}

std::optional<std::int32_t> ParseNumber(std::string_view text) {
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

bool IsPixelPair(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return false;
  const auto x = ParseNumber(text.substr(0, comma));
  const auto y = ParseNumber(text.substr(comma + 1));
  return x && y && *x >= 0 && *x <= kMapWidth && *y >= 0 && *y <= kMapHeight;
}

bool IsGood(const NumberControl& control, std::int32_t number) {
  if (number < control.lowest || number > control.highest) return false;
  if (control.tag == "MZ") return number < 0 || number >= kClosestZoom;
  const bool isChoice = IsAmong(std::begin(kChoices), std::end(kChoices), control.tag);
  return !isChoice || (number & (number - 1)) == 0;
}

enum class Reading { good, bad, unknown };

Reading ReadNumber(const EisPair& pair, MapControls& controls) {
  const auto* control =
      std::find_if(std::begin(kNumbers), std::end(kNumbers),
                   [&pair](const NumberControl& known) { return known.tag == pair.tag; });
  if (control == std::end(kNumbers)) return Reading::unknown;
  const auto number = ParseNumber(pair.value);
  if (!number || !IsGood(*control, *number)) return Reading::bad;
  if (control->member != nullptr && !(controls.*control->member)) {
    controls.*control->member = number;
  }
  return Reading::good;
}

Reading ReadPair(const EisPair& pair, MapControls& controls) {
  if (pair.tag == "MID") return Reading::good;
  if (IsAmong(std::begin(kPairs), std::end(kPairs), pair.tag)) {
    return IsPixelPair(pair.value) ? Reading::good : Reading::bad;
  }
  if (pair.tag != "GEO") return ReadNumber(pair, controls);
  const auto centre = ParsePosition(pair.value);
  if (!centre) return Reading::bad;
  if (!controls.centre) controls.centre = centre;
  return Reading::good;
}

}  // namespace

std::string MapIdOf(std::string_view text) {
  if (!text.empty() && text.find('<') == std::string_view::npos) return std::string(text);
  const auto id = FindEis(ParseEis(text), "MID");
  return std::string(id && !id->empty() ? *id : kDefaultMap);
}

std::optional<MapControls> ReadMapControls(std::string_view text) {
  MapControls controls;
  controls.id = MapIdOf(text);
  bool knowsSome = false;
  for (const EisPair& pair : ParseEis(text)) {
    const Reading reading = ReadPair(pair, controls);
    if (reading == Reading::bad) return std::nullopt;
    if (reading == Reading::good) knowsSome = true;
  }
  if (!knowsSome) return std::nullopt;
  return controls;
}

}  // namespace ventrik::bench
