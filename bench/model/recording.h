// SPDX-License-Identifier: Apache-2.0
// Recordings of where the vehicle went:
//
// | Request                    | Answer                                                       |
// |----------------------------|--------------------------------------------------------------|
// | REQU_ROUTE_START_RECORDING | RESP_ROUTE_START_RECORDING, invalid if one is under way;     |
// |                            | INFO_ROUTE_RECORDING_ACTIVE 1                                |
// | REQU_ROUTE_STOP_RECORDING  | INFO_ROUTE_RECORDING_ACTIVE 2, and if one was under way      |
// |                            | INFO_ROUTE_RECORDING_COMPLETE:                               |
// |                            | <PATH>name<*><PTS>points<*><LEN>metres<*>                    |
//
// The engine keeps them as long as it runs; a new trip can be made of each by its name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/model/subject.h"
#include "bench/world.h"

namespace ventrik::bench {

inline constexpr std::size_t kMostRecordings = 20;       // kept; then the oldest one goes
inline constexpr std::size_t kMostRecordedPoints = 500;  // of one; then every second one goes

struct Recording {
  std::string path;              // "route-1.rec", counted from 1
  std::vector<Position> points;  // at least the one where it began
  double length = 0;             // metres, of the way that was gone
};

struct RecordingState {
  std::optional<Recording> running;
  Position last;                // where the vehicle was told to be last, while one is running
  double spacing = 10;          // metres between two recorded points, at least
  std::vector<Recording> kept;  // the oldest first
  std::int32_t begun = 0;       // recordings
};

// The kept recording that a text names, which is its path or holds it as <PATH>; null if there is
// none. Valid until a recording ends.
const Recording* FindRecording(const RecordingState& recording, std::string_view text);

// Tells the recording that the vehicle is at `position`.
void RecordPosition(RecordingState& recording, const Position& position);

// Forgets all recordings, and tells everyone if one was under way.
void RestoreRecording(EngineState& state, Replies& out);

HandlerRows RecordingHandlers();

}  // namespace ventrik::bench
