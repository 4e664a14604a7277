// SPDX-License-Identifier: Apache-2.0
#include "bench/model/vehicle.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "bench/eis.h"
#include "bench/model/engine_state.h"
#include "bench/search.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kOnce = 1;
constexpr std::int32_t kOnChange = 2;
constexpr std::int32_t kByFrequency = 4;
constexpr std::int32_t kLongestPeriod = 86'400;  // seconds

constexpr double kTopSpeed = 70;  // metres a second; a jump between two fixes is no drive

MessageFields PositionFields(const EngineState& state) {
  return {{"posInfo", PositionInfo(state)}};
}

void TellPosition(const EngineState& state, ClientNumber client, Replies& out) {
  out.Tell(client, INFO_VEH_LOC_INFO_DETAILS, PositionFields(state));
}

void HandleNotification(EngineState& state, const MessageFields& request, TimePoint now,
                        Replies& out) {
  const auto mode = Get<std::int32_t>(request, "notificationMode");
  out.Answer(INFO_VEH_LOC_INFO_DETAILS, PositionFields(state));
  if (mode == kOnce) return;
  auto& wishes = state.vehicle.wishes;
  wishes.erase(out.requester());
  if (mode != kOnChange && mode != kByFrequency) return;
  const auto seconds = std::clamp(Get<std::int32_t>(request, "number"), 1, kLongestPeriod);
  const Milliseconds period{std::int64_t{seconds} * 1000};
  wishes[out.requester()] = {mode, period, now + period};
}

std::optional<TimePoint> NextNotification(const EngineState& state) {
  std::optional<TimePoint> next;
  for (const auto& [client, wish] : state.vehicle.wishes) {
    if (wish.mode == kByFrequency && (!next || wish.due < *next)) next = wish.due;
  }
  return next;
}

// Times that nobody was there for are left out, not made up for.
void NotifyIfDue(EngineState& state, TimePoint now, Replies& out) {
  for (auto& [client, wish] : state.vehicle.wishes) {
    if (wish.mode != kByFrequency || wish.due > now) continue;
    wish.due += wish.period;
    if (wish.due <= now) wish.due = now + wish.period;
    TellPosition(state, client, out);
  }
}

// ---- GPS records

// A signed 32-bit number, the low byte first, in hundred-thousandths of a degree; none if the
// bytes end before it or it is beyond the limit.
std::optional<double> Degrees(const std::string& bytes, std::size_t offset, double limit) {
  const ReceivedBlock block{
      static_cast<const std::uint8_t*>(static_cast<const void*>(bytes.data())), bytes.size()};
  if (offset + 4 > bytes.size()) return std::nullopt;
  const double degrees = block.Word(offset / 4) / 100000.0;
  if (std::fabs(degrees) > limit) return std::nullopt;
  return degrees;
}

void HandleGps(EngineState& state, const MessageFields& request, TimePoint now, Replies& out) {
  const auto& body = Get<std::string>(request, "body");
  const auto latitude = Degrees(body, 12, 90);
  const auto longitude = Degrees(body, 16, 180);
  if (!latitude || !longitude || state.guidance.demo) return;

  VehicleState& vehicle = state.vehicle;
  const Position position{*longitude, *latitude};
  const double metres = DistanceMetres(vehicle.position, position);
  const double seconds =
      vehicle.fix ? std::chrono::duration<double>(now - *vehicle.fix).count() : 0;
  const double speed = seconds > 0 ? std::min(metres / seconds, kTopSpeed) : 0;
  const double heading = metres > 0 ? Bearing(vehicle.position, position) : vehicle.heading;
  vehicle.fix = now;
  DriveVehicle(state, {position, speed, heading}, now, out);
}

constexpr HandlerRow kHandlers[] = {
    {REQU_VEH_LOC_INFO_DETAILS, HandleNotification},
    {GPS_DATA, HandleGps},
};

}  // namespace

void MoveVehicle(EngineState& state, const Motion& motion, Replies& out) {
  VehicleState& vehicle = state.vehicle;
  const bool hasMoved = DistanceMetres(vehicle.position, motion.position) > 0;
  vehicle.position = motion.position;
  vehicle.speed = motion.speed;
  vehicle.heading = motion.heading;
  if (!hasMoved) return;
  RecordPosition(state.recording, motion.position);
  for (const auto& [client, wish] : vehicle.wishes) {
    if (wish.mode == kOnChange) TellPosition(state, client, out);
  }
}

std::string PositionInfo(const EngineState& state) {
  const VehicleState& vehicle = state.vehicle;
  std::string info;
  AppendEis(info, "GEO", PositionText(vehicle.position));
  info += Details(state.world, info, {"CTY"}).outputEis;
  AppendEis(info, "SPD", std::to_string(std::lround(vehicle.speed * 3.6)));
  AppendEis(info, "HDG", std::to_string(std::lround(vehicle.heading) % 360));
  if (const auto junction = NearJunction(state)) AppendEis(info, "JVA", std::to_string(*junction));
  return info;
}

HandlerRows VehicleHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock VehicleClock() {
  return {NextNotification, NotifyIfDue};
}

}  // namespace ventrik::bench
