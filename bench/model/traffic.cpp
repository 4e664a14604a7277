// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

void TellCount(const TrafficState& traffic, Replies& out) {
  out.Notify(INFO_TMC_INFO_CHANGED,
             {{"tmcInfoChanged", static_cast<std::int32_t>(traffic.events.size())}});
}

void TellEventsChanged(EngineState& state, Replies& out) {
  TellCount(state.traffic, out);
  TellTrafficChanges(state, out);
}

void TellMode(const TrafficState& traffic, Replies& out) {
  out.Notify(INFO_TMC_MODE, {{"mode", YesOrNo(traffic.on)}});
}

void TellRouteMode(const TrafficState& traffic, Replies& out) {
  out.Notify(INFO_TMC_ROUTE_MODE,
             {{"mode", traffic.routeMode}, {"delayThreshold", traffic.delayThreshold}});
}

void TellTuningMode(const TrafficState& traffic, Replies& out) {
  out.Notify(INFO_TMC_TUNING_MODE, {{"tmcTuningMode", traffic.tuningMode},
                                    {"tuningParameters", traffic.tuningParameters}});
}

void ForgetEvents(EngineState& state, Replies& out) {
  if (state.traffic.events.empty()) return;
  state.traffic.events.clear();
  TellEventsChanged(state, out);
}

void HandleMode(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  TrafficState& traffic = state.traffic;
  traffic.on = Get<std::int32_t>(request, "onOff") == kYes;
  TellMode(traffic, out);
  if (!traffic.on) ForgetEvents(state, out);
}

bool IsRouteMode(std::int32_t mode) {
  return (mode >= 0 && mode <= 2) || mode == 4;
}

void HandleRouteMode(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  TrafficState& traffic = state.traffic;
  const auto mode = Get<std::int32_t>(request, "mode");
  const auto threshold = Get<std::int32_t>(request, "delayThreshold");
  if (IsRouteMode(mode) && threshold >= 0) {
    traffic.routeMode = mode;
    traffic.delayThreshold = threshold;
  }
  TellRouteMode(traffic, out);
  TellTrafficChanges(state, out);
}

// The events that a request names; all of them if it takes the treatment back and names none.
std::vector<std::int64_t> TreatedEvents(const TrafficState& traffic, TrafficTreatment treatment,
                                        const std::vector<std::string>& names) {
  std::vector<std::int64_t> numbers;
  for (const std::string& name : names) {
    if (const auto number = NamedTrafficEvent(name)) numbers.push_back(*number);
  }
  if (!names.empty() || treatment != TrafficTreatment::usual) return numbers;
  for (const auto& [number, event] : traffic.events) numbers.push_back(number);
  return numbers;
}

void HandleAvoids(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  TrafficState& traffic = state.traffic;
  const auto mode = Get<std::int32_t>(request, "mode");
  if (mode >= 0 && mode <= 2) {
    const auto treatment = static_cast<TrafficTreatment>(mode);
    const auto& names = Get<std::vector<std::string>>(request, "events");
    for (const std::int64_t number : TreatedEvents(traffic, treatment, names)) {
      const auto found = traffic.events.find(number);
      if (found != traffic.events.end()) found->second.treatment = treatment;
    }
  }
  out.Notify(INFO_TMC_AVOIDS_CHANGED, {});
  TellTrafficChanges(state, out);
}

bool IsNotification(std::int32_t mode) {
  return mode == kNotifyOnce || mode == kNotifyOnChange || mode == kNotifyByFrequency;
}

// The answer tells all that is wanted; from then on the mode says what follows.
void HandleNotification(EngineState& state, const MessageFields& request, TimePoint now,
                        Replies& out) {
  TrafficState& traffic = state.traffic;
  const auto mode = Get<std::int32_t>(request, "notificationMode");
  traffic.notificationMode = IsNotification(mode) ? mode : kNotifyOff;
  traffic.infoFilter = Get<std::int32_t>(request, "infoFilter");
  traffic.nextReport = now + kTrafficReportPeriod;
  traffic.told.clear();
  TellCount(traffic, out);
  if (traffic.notificationMode != kNotifyOff) TellTrafficReport(state, out);
}

