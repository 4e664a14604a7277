// SPDX-License-Identifier: Apache-2.0
// Where the vehicle is, and who is told:
//
// | Request                    | Answer                                                       |
// |----------------------------|--------------------------------------------------------------|
// | REQU_VEH_LOC_INFO_DETAILS  | INFO_VEH_LOC_INFO_DETAILS: to the requester once, or now and |
// |                            | from then on to everyone, at each move or every so many      |
// |                            | seconds; any other mode ends that and has no answer          |
// | GPS_DATA                   | none; the vehicle is where it says, unless demo mode is on   |
//
// posInfo: <GEO>longitude latitude<*><CTY>nearest town<*><SPD>km/h<*><HDG>compass degrees<*>, and
// while a guided manoeuvre is near <JVA>its number<*>.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bench/model/subject.h"
#include "bench/world.h"

namespace ventrik::bench {

struct VehicleState {
  Position position{13.41053, 52.52437};  // Berlin, until something moves it
  double speed = 0;                       // metres a second
  double heading = 0;                     // compass degrees

  std::int32_t notification = 0;  // 2 on change, 4 by frequency, 0 none
  Milliseconds period{0};         // by frequency
  TimePoint due{};                // by frequency: the next time
  std::optional<TimePoint> fix;   // of the last GPS record
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
