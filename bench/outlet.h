// SPDX-License-Identifier: Apache-2.0
// The way of every message from the engine's answers to the sending thread, and the place where
// faults come in.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "bench/fault.h"
#include "bench/sender.h"

namespace ventrik::bench {

class Outlet {
 public:
  // `sender` outlives it.
  explicit Outlet(Sender& sender) : sender_(sender) {}

  // Takes the faults that strike answers; others are left out. Before anything is posted.
  void Arm(const std::vector<Fault>& faults, std::uint32_t seed);

  // Posts the message, or what the faults make of it. Each fault strikes in its turn, in the order
  // of the command line. Any thread.
  void Post(IpcPeer* client, Block block, std::chrono::milliseconds after);

  // The faults that struck, with how often, as "drop 3, late 1"; empty if none. Any thread.
  std::string FaultsDone() const;

 private:
  struct Parcel {
    Block block;
    std::chrono::milliseconds after;
    std::int32_t copies = 1;
  };

  void ApplyFaults(Parcel& parcel);
  static void Commit(ArmedFault& fault, Parcel& parcel);

  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  Sender& sender_;
  mutable std::mutex lock_;  // of the faults
  std::vector<ArmedFault> faults_;
};

}  // namespace ventrik::bench
