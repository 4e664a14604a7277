// SPDX-License-Identifier: Apache-2.0
#include "platform/linux/channel.h"

#include <poll.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/cancellation.h"
#include "platform/linux/runtime_directory.h"
#include "platform/linux/socket.h"

namespace platform {
namespace {

constexpr std::uint64_t kListenerKey = 0;
constexpr std::uint64_t kWakeKey = 1;
constexpr std::uint64_t kFirstInletKey = 2;
constexpr std::uint32_t kGone = EPOLLRDHUP | EPOLLHUP | EPOLLERR;
constexpr std::size_t kMostDropped = 1 << 21;  // bytes; more than a socket holds
constexpr std::size_t kReadAhead = 2048;       // bytes at least; most messages are shorter
constexpr int kAcceptRetry = 100;  // milliseconds between tries while no descriptor is free

// glibc's epoll_wait has no unwind tables on 32-bit ARM: a thread that is cancelled in it ends
// without running the destructors on its stack, with its locks held. Its poll has them everywhere.
#ifdef __arm__
constexpr bool kEpollUnwinds = false;
#else
constexpr bool kEpollUnwinds = true;
#endif

// 1 once the descriptor is readable, 0 after `limit` milliseconds, or -1. A cancellation point.
int WaitUntilReadable(int descriptor, int limit) {
  pollfd readable = {descriptor, POLLIN, 0};
  return poll(&readable, 1, limit);
}

enum class Arrival { kNothing, kStarted, kComplete, kBroken };

// Drops the unread rest of an answered message, `count` bytes. Returns false if it isn't all there:
// then its sender was cut off while it was still sending, and will not use this socket again.
bool DropRest(const Inlet& inlet, std::size_t count) {
  char scratch[16384];
  if (count > kMostDropped) return false;
  while (count > 0) {
    const ssize_t got =
        recv(inlet.descriptor.get(), scratch, std::min(count, sizeof scratch), MSG_DONTWAIT);
    if (got <= 0) return false;
    count -= static_cast<std::size_t>(got);
  }
  return true;
}

// Receives as much as is there of a header and up to `bytes` of the message behind it. What the
// receiver of a short message will fetch next is taken with them: copying it costs less than a
// call.
Arrival ReceiveStart(Inlet& inlet, void* message, std::size_t bytes) {
  std::vector<char>& arrived = inlet.arrived;
  for (;;) {
    std::size_t whole = sizeof inlet.header;
    if (arrived.size() >= whole) {
      std::memcpy(&inlet.header, arrived.data(), whole);
      if (inlet.header.magic != kSendMagic) return Arrival::kBroken;
      // A second message before the first was answered?
      if (arrived.size() - whole > inlet.header.length) return Arrival::kBroken;
      whole += std::min<std::size_t>(inlet.header.length, bytes);
      if (arrived.size() >= whole) break;
    }
    const std::size_t before = arrived.size();
    arrived.resize(std::max(whole, kReadAhead));
    const ssize_t got =
        recv(inlet.descriptor.get(), &arrived[before], arrived.size() - before, MSG_DONTWAIT);
    arrived.resize(before + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    if (got == 0) return Arrival::kBroken;
    if (got < 0 && errno != EAGAIN && errno != EINTR) return Arrival::kBroken;
    if (got < 0) return before == 0 ? Arrival::kNothing : Arrival::kStarted;
  }
  const std::size_t given = std::min(bytes, arrived.size() - sizeof inlet.header);
  if (given > 0) std::memcpy(message, arrived.data() + sizeof inlet.header, given);
  arrived.erase(arrived.begin(),
                arrived.begin() + static_cast<std::ptrdiff_t>(sizeof inlet.header + given));
  return Arrival::kComplete;
}

}  // namespace

std::shared_ptr<Channel> Channel::Open(int chid, unsigned flags) {
  const std::optional<std::string> directory = RuntimeDirectory(true);
  const std::optional<std::string> path = ChannelPath(getpid(), chid, true);
  if (!directory || !path) return nullptr;
  const DirectoryLock lock(*directory);
  if (!lock) return nullptr;
  if (chid == 1) RemoveStaleFiles(*directory);
  unlink(path->c_str());  // of a dead process that had the same number

  std::shared_ptr<Channel> channel(new Channel(chid, flags));
  channel->listener_ = ListenAt(*path);
  if (!channel->listener_) return nullptr;
  channel->path_ = *path;
  channel->epoll_ = UniqueFd(epoll_create1(EPOLL_CLOEXEC));
  channel->wake_ = UniqueFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  channel->lastKey_ = kFirstInletKey;
  const bool ready = channel->epoll_ && channel->wake_ &&
                     channel->Watch(channel->listener_.get(), kListenerKey, EPOLLIN | EPOLLET) &&
                     channel->Watch(channel->wake_.get(), kWakeKey, EPOLLIN);
  if (ready) return channel;
  const int cause = errno;
  unlink(path->c_str());
  errno = cause;
  return nullptr;
}

bool Channel::Watch(int descriptor, std::uint64_t key, std::uint32_t events) {
  epoll_event event = {};
  event.events = events;
  event.data.u64 = key;
  return epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &event) == 0;
}

// The one place where a receiver waits, and the only one where it can be cancelled. An event that
// the kernel has handed over would be gone with the thread, so every connection is asked again.
bool Channel::WaitForEvent(std::uint64_t& key, std::uint32_t& events, const Deadline& deadline) {
  struct Unwinding {
    Channel& channel;
    bool cancelled = true;
    ~Unwinding() {
      if (cancelled) channel.LookAgain();
    }
  };
  epoll_event event = {};
  const CancellationDisabled whole;
  int limit = deadline.LeftMilliseconds();
  bool retryAccept = false;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    retryAccept = acceptLater_;
  }
  if (retryAccept && (limit < 0 || limit > kAcceptRetry)) limit = kAcceptRetry;
  int count = 0;
  {
    Unwinding unwinding{*this};
    const CancellationAllowed open(whole);
    count = kEpollUnwinds ? epoll_wait(epoll_.get(), &event, 1, limit)
                          : WaitUntilReadable(epoll_.get(), limit);
    unwinding.cancelled = false;
  }
  if (!kEpollUnwinds && count > 0) count = epoll_wait(epoll_.get(), &event, 1, 0);
  // A signal doesn't end the wait: it has its handler's effect, or none after a stop and a
  // continue.
  if (count < 0 && errno != EINTR) return false;
  if (count <= 0) {
    if (retryAccept) AcceptAll();
    key = kWakeKey;
    events = 0;
    if (deadline.LeftMilliseconds() != 0) return true;
    errno = ETIMEDOUT;
    return false;
  }
  key = event.data.u64;
  events = event.events;
  return true;
}

