// SPDX-License-Identifier: Apache-2.0
#include "bench/model/screen_shots.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "bench/model/engine_state.h"
#include "bench/model/map_picture.h"
#include "bench/picture/png_file.h"

namespace ventrik::bench {
namespace {

std::vector<Position> PositionsOf(const std::vector<MapItem>& items) {
  std::vector<Position> positions;
  std::transform(items.begin(), items.end(), std::back_inserter(positions),
                 [](const MapItem& item) { return item.position; });
  return positions;
}

MapContents ContentsOf(const EngineState& state, const EngineMap& map, TimePoint now) {
  MapContents contents{};
  contents.centre = CentreOf(state, map, now);
  contents.zoom = map.view.zoom;
  contents.vehicle = state.vehicle.position;
  contents.items = PositionsOf(map.items);
  if (map.highlighted) contents.highlighted = contents.items;
  for (const MapItem& item : map.temporaryItems) contents.items.push_back(item.position);
  contents.junctionView = map.junction > 0;
  return contents;
}

}  // namespace

std::function<bool()> ScreenShotOf(const EngineState& state, const std::string& mapId,
                                   const std::string& fileName, TimePoint now) {
  const EngineMap* map = FindShownMap(state, mapId);
  if (map == nullptr || state.pictureFolder.empty() || !IsPlainFileName(fileName)) return nullptr;
  return [&world = state.world, contents = ContentsOf(state, *map, now),
          folder = state.pictureFolder, fileName, report = state.report] {
    std::string error;
    const bool saved = SavePng(folder, fileName, DrawMap(world, contents), error);
    if (!saved) report(error);
    return saved;
  };
}

}  // namespace ventrik::bench
