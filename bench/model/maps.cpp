// SPDX-License-Identifier: Apache-2.0
#include "bench/model/maps.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/model/map_items.h"
#include "bench/model/map_picks.h"
#include "bench/model/screen_shots.h"

namespace ventrik::bench {
namespace {

constexpr double kStepSeconds = 1;  // of scrolling, in one step
constexpr int kZoomFactor = 2;      // of one step closer or wider

using Maps = std::map<std::string, EngineMap>;

// ---- who is told

std::string AreaText(const std::string& id, const MapArea& area) {
  std::string text;
  AppendEis(text, "MID", id);
  AppendEis(text, "GLL", PositionText(area.lowerLeft));
  AppendEis(text, "GUR", PositionText(area.upperRight));
  return text;
}

bool HasMoved(const ToldArea& told, const Position& centre, int zoom) {
  return told.zoom != zoom || told.centre.longitude != centre.longitude ||
         told.centre.latitude != centre.latitude;
}

void TellArea(EngineState& state, const std::string& id, TimePoint now, Replies& out) {
  EngineMap& map = state.maps.maps.at(id);
  const Position centre = CentreOf(state, map, now);
  map.told = ToldArea{now, centre, map.view.zoom};
  EndSurfacesOf(state, id, out);
  out.Notify(INFO_MAP_OVERLAY_AREA, {{"eis", AreaText(id, AreaOf(centre, map.view.zoom))}});
}

// After a request that may have changed what the map shows.
void TellIfChanged(EngineState& state, const std::string& id, TimePoint now, Replies& out) {
  EngineMap& map = state.maps.maps.at(id);
  if (!map.shown) {
    if (map.told) EndSurfacesOf(state, id, out);
    map.told.reset();
    return;
  }
  const Position centre = CentreOf(state, map, now);
  if (!map.told || HasMoved(*map.told, centre, map.view.zoom)) TellArea(state, id, now, out);
}

// Whether the vehicle has drawn a map along for a quarter of its size since that was told.
bool IsDrawnAlong(const EngineState& state, const EngineMap& map) {
  if (map.view.centre) return false;
  const MapPoint point =
      PointOf(map.told->centre, map.told->zoom, AsCentre(state.vehicle.position));
  return std::fabs(point.x - kMapWidth / 2.0) > kMapWidth / 4.0 ||
         std::fabs(point.y - kMapHeight / 2.0) > kMapHeight / 4.0;
}

std::optional<TimePoint> NextTelling(const EngineState& state, const EngineMap& map) {
  if (!map.shown || !map.told) return std::nullopt;
  if (map.view.scrolling) return *map.view.scrolling + kAreaPeriod;
  if (IsDrawnAlong(state, map)) return map.told->at + kAreaPeriod;
  return std::nullopt;
}

// ---- controls

int NewZoom(int zoom, std::int32_t control) {
  switch (control) {
    case -1:
      return std::max(zoom / kZoomFactor, kClosestZoom);
    case -2:
      return std::min(zoom * kZoomFactor, kWidestZoom);
    case -3:
      return kWidestZoom;
    default:
      return control;
  }
}

void ApplyScroll(MapView& view, const Position& centre, std::int32_t mode, TimePoint now) {
  switch (mode) {
    case 1:
      view.centre = centre;
      view.scrolling = now;
      break;
    case 2:
      view.scrolling.reset();
      break;
    case 4:
      view.centre = Scrolled(view, centre, kStepSeconds);
      view.scrolling.reset();
      break;
    default:
      view.centre.reset();
      view.scrolling.reset();
  }
}

// Makes where it has scrolled to the place that it scrolls on from.
void Settle(EngineMap& map, const Position& centre, TimePoint now) {
  if (!map.view.scrolling) return;
  map.view.centre = centre;
  map.view.scrolling = now;
}

void ApplyControls(EngineState& state, EngineMap& map, const MapControls& controls, TimePoint now) {
  MapView& view = map.view;
  Settle(map, CentreOf(state, map, now), now);
  if (controls.centre) view.centre = AsCentre(*controls.centre);
  if (controls.zoom) view.zoom = NewZoom(view.zoom, *controls.zoom);
  if (controls.direction) view.direction = *controls.direction;
  if (controls.speed) view.speed = *controls.speed;
  if (controls.scroll) ApplyScroll(view, CentreOf(state, map, now), *controls.scroll, now);
  if (controls.junction) map.junction = *controls.junction;
  if (!controls.visible) return;
  map.shown = *controls.visible == 1;
  if (map.shown) map.told.reset();  // shown anew, told anew
}

// The names of the maps that an id means. A map that isn't there yet is made if `mayMake`.
std::vector<std::string> MapsOf(Maps& maps, const std::string& id, bool mayMake) {
  std::vector<std::string> ids;
  if (id == kAllMaps) {
    for (const auto& [name, map] : maps) ids.push_back(name);
    return ids;
  }
  const bool hasRoom = maps.size() < kMostMaps && id.size() <= kLongestMapId;
  if (mayMake && hasRoom) maps.try_emplace(id);
  if (maps.count(id) != 0) ids.push_back(id);
  return ids;
}

void HandleMapControls(EngineState& state, const MessageFields& request, TimePoint now,
                       Replies& out) {
  const std::string& text = Get<std::string>(request, "mapControls");
  const auto controls = ReadMapControls(text);
  const auto ids =
      controls ? MapsOf(state.maps.maps, controls->id, true) : std::vector<std::string>{};
  out.Answer(RESP_MAP_CONTROLS, {{"mapControls", text}, {"validState", YesOrNo(!ids.empty())}},
             {"mapControls"});
  for (const std::string& id : ids) {
    ApplyControls(state, state.maps.maps.at(id), *controls, now);
    TellIfChanged(state, id, now, out);
  }
}

// ---- world properties

void HandleWorldProperties(EngineState& state, const MessageFields& request, TimePoint now,
                           Replies& out) {
  const std::string& eis = Get<std::string>(request, "inputEIS");
  const auto& texts = Get<std::vector<std::string>>(request, "items");
  const std::int32_t flags = Get<std::int32_t>(request, "worldProperties");
  const auto ids = MapsOf(state.maps.maps, MapIdOf(eis), false);
  std::vector<MapItem> items;
  const bool valid = !ids.empty() && ReadWorldProperties(state.world, flags, texts, items);
  out.Answer(RESP_SET_WORLD_PROPERTIES,
             {{"inputEIS", eis},
              {"validState", YesOrNo(valid)},
              {"worldElements", flags},
              {"itemList", texts}},
             {"inputEIS", "itemList"});
  if (!valid) return;
  for (const std::string& id : ids) {
    ApplyWorldProperties(state.maps.maps.at(id), flags, items);
    // A map that nobody has asked for yet isn't told of because of what is put on it.
    if (state.maps.maps.at(id).told) TellIfChanged(state, id, now, out);
  }
}

// ---- questions

void HandleScreenShot(EngineState& state, const MessageFields& request, TimePoint now,
                      Replies& out) {
  const std::string& map = Get<std::string>(request, "map");
  const std::string& fileName = Get<std::string>(request, "filename");
  const auto take = ScreenShotOf(state, MapIdOf(map), fileName, now);
  const auto answer = [map, fileName, take]() -> MessageFields {
    const bool valid = take && take();
    return {{"map", map}, {"validState", YesOrNo(valid)}, {"filename", fileName}};
  };
  out.AnswerLater(RESP_SCREEN_SHOT, answer, {"map", "filename"});
}

void HandlePickInfo(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  PickQuestion question;
  question.mapId = MapIdOf(Get<std::string>(request, "mapEIS"));
  question.x = Get<std::int32_t>(request, "x");
  question.y = Get<std::int32_t>(request, "y");
  question.elements = Get<std::int32_t>(request, "worldElements");
  question.radius = Get<std::int32_t>(request, "radius");
  const PickResult result = Pick(state, question, now);
  out.Answer(RESP_PICK_INFO,
             {{"mapEIS", Get<std::string>(request, "mapEIS")},
              {"xCoordinate", question.x},
              {"yCoordinate", question.y},
              {"xWorldCoordinate", result.position.longitude},
              {"yWorldCoordinate", result.position.latitude},
              {"worldElements", question.elements},
              {"radius", question.radius},
              {"pickInfo", result.found},
              {"word11", 0}},
             {"mapEIS"});
}

// ---- time

std::optional<TimePoint> NextTick(const EngineState& state) {
  std::optional<TimePoint> next;
  for (const auto& [id, map] : state.maps.maps) {
    const auto due = NextTelling(state, map);
    if (due && (!next || *due < *next)) next = due;
  }
  return next;
}

void Tick(EngineState& state, TimePoint now, Replies& out) {
  for (auto& [id, map] : state.maps.maps) {
    const auto due = NextTelling(state, map);
    if (!due || *due > now) continue;
    Settle(map, CentreOf(state, map, now), now);
    TellIfChanged(state, id, now, out);
  }
}

constexpr HandlerRow kHandlers[] = {
    {REQU_MAP_CONTROLS, HandleMapControls},
    {REQU_SET_WORLD_PROPERTIES, HandleWorldProperties},
    {REQU_SCREEN_SHOT, HandleScreenShot},
    {REQU_PICK_INFO, HandlePickInfo},
};

}  // namespace

Position CentreOf(const EngineState& state, const EngineMap& map, TimePoint now) {
  return CentreAt(map.view, state.vehicle.position, now);
}

const EngineMap* FindShownMap(const EngineState& state, const std::string& id) {
  const auto found = state.maps.maps.find(id);
  return found != state.maps.maps.end() && found->second.shown ? &found->second : nullptr;
}

HandlerRows MapsHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock MapsClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