int Channel::Receive(void* message, std::size_t bytes, _msg_info* info, const Deadline& deadline) {
  for (;;) {
    if (TakePulse(message, bytes)) return 0;
    std::uint64_t key = 0;
    std::uint32_t events = 0;
    if (!WaitForEvent(key, events, deadline)) return -1;
    const CancellationDisabled whole;
    {
      const std::lock_guard<std::mutex> hold(lock_);
      if (destroyed_) {
        errno = ESRCH;
        return -1;
      }
    }
    if (key == kListenerKey) AcceptAll();
    if (key < kFirstInletKey) continue;
    const int receiveId = TakeMessage(key, events, message, bytes, info);
    if (receiveId > 0) return receiveId;
  }
}

void Channel::LookAgain() {
  const std::lock_guard<std::mutex> hold(lock_);
  if (destroyed_) return;
  const auto rearm = [this](int descriptor, std::uint64_t key, std::uint32_t events) {
    epoll_event event = {};
    event.events = events;
    event.data.u64 = key;
    epoll_ctl(epoll_.get(), EPOLL_CTL_MOD, descriptor, &event);
  };
  rearm(listener_.get(), kListenerKey, EPOLLIN | EPOLLET);
  for (const auto& [key, inlet] : inlets_) {
    rearm(inlet->descriptor.get(), key, EPOLLIN | EPOLLRDHUP | EPOLLET);
  }
}

bool Channel::TakePulse(void* message, std::size_t bytes) {
  const std::lock_guard<std::mutex> hold(lock_);
  if (pulses_.empty()) return false;
  if (bytes > 0) std::memcpy(message, &pulses_.front(), std::min(bytes, sizeof(_pulse)));
  pulses_.pop_front();
  return true;
}

