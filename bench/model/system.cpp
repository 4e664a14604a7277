// SPDX-License-Identifier: Apache-2.0
#include "bench/model/system.h"

#include <cstddef>
#include <iterator>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

std::string DataVersion(const World& world) {
  std::size_t places = 0;
  for (const Country& country : world.countries) {
    for (const State& state : country.states) places += state.towns.size();
  }
  // The date is that of world/SOURCE.md.
  return "GeoNames 2022-03-04, " + std::to_string(places) + " places";
}

void HandleInit(EngineState&, const MessageFields&, TimePoint, Replies& out) {
  out.Answer(RESP_INIT, {{"result", 0}});
}

void HandleShutdown(EngineState& state, const MessageFields&, TimePoint, Replies& out) {
  ForgetClient(state, out.requester());
  out.Answer(RESP_SHUTDOWN, {});
}

void RestoreMaps(EngineState& state, Replies& out) {
  for (const auto& [id, map] : state.maps.maps) EndSurfacesOf(state, id, out);
  state.maps = {};
}

// A package that is being loaded goes on: whoever sends it waits for its end.
void HandleRestoreFactory(EngineState& state, const MessageFields&, TimePoint now, Replies& out) {
  out.Answer(RESP_RESTORE_FACTORY, {});
  RestoreSettings(state, out);
  RestoreAudio(state, out);
  state.dataSources = {};
  RestoreTraffic(state, now, out);
  RestoreGuidance(state, out);
  RestoreTrips(state);
  RestoreRecording(state, out);
  RestoreMaps(state, out);
  state.vehicle = {};
  RestoreUpdates(state, out);
}

void HandleSoftwareVersion(EngineState&, const MessageFields&, TimePoint, Replies& out) {
  out.Answer(RESP_GET_SW_VERSION, {{"swVersion", ProgramVersion()}});
}

void HandleDataVersion(EngineState& state, const MessageFields&, TimePoint, Replies& out) {
  out.Answer(RESP_GET_DB_VERSION,
             {{"dbVersion", DataVersion(state.world) + UpdateSuffix(state.updates)}});
}

constexpr HandlerRow kHandlers[] = {
    {REQU_INIT, HandleInit},
    {REQU_SHUTDOWN, HandleShutdown},
    {REQU_RESTORE_FACTORY, HandleRestoreFactory},
    {REQU_GET_SW_VERSION, HandleSoftwareVersion},
    {REQU_GET_DB_VERSION, HandleDataVersion},
};

}  // namespace

std::string ProgramVersion() {
  return "kelmora-bench " VENTRIK_VERSION;
}

void ForgetClient(EngineState& state, ClientNumber client) {
  state.vehicle.wishes.erase(client);
  state.traffic.wishes.erase(client);
}

HandlerRows SystemHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
