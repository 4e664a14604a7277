// SPDX-License-Identifier: Apache-2.0
#include "bench/model/packages.h"

#include <iterator>
#include <string>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

void Begin(PackagesState& packages) {
  packages.pieces = 0;
  packages.bytes = 0;
}

void HandleBegin(EngineState& state, const MessageFields&, TimePoint now, Replies&) {
  Begin(state.packages);
  state.packages.loadedAt = now + kPackageSilence;
}

void HandlePiece(EngineState& state, const MessageFields& request, TimePoint now, Replies&) {
  PackagesState& packages = state.packages;
  if (!packages.loadedAt) Begin(packages);
  ++packages.pieces;
  packages.bytes += Get<std::string>(request, "body").size();
  packages.loadedAt = now + kPackageSilence;
}

void HandleEnd(EngineState& state, const MessageFields&, TimePoint now, Replies&) {
  PackagesState& packages = state.packages;
  if (packages.loadedAt) packages.loadedAt = now + kPackageLoadTime;
}

constexpr HandlerRow kHandlers[] = {
    {CMD_STATE_PACKAGE, HandleBegin},
    {CMD_PACKAGE_PIECE, HandlePiece},
    {CMD_PACKAGE_END, HandleEnd},
};

std::optional<TimePoint> NextTick(const EngineState& state) {
  return state.packages.loadedAt;
}

void Tick(EngineState& state, TimePoint now, Replies& out) {
  PackagesState& packages = state.packages;
  if (!packages.loadedAt || now < *packages.loadedAt) return;
  packages.loadedAt.reset();
  ++packages.loaded;
  out.Notify(CMD_PACKAGE_LOADED, {});
}

}  // namespace

HandlerRows PackagesHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock PackagesClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
