// SPDX-License-Identifier: Apache-2.0
// Cancellation: the thread is closed to it; a wait on a condition variable must not be cancelled,
// so Stop() wakes it up instead.
#include "bench/model_thread.h"

#include <chrono>
#include <utility>

#include "messages/function_ids.h"
#include "platform/cancellation.h"
#include "platform/thread_start.h"

namespace ventrik::bench {

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

void ModelThread::Handle(IpcPeer* client, ReceivedBlock request) {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    if (request.Word(0) == REQU_INIT) sessions_.insert(client);
    Post(client, model_.Handle(request, std::chrono::steady_clock::now()));
    if (request.Word(0) == REQU_SHUTDOWN) sessions_.erase(client);
  }
  changed_.notify_one();
}

void ModelThread::Skip(IpcPeer* client, ReceivedBlock message) {
  const std::lock_guard<std::mutex> hold(lock_);
  if (message.Word(0) == REQU_INIT) sessions_.insert(client);
  if (message.Word(0) == REQU_SHUTDOWN) sessions_.erase(client);
}

void ModelThread::Forget(IpcPeer* client) {
  const std::lock_guard<std::mutex> hold(lock_);
  sessions_.erase(client);
}

void* ModelThread::Body(void* self) {
  static_cast<ModelThread*>(self)->Run();
  return nullptr;
}

void ModelThread::Run() {
  const platform::CancellationDisabled whole;
  std::unique_lock<std::mutex> hold(lock_);
  while (!stopping_) {
    Post(nullptr, model_.Tick(std::chrono::steady_clock::now()));
    if (const auto next = model_.NextTick()) {
      changed_.wait_until(hold, *next);
    } else {
      changed_.wait(hold);
    }
  }
}

void ModelThread::Post(IpcPeer* requester, std::vector<Outgoing> messages) {
  for (Outgoing& message : messages) {
    if (message.audience == Audience::everyone) {
      for (IpcPeer* client : sessions_) outlet_.Post(client, message.block, message.after);
    } else if (requester != nullptr) {
      outlet_.Post(requester, std::move(message.block), message.after);
    }
  }
}

}  // namespace ventrik::bench
