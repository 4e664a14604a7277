// SPDX-License-Identifier: Apache-2.0
// The scenario at work: what clients do goes in, its messages go to the sending thread, and a
// thread of its own sees to what is sent every period.
//
// One lock is held around the scenario and around posting what comes of it, so that nothing is
// posted to a client that is being forgotten. It is taken before the locks of the outlet and the
// sending thread; nothing is written under it.
#pragma once

#include <pthread.h>

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bench/outlet.h"
#include "bench/scenario_run.h"

namespace ventrik::bench {

class ScenarioThread {
 public:
  // What the engine must know of a message that was handled.
  struct Handled {
    bool isRuled;     // some rule was set off
    bool isInstead;   // the engine's own answer is left out
    bool isAnswered;  // some rule sends something
  };

  // `outlet` outlives it. Without a scenario nothing happens.
  explicit ScenarioThread(Outlet& outlet) : outlet_(outlet) {}
  // Expects the thread ended, or never started.
  ~ScenarioThread() = default;
  ScenarioThread(const ScenarioThread&) = delete;
  ScenarioThread& operator=(const ScenarioThread&) = delete;

  // The scenario to follow, as in ScenarioRun. Before Start.
  void Use(Scenario scenario, std::uint32_t seed) { run_.emplace(std::move(scenario), seed); }

  // Starts the thread. Returns false if the system has no more threads.
  bool Start();

  // Ends the thread; platform::WaitForThreads waits for that. Main thread.
  void Stop();

  // Posts what is due to a client that has connected, or that has sent this message. Periods begin
  // at REQU_INIT and end at REQU_SHUTDOWN. Receiving thread.
  void Connected(IpcPeer* client);
  Handled Handle(IpcPeer* client, ReceivedBlock message);

  // Nothing more is to be posted to this client. Receiving thread.
  void Forget(IpcPeer* client);

  // As in ScenarioRun. Once the thread has ended.
  std::vector<std::string> NeverSetOff() const;

 private:
  static void* Body(void* self);
  void Run();
  void Post(IpcPeer* client, std::vector<ScenarioRun::Post> posts);

  std::mutex lock_;  // of all below but the thread
  std::optional<ScenarioRun> run_;
  bool stopping_ = false;
  std::condition_variable changed_;

  Outlet& outlet_;
  pthread_t thread_ = 0;  // main thread
};

}  // namespace ventrik::bench
