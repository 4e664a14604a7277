// SPDX-License-Identifier: Apache-2.0
#include "bench/model/recording.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

constexpr double kFirstSpacing = 10;  // metres

// Leaves out every second point, but neither the first nor the last.
void Thin(std::vector<Position>& points) {
  std::vector<Position> fewer;
  for (std::size_t index = 0; index < points.size(); ++index) {
    if (index % 2 == 0 || index + 1 == points.size()) fewer.push_back(points[index]);
  }
  points = std::move(fewer);
}

std::string DetailsOf(const Recording& recording) {
  std::string details;
  AppendEis(details, "PATH", recording.path);
  AppendEis(details, "PTS", std::to_string(recording.points.size()));
  AppendEis(details, "LEN", std::to_string(static_cast<std::int64_t>(recording.length)));
  return details;
}

void NotifyActive(const RecordingState& recording, Replies& out) {
  out.Notify(INFO_ROUTE_RECORDING_ACTIVE,
             {{"routeRecordingActive", YesOrNo(recording.running.has_value())}});
}

void HandleStart(EngineState& state, const MessageFields&, TimePoint, Replies& out) {
  RecordingState& recording = state.recording;
  const bool isFree = !recording.running;
  if (isFree) {
    const std::string path = "route-" + std::to_string(++recording.begun) + ".rec";
    recording.last = state.vehicle.position;
    recording.spacing = kFirstSpacing;
    recording.running = Recording{path, {recording.last}, 0};
  }
  out.Answer(RESP_ROUTE_START_RECORDING, {{"validState", YesOrNo(isFree)}});
  NotifyActive(recording, out);
}

void HandleStop(EngineState& state, const MessageFields&, TimePoint, Replies& out) {
  RecordingState& recording = state.recording;
  std::optional<Recording> done = std::exchange(recording.running, std::nullopt);
  NotifyActive(recording, out);
  if (!done) return;
  if (DistanceMetres(done->points.back(), recording.last) > 0) {
    done->points.push_back(recording.last);
  }
  out.Notify(INFO_ROUTE_RECORDING_COMPLETE, {{"detailsEIS", DetailsOf(*done)}});
  if (recording.kept.size() == kMostRecordings) recording.kept.erase(recording.kept.begin());
  recording.kept.push_back(std::move(*done));
}

constexpr HandlerRow kHandlers[] = {
    {REQU_ROUTE_START_RECORDING, HandleStart},
    {REQU_ROUTE_STOP_RECORDING, HandleStop},
};

}  // namespace

const Recording* FindRecording(const RecordingState& recording, std::string_view text) {
  const std::string_view path = FindEis(ParseEis(text), "PATH").value_or(text);
  const auto found = std::find_if(recording.kept.begin(), recording.kept.end(),
                                  [path](const Recording& each) { return each.path == path; });
  return found == recording.kept.end() ? nullptr : &*found;
}

void RecordPosition(RecordingState& recording, const Position& position) {
  if (!recording.running) return;
  Recording& running = *recording.running;
  running.length += DistanceMetres(recording.last, position);
  recording.last = position;
  if (DistanceMetres(running.points.back(), position) < recording.spacing) return;
  running.points.push_back(position);
  if (running.points.size() < kMostRecordedPoints) return;
  Thin(running.points);
  recording.spacing *= 2;
}

void RestoreRecording(EngineState& state, Replies& out) {
  RecordingState& recording = state.recording;
  recording.kept.clear();
  if (!recording.running) return;
  recording.running.reset();
  NotifyActive(recording, out);
}

HandlerRows RecordingHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
