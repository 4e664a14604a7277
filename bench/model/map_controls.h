// SPDX-License-Identifier: Apache-2.0
// The text of a map-control request.
//
//   MID  which map: a name, "all" for every map; without it or empty "map"
//   MVI  1 shows the map, 0 hides it
//   MZ   metres from the left to the right edge, 100 to 1000000; -1 one step closer, -2 one step
//        wider, -3 as wide as can be
//   GEO  the position to have in the middle
//   MSD  direction to scroll in, degrees clockwise from up, 0 to 359
//   MSS  speed to scroll with, 1 to 100, in tens of pixels a second
//   MSM  1 scrolls until it is stopped, 2 stops, 4 scrolls by as much as a second would, 8 goes
//        back to the vehicle and stays with it
//   SJV  the junction view with that number; 0 or less takes it away
//
// MVT, MH, MEV, MAS, M3L, M3T, M3C, MLR, MSP, MSC, MTI, MTF, MSL, MRT, PRE, and the pairs MP, MR,
// MVR, MVP and MEP in pixels, are looks that this engine's flat map doesn't have: their values must
// be good, but change nothing. Other tags are skipped.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "bench/world.h"

namespace ventrik::bench {

inline constexpr std::string_view kDefaultMap = "map";
inline constexpr std::string_view kAllMaps = "all";

// The map that a text is about: the value of its MID, kDefaultMap without one; or the text itself,
// if it isn't empty and has no "<" in it.
std::string MapIdOf(std::string_view text);

struct MapControls {
  std::string id;
  std::optional<std::int32_t> visible;
  std::optional<std::int32_t> zoom;
  std::optional<Position> centre;
  std::optional<std::int32_t> direction;
  std::optional<std::int32_t> speed;
  std::optional<std::int32_t> scroll;  // MSM
  std::optional<std::int32_t> junction;
};

// None if the text has no known tag at all, or one with a bad value. Of a tag given twice, the
// first counts. Pure.
//   "<MID>map<*><MZ>454<*>" => {"map", zoom 454}
//   "<MID>map<*><MZ>5<*>", "<MZ>wide<*>", "zoom" => none
std::optional<MapControls> ReadMapControls(std::string_view text);

}  // namespace ventrik::bench
