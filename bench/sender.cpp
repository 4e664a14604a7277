// SPDX-License-Identifier: Apache-2.0
// Cancellation: the thread is cancelled at the program's end. It is closed to that everywhere but
// in the send itself, which alone can wait for a client; a wait on the condition variable must not
// be cancelled, so Stop() wakes it up instead.
#include "bench/sender.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "bench/report.h"
#include "ipc/time_limit.h"
#include "platform/thread_start.h"

namespace ventrik::bench {
namespace {

// Ends the message of a thread that was cancelled in its data part.
struct Parting {
  IpcMessage* message;
  ~Parting() {
    if (message == nullptr) return;
    const platform::CancellationDisabled whole;
    LimitNextSend(kPartingTimeout);
    ipc_disconnect(message);
  }
};

// Sends one message. Returns 0, or the errno of what failed. Unlike ipc_disconnect by itself, waits
// for the end marker's answer no longer than for that of the data part.
int SendBlock(IpcPeer* client, const Block& block) {
  Parting parting{ipc_connect(client)};
  if (parting.message == nullptr) return ENOMEM;
  const long taken = ipc_write(parting.message, block.data(), block.size());
  const int dataError = errno;  // the failure's text has been printed; bench/report.h kept errno
  IpcMessage* message = std::exchange(parting.message, nullptr);
  LimitNextSend(kIpcDataTimeout);
  const int ended = ipc_disconnect(message);
  if (taken == -1) return dataError;
  if (taken != static_cast<long>(block.size())) return EPROTO;
  return ended == 0 ? 0 : errno;
}

}  // namespace

Sender::~Sender() {
  for (IpcPeer* client : outbox_.Clear()) ipc_close(client);
}

bool Sender::Start() {
  return platform::StartThread(thread_, Body, this);
}

void Sender::Stop() {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    stopping_ = true;
  }
  changed_.notify_one();
  platform::CancelAndForget(thread_);
}

void Sender::Post(IpcPeer* client, Block block, std::chrono::milliseconds after) {
  const TimePoint now = std::chrono::steady_clock::now();
  {
    const std::lock_guard<std::mutex> hold(lock_);
    const bool taken = outbox_.Post(client, std::move(block), now + after);
    if (!taken) drops_.Count(client->processId, 1, now);
  }
  changed_.notify_one();
}

void Sender::Repeat(IpcPeer* client, Block block, std::chrono::milliseconds after,
                    std::chrono::milliseconds period) {
  const TimePoint first = std::chrono::steady_clock::now() + after;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    outbox_.Repeat(client, std::move(block), first, period);
  }
  changed_.notify_one();
}

void Sender::Heard(IpcPeer* client) {
  const std::lock_guard<std::mutex> hold(lock_);
  outbox_.Heard(client);
}

void Sender::Retire(IpcPeer* client, bool sendWaiting) {
  {
    const std::lock_guard<std::mutex> hold(lock_);
    outbox_.Retire(client, sendWaiting);
  }
  changed_.notify_one();
}

void* Sender::Body(void* sender) {
  static_cast<Sender*>(sender)->Run();
  return nullptr;
}

void Sender::Run() {
  const platform::CancellationDisabled disabled;
  std::optional<Outbox::Task> task;
  std::vector<std::string> reports;
  while (WaitForWork(task, reports)) {
    for (const std::string& report : reports) Report("%s", report.c_str());
    if (!task) continue;
    if (task->block) {
      Send(*task, disabled);
    } else {
      ipc_close(task->client);
    }
  }
}

// Expects lock_ held.
std::optional<TimePoint> Sender::NextWork() const {
  const auto task = outbox_.NextDue();
  const auto report = drops_.NextEnd();
  if (!task || !report) return task ? task : report;
  return std::min(*task, *report);
}

// Returns false when the thread is to end.
bool Sender::WaitForWork(std::optional<Outbox::Task>& task, std::vector<std::string>& reports) {
  std::unique_lock<std::mutex> hold(lock_);
  for (;;) {
    if (stopping_) return false;
    const TimePoint now = std::chrono::steady_clock::now();
    task = outbox_.TakeDue(now);
    reports = drops_.TakeOver(now);
    if (task || !reports.empty()) return true;
    if (const auto next = NextWork()) {
      changed_.wait_until(hold, *next);
    } else {
      changed_.wait(hold);
    }
  }
}

void Sender::ReportDrops() {
  for (const std::string& report : drops_.TakeAll()) Report("%s", report.c_str());
}

void Sender::Send(const Outbox::Task& task, const platform::CancellationDisabled& disabled) {
  int error = 0;
  {
    const platform::CancellationAllowed allowed(disabled);
    error = SendBlock(task.client, *task.block);
  }
  if (error == 0) {
    ++sent_;
    if (onSent) onSent(*task.client, *task.block);
    return;
  }
  // A client that refuses one message may take the next; one that is hung or closed won't.
  if (error != ETIMEDOUT && error != ESRCH) return;
  Report("process %u takes no messages; what is due to it is dropped until its next REQU_INIT",
         task.client->processId);
  const std::lock_guard<std::mutex> hold(lock_);
  const std::size_t waiting = outbox_.Mute(task.client, task.heard);
  drops_.Count(task.client->processId, waiting, std::chrono::steady_clock::now());
}

}  // namespace ventrik::bench
