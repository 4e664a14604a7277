// SPDX-License-Identifier: Apache-2.0
// What is found at a pixel of a map.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bench/model/replies.h"
#include "bench/world.h"

namespace ventrik::bench {

struct EngineState;

// The flags of the wire.
enum WorldElement : std::int32_t {
  kGeoCoordinate = 0x1,    // the position of the pixel, <GEO>
  kLocationDetails = 0x2,  // the nearest town with all that is known about it, as in a list
  kPoiData = 0x4,          // the tester's own items at most `radius` away, as they were sent
  kTmcData = 0x8,          // nothing: traffic messages have no places in this world
  kWeatherData = 0x10,     // the weather surfaces in use on the map, <SID>
};

struct PickQuestion {
  std::string mapId;
  std::int32_t x = 0;       // pixels, 0 to kMapWidth
  std::int32_t y = 0;       // 0 to kMapHeight
  std::int32_t radius = 0;  // pixels
  std::int32_t elements = 0;
};

struct PickResult {
  Position position;               // of the pixel
  std::vector<std::string> found;  // tagged texts, in the order of the flags
};

// If there is no such map, or it is hidden, or the pixel is not on it: nothing at 0, 0.
PickResult Pick(const EngineState& state, const PickQuestion& question, TimePoint now);

}  // namespace ventrik::bench
