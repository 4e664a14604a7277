// SPDX-License-Identifier: Apache-2.0
// The bench engine: a navigation server over the server half of ipc/.
//
// Two threads. The receiving thread, here, takes one message after the other, records it and posts
// what the scenario and the built-in answers have for it, in this order; the sending thread
// (sender.h) sends what was posted. The main thread starts them and ends them.
//
// A client is known by its process. One that connects anew is answered over its new record; the old
// one is given up once what still waits for it has been sent. Records of processes that are gone
// are given up with all that waits for them. Both leave the server's list on the receiving thread,
// the only one that reads it, and are closed on the sending thread.
#pragma once

#include <pthread.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "bench/options.h"
#include "bench/recorder.h"
#include "bench/scenario.h"
#include "bench/sender.h"
#include "bench/world.h"
#include "ipc/ipc.h"
#include "platform/cancellation.h"

namespace ventrik::bench {

inline constexpr std::uint32_t kMaxPayload = 1u << 20;  // bytes; a longer message is refused,
inline constexpr int kTooLong = 90;                     // with this error

class Engine {
 public:
  // `world` outlives the engine.
  Engine(const Options& options, const World& world);
  // Expects the engine stopped, or never started.
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // Reads the scenario, creates the recording, takes the name and starts both threads. On failure
  // returns false with the reason in `error`; then only the destructor may be called.
  bool Start(std::string& error);

  // Ends both threads from whatever they are doing. Returns whether they have ended; if not, within
  // ten seconds, because a disk or a terminal holds them up, the engine must not be destroyed.
  // Either way nobody can connect any more, and the name and the sockets are gone.
  bool Stop();

  // One line of what was done. Once stopped.
  std::string Summary() const;

 private:
  static void OnConnect(IpcPeer& client, void* engine);
  static void* Body(void* engine);
  void Run();
  void Handle(IpcMessage* message, const platform::CancellationDisabled& disabled);
  std::optional<Block> Read(IpcMessage* message, const platform::CancellationDisabled& disabled);
  void Answer(IpcPeer* client, ReceivedBlock request);
  void PruneClients();

  const Options options_;
  const World& world_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  IpcServer* server_ = nullptr;
  pthread_t thread_ = 0;  // main thread
  Sender sender_;

  // Receiving thread, once it runs.
  Scenario scenario_;
  Recorder recorder_;
  bool clientsChanged_ = false;  // since the last pruning
  std::uint64_t received_ = 0;   // messages
  std::uint64_t connected_ = 0;  // handshakes
};

}  // namespace ventrik::bench
