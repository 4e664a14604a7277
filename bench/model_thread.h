// SPDX-License-Identifier: Apache-2.0
// The model at work: requests go in, its messages go to the sending thread, and a thread of its own
// lets time pass for it.
//
// One lock is held around the model and around posting what comes of it, so that nothing is posted
// to a client that is being forgotten. It is taken before the sending thread's own lock.
#pragma once

#include <pthread.h>

#include <condition_variable>
#include <mutex>
#include <set>
#include <vector>

#include "bench/model/model.h"
#include "bench/outlet.h"

namespace ventrik::bench {

class ModelThread {
 public:
  // `world` and `outlet` outlive it.
  ModelThread(const World& world, Outlet& outlet) : model_(world), outlet_(outlet) {}
  // Expects the thread ended, or never started.
  ~ModelThread() = default;
  ModelThread(const ModelThread&) = delete;
  ModelThread& operator=(const ModelThread&) = delete;

  // The model's state, to be set up. Before Start.
  EngineState& state() { return model_.state(); }

  // Starts the thread. Returns false if the system has no more threads.
  bool Start();

  // Ends the thread; platform::WaitForThreads waits for that. Main thread.
  void Stop();

  // Lets the model answer. Receiving thread.
  void Handle(IpcPeer* client, ReceivedBlock request);

  // A message that the model is not to see: all that it does is to begin or end the time in which
  // the client is told what everybody is told. Receiving thread.
  void Skip(IpcPeer* client, ReceivedBlock message);

  // Nothing more is to be posted to this client. Receiving thread.
  void Forget(IpcPeer* client);

 private:
  static void* Body(void* self);
  void Run();
  void Post(IpcPeer* requester, std::vector<Outgoing> messages);

  std::mutex lock_;  // of all below but the thread
  Model model_;
  std::set<IpcPeer*> sessions_;  // clients between REQU_INIT and REQU_SHUTDOWN
  bool stopping_ = false;
  std::condition_variable changed_;

  Outlet& outlet_;
  pthread_t thread_ = 0;  // main thread
};

}  // namespace ventrik::bench
