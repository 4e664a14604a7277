// SPDX-License-Identifier: Apache-2.0
// Cancellation: the thread is closed to it; a wait on a condition variable must not be cancelled,
// so Stop() wakes it up instead.
#include "bench/scenario_thread.h"

#include <chrono>
#include <utility>

#include "messages/function_ids.h"
#include "platform/cancellation.h"
#include "platform/thread_start.h"

namespace ventrik::bench {

bool ScenarioThread::Start() {
  return !run_ || platform::StartThread(thread_, Body, this);
}

void ScenarioThread::Stop() {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    stopping_ = true;
  }
  changed_.notify_one();
  platform::CancelAndForget(thread_);
}

void ScenarioThread::Connected(IpcPeer* client) {
  if (!run_) return;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    Post(client, run_->Connected().posts);
  }
  outlet_.TellStrikes();
}

// The periods begin when the answer to REQU_INIT is there, as the heartbeat's do.
ScenarioThread::Handled ScenarioThread::Handle(IpcPeer* client, ReceivedBlock message) {
  if (!run_) return {false, false, false};
  ScenarioRun::Outcome outcome;
  bool isAnswered = false;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    outcome = run_->Received(message);
    isAnswered = !outcome.posts.empty();
    Post(client, std::move(outcome.posts));
    if (message.Word(0) == REQU_INIT) {
      run_->Begin(client, std::chrono::steady_clock::now() + kAnswerTime);
    }
    if (message.Word(0) == REQU_SHUTDOWN) run_->End(client);
  }
  changed_.notify_one();
  outlet_.TellStrikes();
  return {outcome.isRuled, outcome.isInstead, isAnswered};
}

void ScenarioThread::Forget(IpcPeer* client) {
  if (!run_) return;
  const std::lock_guard<std::mutex> hold(lock_);
  run_->End(client);
}

std::vector<std::string> ScenarioThread::NeverSetOff() const {
  return run_ ? run_->NeverSetOff() : std::vector<std::string>();
}

void* ScenarioThread::Body(void* self) {
  static_cast<ScenarioThread*>(self)->Run();
  return nullptr;
}

void ScenarioThread::Run() {
  const platform::CancellationDisabled whole;
  std::unique_lock<std::mutex> hold(lock_);
  while (!stopping_) {
    for (ScenarioRun::PeriodOutcome& outcome :
         run_->TakePeriods(std::chrono::steady_clock::now())) {
      Post(outcome.client, std::move(outcome.posts));
    }
    hold.unlock();
    outlet_.TellStrikes();
    hold.lock();
    if (stopping_) break;
    if (const auto next = run_->NextPeriod()) {
      changed_.wait_until(hold, *next);
    } else {
      changed_.wait(hold);
    }
  }
}

void ScenarioThread::Post(IpcPeer* client, std::vector<ScenarioRun::Post> posts) {
  for (ScenarioRun::Post& post : posts) {
    outlet_.Post(client, std::move(post.block), post.after);
  }
}

}  // namespace ventrik::bench