void HandleTuningMode(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  TrafficState& traffic = state.traffic;
  const auto mode = Get<std::int32_t>(request, "tmcTuningMode");
  const auto& parameters = Get<std::string>(request, "tuningParameters");
  if ((mode == 1 || mode == 2) && parameters.size() <= kLongestTuningParameters) {
    traffic.tuningMode = mode;
    traffic.tuningParameters = parameters;
  }
  TellTuningMode(traffic, out);
}

// Returns false if there is no room for one more.
bool KeepEvent(TrafficState& traffic, TrafficNotice notice, TimePoint now) {
  TrafficEvent& event = notice.event;
  const auto known = traffic.events.find(event.number);
  if (known == traffic.events.end() && traffic.events.size() >= kMostTrafficEvents) return false;
  if (known != traffic.events.end()) event.treatment = known->second.treatment;
  event.end = now + notice.age;
  traffic.events.insert_or_assign(event.number, std::move(event));
  return true;
}

void HandleData(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  TrafficState& traffic = state.traffic;
  auto notice = ParseTrafficNotice(Get<std::string>(request, "text"));
  bool done = notice.has_value() && traffic.on;
  if (done) {
    done = notice->clears ? traffic.events.erase(notice->event.number) > 0
                          : KeepEvent(traffic, std::move(*notice), now);
  }
  if (done) {
    TellEventsChanged(state, out);
  } else {
    ++traffic.refused;
  }
}

void HandleBroadcastData(EngineState& state, const MessageFields&, TimePoint, Replies&) {
  ++state.traffic.rdsBlocks;
}

constexpr HandlerRow kHandlers[] = {
    {REQU_SET_TMC_MODE, HandleMode},          {REQU_SET_TMC_ROUTE_MODE, HandleRouteMode},
    {REQU_TMC_AVOIDS, HandleAvoids},          {REQU_TMC_SET_INFO_NOTIFICATION, HandleNotification},
    {REQU_TMC_TUNING_MODE, HandleTuningMode}, {TMC_DATA, HandleData},
    {RDSTMC_DATA, HandleBroadcastData},
};

bool Reports(const TrafficState& traffic) {
  return traffic.notificationMode == kNotifyByFrequency;
}

// What the guidance or another subject has changed is due at once.
std::optional<TimePoint> NextTick(const EngineState& state) {
  const TrafficState& traffic = state.traffic;
  if (HasTrafficChanges(state)) return TimePoint();
  std::optional<TimePoint> next;
  if (Reports(traffic)) next = traffic.nextReport;
  for (const auto& [number, event] : traffic.events) {
    next = next ? std::min(*next, event.end) : event.end;
  }
  return next;
}

// Returns false if there was none.
bool DropOldEvents(TrafficState& traffic, TimePoint now) {
  const std::size_t before = traffic.events.size();
  for (auto event = traffic.events.begin(); event != traffic.events.end();) {
    event = event->second.end <= now ? traffic.events.erase(event) : std::next(event);
  }
  return traffic.events.size() < before;
}

void Tick(EngineState& state, TimePoint now, Replies& out) {
  TrafficState& traffic = state.traffic;
  if (DropOldEvents(traffic, now)) TellCount(traffic, out);
  TellTrafficChanges(state, out);
  if (!Reports(traffic) || now < traffic.nextReport) return;
  traffic.nextReport +=
      kTrafficReportPeriod * ((now - traffic.nextReport) / kTrafficReportPeriod + 1);
  TellTrafficReport(state, out);
}

}  // namespace

void RestoreTraffic(EngineState& state, Replies& out) {
  ForgetEvents(state, out);
  const TrafficState before = std::exchange(state.traffic, {});
  const TrafficState& now = state.traffic;
  if (before.on != now.on) TellMode(now, out);
  if (before.routeMode != now.routeMode || before.delayThreshold != now.delayThreshold) {
    TellRouteMode(now, out);
  }
  if (before.tuningMode != now.tuningMode || before.tuningParameters != now.tuningParameters) {
    TellTuningMode(now, out);
  }
}

HandlerRows TrafficHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock TrafficClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
