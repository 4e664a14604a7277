// SPDX-License-Identifier: Apache-2.0
// How the model is taken apart: each subject (search, trips, traffic, ...) has a table of the
// requests that it answers and, if it does something by itself, a clock.
//
// Handlers and clocks change the state and collect what is to be sent. Time is handed in; nothing
// here reads a clock, waits or sends. One thread at a time.
#pragma once

#include <optional>

#include "bench/model/replies.h"

namespace ventrik::bench {

struct EngineState;

// Answers one kind of request.
struct HandlerRow {
  FunctionId request;
  void (*handle)(EngineState& state, const MessageFields& request, TimePoint now, Replies& out);
};

// What a subject does when its time has come.
struct SubjectClock {
  // When it wants to be called next; none while nothing is under way.
  std::optional<TimePoint> (*next)(const EngineState& state);
  // Does everything that is due at `now`.
  void (*tick)(EngineState& state, TimePoint now, Replies& out);
};

struct HandlerRows {
  const HandlerRow* begin;
  const HandlerRow* end;
};

}  // namespace ventrik::bench
