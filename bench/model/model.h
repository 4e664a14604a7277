// SPDX-License-Identifier: Apache-2.0
// The engine's built-in behaviour as one object: requests and the passing of time in, messages out.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "bench/model/engine_state.h"
#include "bench/model/replies.h"
#include "messages/block_cursor.h"

namespace ventrik::bench {

class Model {
 public:
  // `world` outlives the model.
  explicit Model(const World& world) : state_(world) {}
  // Removes what the testers that it served have left for it to remove.
  ~Model() { RemoveSurfaces(state_); }
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  // Whether some subject answers requests of that number, or takes note of them.
  static bool Handles(std::int32_t request);

  // The messages to send for a request of that client, in order. Any bytes will do; what a request
  // is too short for counts as 0 or empty, and what nobody handles gives nothing.
  std::vector<Outgoing> Handle(ReceivedBlock request, TimePoint now,
                               ClientNumber client = kNoClient);

  // The client is gone, or has shut down: nothing is to be told to it alone any more.
  void Forget(ClientNumber client) { ForgetClient(state_, client); }

  // When Tick wants to be called next; none while nothing is under way.
  std::optional<TimePoint> NextTick() const;

  // Does what is due at `now` and returns what is to be sent.
  std::vector<Outgoing> Tick(TimePoint now);

  EngineState& state() { return state_; }

 private:
  EngineState state_;
};

}  // namespace ventrik::bench
