// SPDX-License-Identifier: Apache-2.0
// A model over the built-in world, whose time is the test's.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "bench/model/model.h"
#include "messages/encoders.h"
#include "messages/message_layout.h"
#include "tests/bench/built_in_world.h"

namespace ventrik::bench {

// What the model sent, decoded.
struct Sent {
  FunctionId id;
  MessageFields fields;
  Audience audience;
  Milliseconds after;
  ClientNumber client;  // of the audience `one`

  template <class Value>
  const Value& Field(std::string_view name) const {
    return Get<Value>(fields, name);
  }
  std::int32_t Number(std::string_view name) const { return Field<std::int32_t>(name); }
  const std::string& Text(std::string_view name) const { return Field<std::string>(name); }
};

class ModelFixture : public ::testing::Test {
 protected:
  // The answers to a request that an encoder of messages/encoders.h made, at the time of the test.
  template <class Request>
  std::vector<Sent> Handle(const Request& request) {
    return Decode(
        model_.Handle({static_cast<const std::uint8_t*>(static_cast<const void*>(request.data())),
                       request.size()},
                      now_, client_));
  }

  // The answers to every beginning of a request, from its number alone to all of it.
  template <class Request>
  std::vector<std::vector<Sent>> HandleEveryPrefix(const Request& request) {
    std::vector<std::vector<Sent>> answers;
    const auto* bytes = static_cast<const std::uint8_t*>(static_cast<const void*>(request.data()));
    for (std::size_t length = 4; length <= request.size(); ++length) {
      answers.push_back(Handle(Block(bytes, bytes + length)));
    }
    return answers;
  }

  // Lets time pass, tick by tick, and returns what was sent meanwhile.
  std::vector<Sent> Pass(Milliseconds time) {
    std::vector<Sent> sent;
    const TimePoint end = now_ + time;
    for (auto next = model_.NextTick(); next && *next <= end; next = model_.NextTick()) {
      now_ = std::max(now_, *next);
      for (Sent& message : Decode(model_.Tick(now_))) sent.push_back(std::move(message));
      EXPECT_TRUE(!model_.NextTick() || *model_.NextTick() > now_) << "a clock that stands still";
      if (HasFailure()) break;
    }
    now_ = end;
    return sent;
  }

  static std::vector<Sent> Decode(const std::vector<Outgoing>& messages) {
    std::vector<Sent> sent;
    for (const Outgoing& message : messages) {
      const Block bytes = message.make ? message.make() : message.block;
      if (message.make && bytes.empty()) continue;
      const ReceivedBlock block{bytes.data(), bytes.size()};
      auto fields = DecodeMessage(block);
      EXPECT_TRUE(fields) << "a message that can't be encoded";
      if (!fields) continue;
      sent.push_back({static_cast<FunctionId>(block.Word(0)), std::move(*fields), message.audience,
                      message.after, message.client});
    }
    return sent;
  }

  EngineState& state() { return model_.state(); }

  TimePoint now_{};
  ClientNumber client_ = 1;  // who sends the requests
  Model model_{BuiltInWorld()};
};

}  // namespace ventrik::bench
