// SPDX-License-Identifier: Apache-2.0
#include "bench/model/model.h"

#include <algorithm>

#include "bench/model/locations.h"
#include "messages/message_layout.h"

namespace ventrik::bench {
namespace {

constexpr HandlerRows (*kHandlers[])() = {
    SystemHandlers, SettingsHandlers, SearchesHandlers, LocationsHandlers, DataSourcesHandlers,
    AudioHandlers,  TripsHandlers,    GuidanceHandlers, VehicleHandlers,   RecordingHandlers,
    MapsHandlers,   OverlaysHandlers, TrafficHandlers,  UpdatesHandlers,   PackagesHandlers,
};

constexpr SubjectClock (*kClocks[])() = {
    AudioClock,    TripsClock,   GuidanceClock, VehicleClock,  MapsClock,
    OverlaysClock, TrafficClock, UpdatesClock,  PackagesClock,
};

const HandlerRow* FindHandler(std::int32_t request) {
  for (const auto handlers : kHandlers) {
    const HandlerRows rows = handlers();
    const HandlerRow* found = std::find_if(
        rows.begin, rows.end, [request](const HandlerRow& row) { return row.request == request; });
    if (found != rows.end) return found;
  }
  return nullptr;
}

}  // namespace

bool Model::Handles(std::int32_t request) {
  return FindHandler(request) != nullptr;
}

std::vector<Outgoing> Model::Handle(ReceivedBlock request, TimePoint now, ClientNumber client) {
  const HandlerRow* row = FindHandler(request.Word(0));
  const auto fields = DecodeMessage(request);
  if (row == nullptr || !fields) return {};
  Replies out(client);
  row->handle(state_, *fields, now, out);
  return out.Take();
}

std::optional<TimePoint> Model::NextTick() const {
  std::optional<TimePoint> next;
  for (const auto clock : kClocks) {
    const SubjectClock subject = clock();
    const auto due = subject.next ? subject.next(state_) : std::nullopt;
    if (due && (!next || *due < *next)) next = due;
  }
  return next;
}

std::vector<Outgoing> Model::Tick(TimePoint now) {
  Replies out;
  for (const auto clock : kClocks) {
    const SubjectClock subject = clock();
    if (subject.tick) subject.tick(state_, now, out);
  }
  return out.Take();
}

}  // namespace ventrik::bench
