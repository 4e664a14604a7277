// SPDX-License-Identifier: Apache-2.0
#include "bench/model/traffic.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

MessageFields CountFields(const TrafficState& traffic) {
  return {{"tmcInfoChanged", static_cast<std::int32_t>(traffic.events.size())}};
}

void TellCount(const TrafficState& traffic, Replies& out) {
  out.Notify(INFO_TMC_INFO_CHANGED, CountFields(traffic));
}

void TellEventsChanged(EngineState& state, TimePoint now, Replies& out) {
  TellCount(state.traffic, out);
  TellTrafficChanges(state, now, out);
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

void ForgetEvents(EngineState& state, TimePoint now, Replies& out) {
  if (state.traffic.events.empty()) return;
  state.traffic.events.clear();
  TellEventsChanged(state, now, out);
}

void HandleMode(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  TrafficState& traffic = state.traffic;
  traffic.on = Get<std::int32_t>(request, "onOff") == kYes;
  TellMode(traffic, out);
  if (!traffic.on) ForgetEvents(state, now, out);
}

bool IsRouteMode(std::int32_t mode) {
  return (mode >= 0 && mode <= 2) || mode == 4;
}

void HandleRouteMode(EngineState& state, const MessageFields& request, TimePoint now,
                     Replies& out) {
  TrafficState& traffic = state.traffic;
  const auto mode = Get<std::int32_t>(request, "mode");
  const auto threshold = Get<std::int32_t>(request, "delayThreshold");
  if (IsRouteMode(mode) && threshold >= 0) {
    traffic.routeMode = mode;
    traffic.delayThreshold = threshold;
  }
  TellRouteMode(traffic, out);
  TellTrafficChanges(state, now, out);
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

void HandleAvoids(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
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
  TellTrafficChanges(state, now, out);
}

bool IsNotification(std::int32_t mode) {
  return mode == kNotifyOnce || mode == kNotifyOnChange || mode == kNotifyByFrequency;
}

// The answer tells all that is wanted; from then on the mode says what follows.
void HandleNotification(EngineState& state, const MessageFields& request, TimePoint now,
                        Replies& out) {
  TrafficWish wish;
  wish.filter = Get<std::int32_t>(request, "infoFilter");
  wish.mode = Get<std::int32_t>(request, "notificationMode");
  wish.nextReport = now + kTrafficReportPeriod;
  out.Answer(INFO_TMC_INFO_CHANGED, CountFields(state.traffic));
  if (IsNotification(wish.mode)) TellTrafficReport(state, out.requester(), wish, out);
  state.traffic.wishes.erase(out.requester());
  const bool isLasting = wish.mode == kNotifyOnChange || wish.mode == kNotifyByFrequency;
  if (isLasting) state.traffic.wishes.emplace(out.requester(), std::move(wish));
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
    TellEventsChanged(state, now, out);
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

// What the guidance or another subject has changed is due at once.
std::optional<TimePoint> NextTick(const EngineState& state) {
  const TrafficState& traffic = state.traffic;
  if (HasTrafficChanges(state)) return TimePoint();
  std::optional<TimePoint> next;
  for (const auto& [client, wish] : traffic.wishes) {
    if (wish.mode != kNotifyByFrequency) continue;
    next = next ? std::min(*next, wish.nextReport) : wish.nextReport;
  }
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
  TellTrafficChanges(state, now, out);
  for (auto& [client, wish] : traffic.wishes) {
    if (wish.mode != kNotifyByFrequency || now < wish.nextReport) continue;
    wish.nextReport += kTrafficReportPeriod * ((now - wish.nextReport) / kTrafficReportPeriod + 1);
    TellTrafficReport(state, client, wish, out);
  }
}

}  // namespace

void RestoreTraffic(EngineState& state, TimePoint now, Replies& out) {
  ForgetEvents(state, now, out);
  const TrafficState before = std::exchange(state.traffic, {});
  const TrafficState& after = state.traffic;
  if (before.on != after.on) TellMode(after, out);
  if (before.routeMode != after.routeMode || before.delayThreshold != after.delayThreshold) {
    TellRouteMode(after, out);
  }
  if (before.tuningMode != after.tuningMode || before.tuningParameters != after.tuningParameters) {
    TellTuningMode(after, out);
  }
}

HandlerRows TrafficHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock TrafficClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
