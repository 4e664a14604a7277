// SPDX-License-Identifier: Apache-2.0
// Message objects: their pool, and what both halves of the library do with a received one.
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <new>

#include "ipc/ipc.h"

namespace ventrik {
namespace {

constexpr int kPoolLimit = 4;

// How often a server that waits for an end marker asks whether the sender's process is still there.
constexpr std::uint64_t kSenderCheckInterval = 1'000'000'000;  // nanoseconds
constexpr int kMostSenderChecks = 10;                          // less than any sender waits

struct Pool {
  std::mutex lock;
  IpcMessage* head = nullptr;
  int count = 0;
};

// Never destroyed: threads may still send while the process ends.
Pool& ThePool() {
  static Pool& pool = *new Pool;
  return pool;
}

void Clear(IpcMessage& message) {
  message = {};
  message.receiveId = -1;
  message.connections[0] = message.connections[1] = -1;
  message.channels[0] = message.channels[1] = -1;
}

bool SenderIsGone(const IpcMessage& message) {
  return platform::ProcessIsGone(static_cast<pid_t>(message.senderProcess));
}

// MsgReceive on the channel of the next part. A server doesn't wait for a process that has died in
// the middle of a message, nor for long for one that lives: it may have lost its connection there,
// and be waiting for this server to take its next handshake. A client waits for its server.
int ReceiveRecord(const IpcMessage& message, IpcControlRecord& record) {
  for (int checks = 1;; ++checks) {
    record = {};
    if (message.server != nullptr) {
      struct sigevent unblock = {};
      unblock.sigev_notify = SIGEV_UNBLOCK;
      TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_RECEIVE, &unblock, &kSenderCheckInterval, nullptr);
    }
    const int id = MsgReceive(message.channels[message.partIndex], &record, sizeof record, nullptr);
    if (id >= 0 || errno != ETIMEDOUT) return id;
    if (SenderIsGone(message)) return -1;
    if (checks < kMostSenderChecks) continue;
    errno = ETIMEDOUT;
    return -1;
  }
}

enum class NextPart { kPart, kEnd, kGone };

// Waits for the next part of a message whose data so far has been read and answered.
NextPart ReceiveNextPart(IpcMessage& message, std::size_t total) {
  // A cancelled listener leaves the end marker to the next one.
  struct Unwinding {
    IpcPeer* peer;
    bool cancelled = true;
    ~Unwinding() {
      if (cancelled && peer != nullptr) ++peer->owedEndMarkers;
    }
  };
  for (;;) {
    IpcControlRecord record;
    Unwinding unwinding{message.peer};
    const int id = ReceiveRecord(message, record);
    unwinding.cancelled = false;
    if (id < 0) return NextPart::kGone;
    if (id == 0) continue;
    if (record.kind != IPC_DATA) {
      MsgReply(id, static_cast<long>(total), nullptr, 0);
      continue;
    }
    message.offset = sizeof record;
    message.remaining = record.words[1];
    if (message.remaining == 0) {
      MsgReply(id, 0, nullptr, 0);
      return NextPart::kEnd;
    }
    message.receiveId = id;
    return NextPart::kPart;
  }
}

// Answers the part that has been read, with `status`. Returns whether its sender still waits.
bool AnswerPart(IpcMessage& message, std::size_t status) {
  const int id = message.receiveId;
  message.receiveId = -1;
  return MsgReply(id, static_cast<long>(status), nullptr, 0) == 0;
}

}  // namespace

IpcMessage* ipc_message_acquire() {
  Pool& pool = ThePool();
  IpcMessage* message = nullptr;
  {
    const std::lock_guard<std::mutex> hold(pool.lock);
    if (pool.head != nullptr) {
      message = pool.head;
      pool.head = message->nextFree;
      --pool.count;
    }
  }
  if (message == nullptr) message = new (std::nothrow) IpcMessage;
  if (message == nullptr) {
    errno = ENOMEM;
    return nullptr;
  }
  Clear(*message);
  errno = 0;
  return message;
}

void ipc_message_release(IpcMessage* message) {
  Pool& pool = ThePool();
  {
    const std::lock_guard<std::mutex> hold(pool.lock);
    if (pool.count < kPoolLimit) {
      message->nextFree = pool.head;
      pool.head = message;
      ++pool.count;
      return;
    }
  }
  delete message;
}

int ipc_message_pool_size() {
  Pool& pool = ThePool();
  const std::lock_guard<std::mutex> hold(pool.lock);
  return pool.count;
}

int ipc_cleanup() {
  Pool& pool = ThePool();
  IpcMessage* head = nullptr;
  {
    const std::lock_guard<std::mutex> hold(pool.lock);
    head = pool.head;
    pool.head = nullptr;
    pool.count = 0;
  }
  while (head != nullptr) {
    IpcMessage* next = head->nextFree;
    delete head;
    head = next;
  }
  return 0;
}

std::uint32_t ipc_length(const IpcMessage* message) {
  return message->remaining;
}

int ipc_read(IpcMessage* message, void* buffer, std::size_t size) {
  if (size == 0) return 0;
  std::memset(buffer, 0, size);
  char* to = static_cast<char*>(buffer);
  std::size_t wanted = size;
  std::size_t total = 0;
  for (;;) {
    if (message->remaining == 0) {
      if (message->receiveId != -1) AnswerPart(*message, 0);
      const NextPart next = ReceiveNextPart(*message, total);
      if (next == NextPart::kEnd) return static_cast<int>(total);
      if (next == NextPart::kGone) return -1;
    }
    const std::size_t count = std::min<std::size_t>(message->remaining, wanted);
    MsgRead(message->receiveId, to, count, message->offset);
    to += count;
    wanted -= count;
    total += count;
    message->offset += count;
    message->remaining -= static_cast<std::uint32_t>(count);
    const bool partIsRead = message->remaining == 0;
    const bool senderWaits = !partIsRead || AnswerPart(*message, total);
    if (wanted == 0) return 0;
    // A sender that gave up on its data part sends no end marker: there is nothing to wait for.
    if (!senderWaits) return -1;
  }
}

int ipc_finish(IpcMessage* message, int status) {
  if (message->receiveId != -1) {
    if (status == 0) {
      MsgReply(message->receiveId, 0, nullptr, 0);
    } else {
      MsgError(message->receiveId, status);
    }
  }
  Clear(*message);
  ipc_message_release(message);
  return 0;
}

}  // namespace ventrik
