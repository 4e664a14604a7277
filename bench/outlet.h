// SPDX-License-Identifier: Apache-2.0
// The way of every message from the engine's answers to the sending thread, and the place where
// faults come in.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "bench/fault.h"
#include "bench/losses.h"
#include "bench/sender.h"

namespace ventrik::bench {

class Outlet {
 public:
  // `sender` outlives it.
  explicit Outlet(Sender& sender) : sender_(sender) {}

  // Takes the faults that strike answers; others are left out. Before anything is posted.
  void Arm(const std::vector<Fault>& faults, std::uint32_t seed);

  // Is told of the faults that struck. Before anything is posted.
  std::function<void(const Strike&)> onStrike;

  // Posts the message, or what the faults make of it. Each fault strikes in its turn, in the order
  // of the command line. Any thread; writes nothing, so that its caller may hold a lock.
  void Post(IpcPeer* client, Block block, std::chrono::milliseconds after);

  // Tells onStrike what has struck since the last time. Expects no lock held; any thread.
  void TellStrikes();

  // The faults that struck, with how often, as "drop 3, late 1"; empty if none. Any thread.
  std::string FaultsDone() const;

  // The messages that faults kept from being sent, as Losses::Lines. Any thread.
  std::vector<std::string> Lost() const;

 private:
  struct Parcel {
    Block block;
    std::chrono::milliseconds after;
    std::int32_t copies = 1;
  };

  void ApplyFaults(const IpcPeer& client, Parcel& parcel);
  static void Commit(ArmedFault& fault, Parcel& parcel);

  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Sender& sender_;
  mutable std::mutex lock_;  // of all below
  std::vector<ArmedFault> faults_;
  std::vector<Strike> strikes_;  // not told yet
  Losses lost_;
};

}  // namespace ventrik::bench
