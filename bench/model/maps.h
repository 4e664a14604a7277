// SPDX-License-Identifier: Apache-2.0
// A subject of the model: map controls, screen shots, picking, world properties.
//
// There are up to kMostMaps maps, each by its name; kDefaultMap is there from the start, any other
// comes to be with the first control that names it. A map goes with the vehicle until a control or
// a world property puts it elsewhere.
//
// Everybody is told the area of a map (INFO_MAP_OVERLAY_AREA) when it is shown and when it has
// moved: after each control that moved it, each second while it scrolls, and when the vehicle has
// drawn it along for a quarter of its size, at most once a second. Of a map that no control has
// named yet, and of a hidden one, nobody is told.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "bench/model/map_controls.h"
#include "bench/model/map_view.h"
#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr std::size_t kMostMaps = 16;
inline constexpr std::size_t kLongestMapId = 64;      // bytes
inline constexpr std::size_t kMostMapItems = 100;     // in one request
inline constexpr std::size_t kLongestMapItem = 1024;  // bytes
inline constexpr Milliseconds kAreaPeriod{1000};      // of telling about a map that moves by itself

struct MapItem {
  std::string text;  // as it was sent
  Position position;
};

// The view that everybody was told of.
struct ToldArea {
  TimePoint at;
  Position centre;
  int zoom;
};

struct EngineMap {
  bool shown = true;
  MapView view;
  std::optional<ToldArea> told;
  std::int32_t junction = 0;  // number of the junction view; none if it isn't above 0
  std::vector<MapItem> items;
  bool highlighted = false;             // `items` are
  std::vector<MapItem> temporaryItems;  // icons of the tester's own
};

struct MapsState {
  std::map<std::string, EngineMap> maps{{std::string(kDefaultMap), EngineMap{}}};
};

// What is in the middle of the map at `now`.
Position CentreOf(const EngineState& state, const EngineMap& map, TimePoint now);

// The map of that name if there is one and it is shown; else nullptr.
const EngineMap* FindShownMap(const EngineState& state, const std::string& id);

HandlerRows MapsHandlers();
SubjectClock MapsClock();

}  // namespace ventrik::bench