void Channel::AcceptAll() {
  AcceptLater(true);  // stays so if there is no memory for a peer
  bool outOfDescriptors = false;
  for (;;) {
    auto inlet = std::make_shared<Inlet>();
    inlet->arrived.reserve(kReadAhead);  // a message needs no memory then
    inlet->descriptor = AcceptFrom(listener_.get(), inlet->pid);
    if (!inlet->descriptor) {
      outOfDescriptors = errno != EAGAIN;
      break;
    }
    inlet->channel = weak_from_this();
    const std::lock_guard<std::mutex> hold(lock_);
    inlet->key = lastKey_++;
    inlets_[inlet->key] = inlet;
    // Watched last: from here on another receiver may be handed its first event.
    if (!Watch(inlet->descriptor.get(), inlet->key, EPOLLIN | EPOLLRDHUP | EPOLLET)) {
      inlets_.erase(inlet->key);
    }
  }
  AcceptLater(outOfDescriptors);
}

void Channel::AcceptLater(bool wanted) {
  const std::lock_guard<std::mutex> hold(lock_);
  acceptLater_ = wanted;
}

std::shared_ptr<Inlet> Channel::Find(std::uint64_t key) {
  const auto found = inlets_.find(key);
  return found == inlets_.end() ? nullptr : found->second;
}

int Channel::TakeMessage(std::uint64_t key, std::uint32_t events, void* message, std::size_t bytes,
                         _msg_info* info) {
  const std::lock_guard<std::mutex> hold(lock_);
  const std::shared_ptr<Inlet> inlet = Find(key);
  if (!inlet) return 0;
  if ((events & kGone) != 0) {
    LoseLocked(*inlet);
    return 0;
  }
  if (inlet->inHand) return 0;
  inlet->fetched = 0;
  switch (ReceiveStart(*inlet, message, bytes)) {
    case Arrival::kNothing:
    case Arrival::kStarted:
      return 0;
    case Arrival::kBroken:
      LoseLocked(*inlet);
      return 0;
    case Arrival::kComplete:
      break;
  }
  const std::size_t given = std::min<std::size_t>(inlet->header.length, bytes);
  inlet->fetched = given;
  inlet->inHand = true;
  inlet->hasSent = true;
  inlet->receiveId = AddMessageInHand(inlet);
  if (info != nullptr) {
    *info = {inlet->pid, chid_, given, inlet->header.length, inlet->header.replyCapacity};
  }
  return inlet->receiveId;
}

bool Channel::Release(Inlet& inlet) {
  const std::lock_guard<std::mutex> hold(lock_);
  const std::size_t unread = inlet.header.length - inlet.fetched - inlet.arrived.size();
  inlet.arrived.clear();
  const bool dropped = DropRest(inlet, unread);
  inlet.inHand = !dropped;
  return dropped;
}

void Channel::Lose(const std::shared_ptr<Inlet>& inlet) {
  const std::lock_guard<std::mutex> hold(lock_);
  LoseLocked(*inlet);
}

void Channel::LoseLocked(Inlet& inlet) {
  if (inlet.lost) return;
  inlet.lost = true;
  inlets_.erase(inlet.key);
  epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, inlet.descriptor.get(), nullptr);
  const bool unanswered = inlet.inHand && RemoveMessageInHand(inlet.receiveId) != nullptr;
  if (unanswered && (flags_ & _NTO_CHF_UNBLOCK) != 0) {
    pulses_.push_back({0, 0, _PULSE_CODE_UNBLOCK, {}, inlet.receiveId, 0});
  }
  const auto fromSameProcess = [&inlet](const auto& other) {
    return other.second->pid == inlet.pid && other.second->hasSent;
  };
  const bool last = std::none_of(inlets_.begin(), inlets_.end(), fromSameProcess);
  if (inlet.hasSent && last && (flags_ & _NTO_CHF_DISCONNECT) != 0) {
    pulses_.push_back({0, 0, _PULSE_CODE_DISCONNECT, {}, 0, 0});
  }
}

void Channel::Destroy() {
  const std::lock_guard<std::mutex> hold(lock_);
  if (destroyed_) return;
  destroyed_ = true;
  unlink(path_.c_str());
  shutdown(listener_.get(), SHUT_RDWR);
  for (const auto& [key, inlet] : inlets_) {
    inlet->lost = true;
    if (inlet->inHand) RemoveMessageInHand(inlet->receiveId);
    shutdown(inlet->descriptor.get(), SHUT_RDWR);
  }
  inlets_.clear();
  const std::uint64_t one = 1;
  const CancellationDisabled whole;
  while (write(wake_.get(), &one, sizeof one) < 0 && errno == EINTR) {
  }
}

}  // namespace platform
