// SPDX-License-Identifier: Apache-2.0
// What the engine's model wants sent: the answers to a request, and what everybody is told.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "messages/function_ids.h"
#include "messages/message_layout.h"

namespace ventrik::bench {

using Block = std::vector<std::uint8_t>;  // one whole message
using TimePoint = std::chrono::steady_clock::time_point;
using Milliseconds = std::chrono::milliseconds;

// What an answer takes, as from a real engine. In a batch file it is also the time in which the
// line behind a request, a `waitresp`, gets to be read before the response comes.
inline constexpr Milliseconds kAnswerTime{20};

// The most that a tester receives in one message. An answer that would be longer, because it
// repeats a long request, goes without what it repeats.
inline constexpr std::size_t kMaxAnswer = 511'999;  // bytes

// Words that mean yes or no, valid or invalid, on or off.
inline constexpr std::int32_t kYes = 1;
inline constexpr std::int32_t kNo = 2;
constexpr std::int32_t YesOrNo(bool yes) {
  return yes ? kYes : kNo;
}

enum class Audience {
  requester,  // the client that sent the request; nobody, if none did
  everyone,   // every client that has sent REQU_INIT and not REQU_SHUTDOWN since
  one,        // the client of the number, as long as it is there
};

// Tells the clients apart that want to be told of something by themselves.
using ClientNumber = std::uint64_t;
inline constexpr ClientNumber kNoClient = 0;

struct Outgoing {
  Audience audience;
  Milliseconds after;  // since the request, or since the moment that had come
  Block block;
  std::function<Block()> make = nullptr;  // if there is one: makes the block, to be called once,
                                          // without the model, which doesn't wait for a disk; a
                                          // block without bytes isn't sent
  ClientNumber client = kNoClient;        // of the audience `one`
};

// Collects them in order. Fields are named as in messages/layout_table.cpp; those left out are 0 or
// empty. A wrong name or kind is an error of the caller and gives a message without that field's
// block: the tests encode every one.
class Replies {
 public:
  explicit Replies(ClientNumber requester = kNoClient) : requester_(requester) {}

  // Who sent the request; kNoClient while time passes.
  ClientNumber requester() const { return requester_; }

  // To the requester. The fields named in `repeated` are emptied if the message got too long.
  void Answer(FunctionId id, MessageFields fields,
              const std::vector<std::string_view>& repeated = {});

  // To the requester: what `fields` gives, which is called when the model has been left, and may
  // block. It must not refer to the model's state.
  void AnswerLater(FunctionId id, std::function<MessageFields()> fields,
                   std::vector<std::string_view> repeated);

  // Nothing is sent: `work` is called when the model has been left, and may block. It must not
  // refer to the model's state.
  void DoLater(std::function<void()> work);

  // To everyone.
  void Notify(FunctionId id, const MessageFields& fields, Milliseconds after = kAnswerTime);

  // To one client.
  void Tell(ClientNumber client, FunctionId id, const MessageFields& fields);

  // Hands out what was collected, and forgets it.
  std::vector<Outgoing> Take();

 private:
  ClientNumber requester_;
  std::vector<Outgoing> messages_;
};

// The value of a request's field, which must exist and be of that kind.
template <class Value>
const Value& Get(const MessageFields& fields, std::string_view name) {
  return std::get<Value>(*FindField(fields, name));
}

}  // namespace ventrik::bench
