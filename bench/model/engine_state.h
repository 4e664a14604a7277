// SPDX-License-Identifier: Apache-2.0
// Everything that the model knows, subject by subject. Plain data; one engine has one, whatever the
// number of its clients.
#pragma once

#include <functional>
#include <string>

#include "bench/model/audio.h"
#include "bench/model/data_sources.h"
#include "bench/model/guidance.h"
#include "bench/model/maps.h"
#include "bench/model/overlays.h"
#include "bench/model/packages.h"
#include "bench/model/recording.h"
#include "bench/model/searches.h"
#include "bench/model/settings.h"
#include "bench/model/system.h"
#include "bench/model/traffic.h"
#include "bench/model/trips.h"
#include "bench/model/updates.h"
#include "bench/model/vehicle.h"
#include "bench/world.h"

namespace ventrik::bench {

struct EngineState {
  explicit EngineState(const World& places) : world(places) {}

  const World& world;         // outlives the state
  std::string pictureFolder;  // where screen shots go; empty: they are refused
  std::string overlayFolder;  // where overlay surfaces go as pictures; empty: nowhere

  // A line for the person at the engine. May be called by any thread, and writes nothing at once.
  std::function<void(const std::string& text)> report = [](const std::string&) {};

  SettingsState settings;
  DataSourcesState dataSources;
  AudioState audio;
  TripsState trips;
  GuidanceState guidance;
  VehicleState vehicle;
  RecordingState recording;
  MapsState maps;
  OverlaysState overlays;
  TrafficState traffic;
  UpdatesState updates;
  PackagesState packages;
};

}  // namespace ventrik::bench
