// SPDX-License-Identifier: Apache-2.0
// The model at work: requests go in, its messages go to the sending thread, and a thread of its own
// lets time pass for it.
//
// One lock is held around the model and around posting what comes of it, so that nothing is posted
// to a client that is being forgotten. It is taken before the locks of the outlet, the sending
// thread and the reports. Nothing is written under it: answers that need a file are made without
// it, and reports and strikes are told behind it.
#pragma once

#include <pthread.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "bench/model/model.h"
#include "bench/outlet.h"
#include "state/guarded.h"

namespace ventrik::bench {

class ModelThread {
 public:
  // `world` and `outlet` outlive it.
  ModelThread(const World& world, Outlet& outlet);
  // Expects the thread ended, or never started.
  ~ModelThread() = default;
  ModelThread(const ModelThread&) = delete;
  ModelThread& operator=(const ModelThread&) = delete;

  // Where the model's pictures go, as in EngineState. Before Start.
  void UseFolders(const std::string& pictures, const std::string& overlays);

  // Starts the thread. Returns false if the system has no more threads.
  bool Start();

  // Ends the thread; platform::WaitForThreads waits for that. Main thread.
  void Stop();

  // A client has connected. Those who are told what everybody is told are told in the order in
  // which they have. Receiving thread.
  void Connected(IpcPeer* client);

  // Lets the model answer. Receiving thread.
  void Handle(IpcPeer* client, ReceivedBlock request);

  // A message that the model is not to see: all that it does is to begin or end the time in which
  // the client is told what everybody is told. Receiving thread.
  void Skip(IpcPeer* client, ReceivedBlock message);

  // Nothing more is to be posted to this client. Receiving thread.
  void Forget(IpcPeer* client);

  // Everything that the model knows is as at its start. Receiving thread.
  void Restart();

 private:
  struct Client {
    IpcPeer* record;
    ClientNumber number;
    bool isInSession = false;  // between REQU_INIT and REQU_SHUTDOWN
  };

  static void* Body(void* self);
  void Run();
  void StartModel();
  ClientNumber NumberOf(IpcPeer* client) const;
  void SetSession(IpcPeer* client, bool isInSession);
  void Post(IpcPeer* requester, std::vector<Outgoing> messages);
  void Finish(IpcPeer* requester, std::vector<Outgoing> messages);
  void Tell();

  const World& world_;
  std::string pictureFolder_;
  std::string overlayFolder_;
  Guarded<std::vector<std::string>> reports_;  // not written yet

  std::mutex lock_;  // of all below but the thread
  std::optional<Model> model_;
  std::vector<Client> clients_;  // in the order in which they connected
  ClientNumber connected_ = kNoClient;
  bool stopping_ = false;
  std::condition_variable changed_;

  Outlet& outlet_;
  pthread_t thread_ = 0;  // main thread
};

}  // namespace ventrik::bench
