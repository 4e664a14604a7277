// SPDX-License-Identifier: Apache-2.0
#include "bench/model/screen_shots.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "bench/model/engine_state.h"
#include "bench/model/map_picture.h"
#include "bench/model/png_file.h"

namespace ventrik::bench {
namespace {

std::vector<Position> PositionsOf(const std::vector<MapItem>& items) {
  std::vector<Position> positions;
  std::transform(items.begin(), items.end(), std::back_inserter(positions),
                 [](const MapItem& item) { return item.position; });
  return positions;
}

Picture PictureOf(const EngineState& state, const EngineMap& map, TimePoint now) {
  MapContents contents{};
  contents.centre = CentreOf(state, map, now);
  contents.zoom = map.view.zoom;
  contents.vehicle = state.vehicle.position;
  contents.items = PositionsOf(map.items);
  if (map.highlighted) contents.highlighted = contents.items;
  for (const MapItem& item : map.temporaryItems) contents.items.push_back(item.position);
  contents.junctionView = map.junction > 0;
  return DrawMap(state.world, contents);
}

}  // namespace

bool TakeScreenShot(const EngineState& state, const std::string& mapId, const std::string& fileName,
                    TimePoint now) {
  const EngineMap* map = FindShownMap(state, mapId);
  if (map == nullptr || state.pictureFolder.empty() || !IsPlainFileName(fileName)) return false;
  std::string error;
  if (SavePng(state.pictureFolder, fileName, PictureOf(state, *map, now), error)) return true;
  state.report(error);
  return false;
}

}  // namespace ventrik::bench
