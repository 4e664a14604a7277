// SPDX-License-Identifier: Apache-2.0
#include "bench/model/map_picks.h"

#include <cmath>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/search.h"

namespace ventrik::bench {
namespace {

bool IsOnMap(const PickQuestion& question) {
  return question.x >= 0 && question.x <= kMapWidth && question.y >= 0 && question.y <= kMapHeight;
}

MapPoint PointOf(const PickQuestion& question) {
  return {static_cast<double>(question.x), static_cast<double>(question.y)};
}

// A circle on a map.
struct Spot {
  Position centre;  // of the map
  int zoom;
  MapPoint point;
  double radius;  // pixels
};

void AddItemsIn(const Spot& spot, const std::vector<MapItem>& items,
                std::vector<std::string>& found) {
  for (const MapItem& item : items) {
    const MapPoint point = PointOf(spot.centre, spot.zoom, item.position);
    const double off = std::hypot(point.x - spot.point.x, point.y - spot.point.y);
    if (off <= spot.radius) found.push_back(item.text);
  }
}

void AddNearestTown(const World& world, const Position& position, std::vector<std::string>& found) {
  ListRequest nearest;
  std::string eis;
  AppendEis(eis, "CTY", PositionText(position));
  nearest.inputEis = eis;
  nearest.count = 1;
  nearest.order = ListOrder::nearFirst;
  nearest.fields = {"ALL", "DST"};
  for (std::string& row : List(world, nearest).rows) found.push_back(std::move(row));
}

void AddSurfaces(const EngineState& state, const std::string& mapId,
                 std::vector<std::string>& found) {
  for (const std::string& sid : SurfacesOf(state, mapId)) {
    AppendEis(found.emplace_back(), "SID", sid);
  }
}

}  // namespace

PickResult Pick(const EngineState& state, const PickQuestion& question, TimePoint now) {
  PickResult result;
  const EngineMap* map = FindShownMap(state, question.mapId);
  if (map == nullptr || !IsOnMap(question)) return result;
  const Spot spot{CentreOf(state, *map, now), map->view.zoom, PointOf(question),
                  static_cast<double>(question.radius)};
  result.position = PositionAt(spot.centre, spot.zoom, spot.point);
  std::vector<std::string>& found = result.found;
  const auto isAsked = [&question](WorldElement element) {
    return (question.elements & element) != 0;
  };
  if (isAsked(kGeoCoordinate))
    AppendEis(found.emplace_back(), "GEO", PositionText(result.position));
  if (isAsked(kLocationDetails)) AddNearestTown(state.world, result.position, found);
  if (isAsked(kPoiData)) {
    AddItemsIn(spot, map->items, found);
    AddItemsIn(spot, map->temporaryItems, found);
  }
  if (isAsked(kWeatherData)) AddSurfaces(state, question.mapId, found);
  return result;
}

}  // namespace ventrik::bench
