// SPDX-License-Identifier: Apache-2.0
// Where the vehicle is, and who is told:
//
// | Request                    | Answer                                                       |
// |----------------------------|--------------------------------------------------------------|
// | REQU_VEH_LOC_INFO_DETAILS  | INFO_VEH_LOC_INFO_DETAILS, and by the mode from then on to   |
// |                            | the same client at each move or every so many seconds; the   |
// |                            | mode once leaves that as it is, any other one ends it        |
// | GPS_DATA                   | none; the vehicle is where it says, unless demo mode is on   |
//
// posInfo: <GEO>longitude latitude<*><CTY>nearest town<*><SPD>km/h<*><HDG>compass degrees<*>, and
// while a guided manoeuvre is near <JVA>its number<*>.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "bench/model/subject.h"
#include "bench/world.h"

namespace ventrik::bench {

// How a client wants to be told.
struct PositionWish {
  std::int32_t mode = 0;   // 2 on change, 4 by frequency
  Milliseconds period{0};  // by frequency
  TimePoint due{};         // by frequency: the next time
};

struct VehicleState {
  Position position{13.41053, 52.52437};  // Berlin, until something moves it
  double speed = 0;                       // metres a second
  double heading = 0;                     // compass degrees

  std::map<ClientNumber, PositionWish> wishes;
  std::optional<TimePoint> fix;  // of the last GPS record
};

struct Motion {
  Position position;
  double speed;    // metres a second
  double heading;  // compass degrees
};

// Puts the vehicle somewhere: tells the recording, and those who want to know on change.
void MoveVehicle(EngineState& state, const Motion& motion, Replies& out);

// What is told about the vehicle; see above.
std::string PositionInfo(const EngineState& state);

HandlerRows VehicleHandlers();
SubjectClock VehicleClock();

}  // namespace ventrik::bench
