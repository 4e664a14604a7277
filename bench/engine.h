// SPDX-License-Identifier: Apache-2.0
// The bench engine: a navigation server over the server half of ipc/.
//
// Four threads. The receiving thread, here, takes one message after the other, records it and posts
// what the scenario and the model have for it, in this order; the threads of the scenario and of
// the model (scenario_thread.h, model_thread.h) post what time brings; the sending thread
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
#include <vector>

#include "bench/losses.h"
#include "bench/message_log.h"
#include "bench/model_thread.h"
#include "bench/options.h"
#include "bench/recorder.h"
#include "bench/request_faults.h"
#include "bench/scenario_thread.h"
#include "bench/sender.h"
#include "bench/tally.h"
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

  // Reads the scenario, creates the recording, takes the name and starts the threads. On failure
  // returns false with the reason in `error`; then only the destructor may be called.
  bool Start(std::string& error);

  // Ends the threads from whatever they are doing. Returns whether they have ended; if not, within
  // ten seconds, because a disk or a terminal holds them up, the engine must not be destroyed.
  // Either way nobody can connect any more, and the name and the sockets are gone.
  bool Stop();

  // One line of what was done. Once stopped.
  std::string Summary() const;

  // A line for each kind of message, as Tally::Table. Once stopped.
  std::string Table() const { return tally_.Table(); }

  // What came to nothing, one line each: the rules of the scenario that were never set off; the
  // requests that neither a rule nor the model had anything for, that a rule took and sent nothing
  // for, or that a fault kept from being read; the messages that a fault kept from being sent. And
  // the faults that struck. Once stopped.
  //   "never set off: demo.json:7: rules[2] on REQU_INIT"    "not answered: 3 of REQU_BLOCK_ROUTE"
  //   "not answered: 1 of REQU_INIT, struck by unread"       "not sent: 2 of RESP_INIT, struck by
  //   drop"    "faults: unread 1, drop 2"
  std::vector<std::string> Remarks() const;

  // The seed of everything that is left to chance; none if nothing is. Once started.
  std::optional<std::uint32_t> ChanceSeed() const;

 private:
  bool UseScenario(std::string& error);
  static int OnHandshake(void* engine);
  static void OnConnect(IpcPeer& client, void* engine);
  static void* Body(void* engine);
  void Run();
  void HandleWithFaults(IpcMessage* message, const platform::CancellationDisabled& disabled);
  void Handle(IpcMessage* message, const platform::CancellationDisabled& disabled);
  std::optional<Block> Read(IpcMessage* message, const platform::CancellationDisabled& disabled);
  void Answer(IpcPeer* client, ReceivedBlock request);
  void TakeLateEndMarkers();
  void PruneClients();
  void GiveUp(IpcPeer** link, bool sendWaiting);
  IpcServer* OpenServer();
  IpcMessage* Accept(const platform::CancellationDisabled& disabled);
  void Die(const platform::CancellationDisabled& disabled);
  void NoteStrike(const Strike& strike);
  void Note(Direction direction, std::uint32_t process, ReceivedBlock block);
  std::chrono::milliseconds SinceStart() const;

  const Options options_;
  const std::uint32_t seed_;
  MessageLog log_;  // both threads that pass messages
  Tally tally_;     // the same
  bool usesChance_ = false;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  IpcServer* server_ = nullptr;
  pthread_t thread_ = 0;  // main thread
  Sender sender_;
  Outlet outlet_{sender_};
  ModelThread model_;
  ScenarioThread scenario_;

  // Receiving thread, once it runs.
  Losses unanswered_;
  Recorder recorder_;
  RequestFaults requestFaults_;
  bool ending_ = false;          // a REQU_SHUTDOWN has set the alarm clock
  bool looksAgain_ = false;      // for clients that have just gone
  int lateEndMarkers_ = 0;       // of messages that were given up
  std::uint64_t connected_ = 0;  // handshakes
};

}  // namespace ventrik::bench
