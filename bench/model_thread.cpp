// SPDX-License-Identifier: Apache-2.0
// Cancellation: the thread is closed to it; a wait on a condition variable must not be cancelled,
// so Stop() wakes it up instead.
#include "bench/model_thread.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "bench/report.h"
#include "messages/function_ids.h"
#include "platform/cancellation.h"
#include "platform/thread_start.h"

namespace ventrik::bench {
namespace {

bool IsStillToBeMade(const Outgoing& message) {
  return message.make != nullptr;
}

}  // namespace

ModelThread::ModelThread(const World& world, Outlet& outlet) : world_(world), outlet_(outlet) {
  StartModel();
}

void ModelThread::UseFolders(const std::string& pictures, const std::string& overlays) {
  pictureFolder_ = pictures;
  overlayFolder_ = overlays;
  StartModel();
}

void ModelThread::StartModel() {
  model_.emplace(world_);
  EngineState& state = model_->state();
  state.pictureFolder = pictureFolder_;
  state.overlayFolder = overlayFolder_;
  state.report = [this](const std::string& text) {
    reports_.With([&text](std::vector<std::string>& reports) { reports.push_back(text); });
  };
}

bool ModelThread::Start() {
  return platform::StartThread(thread_, Body, this);
}

void ModelThread::Stop() {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    stopping_ = true;
  }
  changed_.notify_one();
  platform::CancelAndForget(thread_);
}

void ModelThread::Connected(IpcPeer* client) {
  const std::lock_guard<std::mutex> hold(lock_);
  clients_.push_back({client, ++connected_});
}

void ModelThread::Handle(IpcPeer* client, ReceivedBlock request) {
  std::vector<Outgoing> unfinished;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    if (request.Word(0) == REQU_INIT) SetSession(client, true);
    std::vector<Outgoing> messages =
        model_->Handle(request, std::chrono::steady_clock::now(), NumberOf(client));
    if (std::any_of(messages.begin(), messages.end(), IsStillToBeMade)) {
      unfinished = std::move(messages);
    } else {
      Post(client, std::move(messages));
    }
    if (request.Word(0) == REQU_SHUTDOWN) SetSession(client, false);
  }
  changed_.notify_one();
  Finish(client, std::move(unfinished));
  Tell();
}

// The client is still there, as only this thread forgets clients.
void ModelThread::Finish(IpcPeer* requester, std::vector<Outgoing> messages) {
  if (messages.empty()) return;
  for (Outgoing& message : messages) {
    if (message.make) message.block = message.make();
  }
  const std::lock_guard<std::mutex> hold(lock_);
  Post(requester, std::move(messages));
}

void ModelThread::Skip(IpcPeer* client, ReceivedBlock message) {
  const std::lock_guard<std::mutex> hold(lock_);
  if (message.Word(0) == REQU_INIT) SetSession(client, true);
  if (message.Word(0) != REQU_SHUTDOWN) return;
  SetSession(client, false);
  model_->Forget(NumberOf(client));
}

void ModelThread::Forget(IpcPeer* client) {
  const std::lock_guard<std::mutex> hold(lock_);
  model_->Forget(NumberOf(client));
  const auto isIt = [client](const Client& each) { return each.record == client; };
  clients_.erase(std::remove_if(clients_.begin(), clients_.end(), isIt), clients_.end());
}

void ModelThread::Restart() {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    StartModel();
  }
  changed_.notify_one();
}

void* ModelThread::Body(void* self) {
  static_cast<ModelThread*>(self)->Run();
  return nullptr;
}

void ModelThread::Run() {
  const platform::CancellationDisabled whole;
  std::unique_lock<std::mutex> hold(lock_);
  while (!stopping_) {
    Post(nullptr, model_->Tick(std::chrono::steady_clock::now()));
    hold.unlock();
    Tell();
    hold.lock();
    if (stopping_) break;
    if (const auto next = model_->NextTick()) {
      changed_.wait_until(hold, *next);
    } else {
      changed_.wait(hold);
    }
  }
}

ClientNumber ModelThread::NumberOf(IpcPeer* client) const {
  const auto isIt = [client](const Client& each) { return each.record == client; };
  const auto found = std::find_if(clients_.begin(), clients_.end(), isIt);
  return found == clients_.end() ? kNoClient : found->number;
}

void ModelThread::SetSession(IpcPeer* client, bool isInSession) {
  for (Client& each : clients_) {
    if (each.record == client) each.isInSession = isInSession;
  }
}

void ModelThread::Post(IpcPeer* requester, std::vector<Outgoing> messages) {
  for (Outgoing& message : messages) {
    if (message.block.empty()) continue;
    if (message.audience == Audience::requester) {
      if (requester != nullptr) outlet_.Post(requester, std::move(message.block), message.after);
      continue;
    }
    const bool isForAll = message.audience == Audience::everyone;
    for (const Client& client : clients_) {
      const bool isMeant = isForAll ? client.isInSession : client.number == message.client;
      if (isMeant) outlet_.Post(client.record, message.block, message.after);
    }
  }
}

// With no lock held.
void ModelThread::Tell() {
  std::vector<std::string> reports;
  reports_.With([&reports](std::vector<std::string>& waiting) { reports.swap(waiting); });
  for (const std::string& text : reports) Report("%s", text.c_str());
  outlet_.TellStrikes();
}

}  // namespace ventrik::bench
