// SPDX-License-Identifier: Apache-2.0
// The sending thread: takes messages out of an outbox as they fall due and sends them.
//
// A send waits for its client, so all sending is done here; the receiving thread only posts, and a
// client may answer while it is being answered. The thread sends one message at a time. A client
// that doesn't take a message within 15 seconds is mute from then on: what is due to it is dropped
// until it is heard again (a new session), so that it costs the other clients that one delay only.
//
// Client records are made by the receiving thread and closed by this one, after the last send.
#pragma once

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bench/drop_bursts.h"
#include "bench/outbox.h"
#include "platform/cancellation.h"

namespace ventrik::bench {

class Sender {
 public:
  Sender() = default;
  // Expects the thread ended, or never started. Closes the retired records that are left.
  ~Sender();
  Sender(const Sender&) = delete;
  Sender& operator=(const Sender&) = delete;

  // Called by the thread with each message that its client has taken. Before Start.
  std::function<void(const IpcPeer& client, const Block& block)> onSent;

  // Starts the thread. Returns false if the system has no more threads.
  bool Start();

  // Ends the thread from whatever it is doing; platform::WaitForThreads waits for that. Nothing
  // more is sent but the end of a message whose beginning was taken. Main thread.
  void Stop();

  // As in outbox.h, any thread. What is dropped is reported on standard error by the thread, a line
  // for many (drop_bursts.h). None of these writes or waits, so that the caller may hold a lock.
  void Post(IpcPeer* client, Block block, std::chrono::milliseconds after);
  void Repeat(IpcPeer* client, Block block, std::chrono::milliseconds after,
              std::chrono::milliseconds period);
  void Heard(IpcPeer* client);
  void Retire(IpcPeer* client, bool sendWaiting);

  // Messages that were taken by their clients. Once the thread has ended.
  std::uint64_t sent() const { return sent_; }

  // Reports what was dropped and not reported yet. Once the thread has ended.
  void ReportDrops();

 private:
  static void* Body(void* sender);
  void Run();
  bool WaitForWork(std::optional<Outbox::Task>& task, std::vector<std::string>& reports);
  std::optional<TimePoint> NextWork() const;
  void Send(const Outbox::Task& task, const platform::CancellationDisabled& disabled);

  std::mutex lock_;  // of the next four
  Outbox outbox_;
  DropBursts drops_;
  bool stopping_ = false;
  std::condition_variable changed_;

  pthread_t thread_ = 0;    // main thread
  std::uint64_t sent_ = 0;  // sending thread
};

}  // namespace ventrik::bench
