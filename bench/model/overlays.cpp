// SPDX-License-Identifier: Apache-2.0
#include "bench/model/overlays.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/model/map_controls.h"
#include "bench/picture/png_file.h"
#include "bench/picture/shared_surface.h"

namespace ventrik::bench {
namespace {

std::string SurfaceText(const std::string& sid) {
  std::string text;
  AppendEis(text, "SID", sid);
  return text;
}

void TellEnd(const std::string& sid, Replies& out) {
  out.Notify(INFO_MAP_OVERLAY_SURFACE_INVALID, {{"eis", SurfaceText(sid)}});
}

// Ends those for which `isOver` holds, in their order. The tester leaves its memory object behind
// for whoever uses it, so it is taken away here: before its end is told, lest the tester that is
// told has made a new one of that name by then.
template <class Condition>
void EndSurfaces(std::vector<Surface>& surfaces, Condition isOver, Replies& out) {
  for (const Surface& surface : surfaces) {
    if (!isOver(surface)) continue;
    RemoveSurface(surface.sid);
    TellEnd(surface.sid, out);
  }
  surfaces.erase(std::remove_if(surfaces.begin(), surfaces.end(), isOver), surfaces.end());
}

// A name for a report: nothing of a bad one, which may be meant to upset a terminal.
std::string Quoted(const std::string& sid) {
  return IsPlainFileName(sid) ? "\"" + sid + "\"" : std::string("of a bad name");
}

void Refuse(const EngineState& state, const std::string& sid, const std::string& reason,
            Replies& out) {
  state.report("the surface " + Quoted(sid) + " is invalid: " + reason);
  out.Answer(INFO_MAP_OVERLAY_SURFACE_INVALID, {{"eis", SurfaceText(sid)}});
}

void SaveSurface(const EngineState& state, const std::string& sid, Picture picture, Replies& out) {
  if (state.overlayFolder.empty()) return;
  out.DoLater([folder = state.overlayFolder, name = sid + ".png", picture = std::move(picture),
               report = state.report] {
    std::string error;
    if (!SavePng(folder, name, picture, error)) report(error);
  });
}

// A surface that is offered again while in use is used anew.
void Use(std::vector<Surface>& surfaces, Surface surface) {
  surfaces.erase(
      std::remove_if(surfaces.begin(), surfaces.end(),
                     [&surface](const Surface& used) { return used.sid == surface.sid; }),
      surfaces.end());
  surfaces.push_back(std::move(surface));
}

void HandleSurface(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  const std::string& eis = Get<std::string>(request, "eis");
  const auto found = FindEis(ParseEis(eis), "SID");
  if (!found) {
    state.report("a surface is invalid: it has no SID");
    return;
  }
  const std::string sid(*found);
  std::vector<Surface>& surfaces = state.overlays.surfaces;
  if (surfaces.size() >= kMostSurfaces) {
    Refuse(state, sid, "there are " + std::to_string(surfaces.size()) + " in use", out);
    RemoveSurface(sid);
    return;
  }
  std::string error;
  auto picture = ReadSurface(sid, error);
  if (!picture) {
    Refuse(state, sid, error, out);
    return;
  }
  SaveSurface(state, sid, std::move(*picture), out);
  Use(surfaces, {sid, MapIdOf(eis), now + kSurfaceLife});
}

std::optional<TimePoint> NextTick(const EngineState& state) {
  if (state.overlays.surfaces.empty()) return std::nullopt;
  return state.overlays.surfaces.front().end;
}

void Tick(EngineState& state, TimePoint now, Replies& out) {
  EndSurfaces(
      state.overlays.surfaces, [now](const Surface& surface) { return surface.end <= now; }, out);
}

constexpr HandlerRow kHandlers[] = {{REQU_MAP_OVERLAY_SURFACE, HandleSurface}};

}  // namespace

std::vector<std::string> SurfacesOf(const EngineState& state, const std::string& mapId) {
  std::vector<std::string> sids;
  for (const Surface& surface : state.overlays.surfaces) {
    if (surface.mapId == mapId) sids.push_back(surface.sid);
  }
  return sids;
}

void EndSurfacesOf(EngineState& state, const std::string& mapId, Replies& out) {
  EndSurfaces(
      state.overlays.surfaces, [&mapId](const Surface& surface) { return surface.mapId == mapId; },
      out);
}

void RemoveSurfaces(const EngineState& state) {
  for (const Surface& surface : state.overlays.surfaces) RemoveSurface(surface.sid);
}

HandlerRows OverlaysHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock OverlaysClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
