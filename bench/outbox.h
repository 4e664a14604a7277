// SPDX-License-Identifier: Apache-2.0
// What is still to be sent: to whom, and when.
//
// A message is due at a time, and the message that has been due longest comes out first; of those
// due at the same time the one that was posted first. A message that is due later holds nothing up.
// Between clients with nothing else to tell them apart, the one that was known first goes first.
// Time is handed in, nothing here reads a clock, waits or sends. One thread at a time; sender.h has
// the lock.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "bench/model/replies.h"
#include "ipc/ipc.h"

namespace ventrik::bench {

// What may wait for one client; a client that sends without ever receiving must not eat the memory.
// Each message counts with its bytes and what it costs beside them.
inline constexpr std::size_t kMaxWaitingBytes = 64u << 20;
inline constexpr std::size_t kMessageCost = 128;  // bytes, about

// Clients are told apart by their records, which are not looked into.
class Outbox {
 public:
  // What to do next with a client.
  struct Task {
    IpcPeer* client = nullptr;
    std::optional<Block> block;  // to send; none: nothing more is to come, close the record
    std::uint64_t heard = 0;     // for Mute
  };

  // Posts a message. Returns false if it was dropped: the client is mute or retired, or too much
  // waits for it already.
  bool Post(IpcPeer* client, Block block, TimePoint due);

  // Posts `block` at `first` and every `period` from then on. Times that pass while nothing can be
  // sent are left out, not made up for. A client has one repeated message; a second is not taken.
  void Repeat(IpcPeer* client, Block block, TimePoint first, std::chrono::milliseconds period);

  // The client has sent something: what is posted to it from now on is sent again.
  void Heard(IpcPeer* client);

  // The client takes no messages: drops what waits for it and all that comes until it is heard
  // again. Nothing happens if it has been heard since the task with that `heard` was taken. Returns
  // how many were dropped.
  std::size_t Mute(IpcPeer* client, std::uint64_t heard);

  // The client is gone, or talks over another record now: nothing more is taken for it. What waits
  // is still sent if `sendWaiting`; then its last task closes the record.
  void Retire(IpcPeer* client, bool sendWaiting);

  // Takes out what is due at `now`; none if nothing is.
  std::optional<Task> TakeDue(TimePoint now);

  // When the next task is due; none if nothing waits.
  std::optional<TimePoint> NextDue() const;

  // Forgets everything. Returns the retired clients whose records are not closed yet.
  std::vector<IpcPeer*> Clear();

 private:
  struct Repeated {
    Block block;
    TimePoint due;
    std::chrono::milliseconds period;
  };
  struct Lane {
    IpcPeer* client = nullptr;
    std::map<std::pair<TimePoint, std::uint64_t>, Block> waiting;  // by due time, then by number
    std::size_t bytes = 0;                                         // of `waiting`
    std::optional<Repeated> repeated;
    std::uint64_t heard = 0;
    bool mute = false;
    bool retired = false;
  };

  static std::optional<std::pair<TimePoint, std::uint64_t>> FirstDue(const Lane& lane);
  static Block TakeFirst(Lane& lane, TimePoint now);

  Lane& LaneOf(IpcPeer* client);

  std::vector<Lane> lanes_;   // in the order in which their clients became known
  std::uint64_t posted_ = 0;  // numbers the messages
};

}  // namespace ventrik::bench
