// SPDX-License-Identifier: Apache-2.0
// The sending side.
//
// The one hard question is what a sender that gives up (time-out, signal, cancellation) leaves
// behind: had the receiver answered or not? A receiver that has answered goes on to wait for what
// the protocol above sends next, one that has not must learn that nobody waits any more. So the
// sender first shuts its side for reading, after which an answer fails at the receiver, and then
// looks whether one had come in before.
#include "platform/linux/connection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <unordered_map>

#include "platform/cancellation.h"
#include "platform/linux/socket.h"
#include "platform/linux/wire.h"

namespace platform {
namespace {

constexpr std::size_t kMostBytes = 0xFFFFFFFF;  // what a header can say

thread_local bool cancelledSendWasAnswered = false;

// Pieces of memory still to be sent or filled: a header and what goes with it. The few pieces that
// messages have need no allocation.
class Pieces {
 public:
  Pieces(void* head, std::size_t headSize, const iov_t* rest, std::size_t restCount)
      : count_(restCount + 1) {
    if (count_ > few_.size()) many_.resize(count_);
    list_ = many_.empty() ? few_.data() : many_.data();
    list_[0] = {head, headSize};
    std::copy_n(rest, restCount, list_ + 1);
    for (std::size_t i = 0; i < count_; ++i) left_ += list_[i].iov_len;
  }
  Pieces(const Pieces&) = delete;
  Pieces& operator=(const Pieces&) = delete;

  std::size_t left() const { return left_; }

  ssize_t Send(int descriptor) { return SendPieces(descriptor, list_ + first_, count_ - first_); }
  ssize_t Receive(int descriptor) {
    return ReceivePieces(descriptor, list_ + first_, count_ - first_);
  }

  void Advance(std::size_t count) {
    left_ -= count;
    while (count > 0) {
      iov_t& piece = list_[first_];
      const std::size_t taken = count < piece.iov_len ? count : piece.iov_len;
      piece.iov_base = static_cast<char*>(piece.iov_base) + taken;
      piece.iov_len -= taken;
      count -= taken;
      if (piece.iov_len == 0) ++first_;
    }
  }

 private:
  std::array<iov_t, 4> few_;
  std::vector<iov_t> many_;
  iov_t* list_;
  std::size_t count_;
  std::size_t first_ = 0;
  std::size_t left_ = 0;
};

std::size_t TotalLength(const iov_t* pieces, std::size_t count) {
  std::size_t total = 0;
  for (std::size_t i = 0; i < count; ++i) total += pieces[i].iov_len;
  return total;
}

// One message and its answer over one socket.
class Exchange {
 public:
  enum class End {
    kAnswered,     // answer_ holds the answer, the socket is free for the next message
    kAnsweredCut,  // the same, but the socket is of no use any more
    kNotTaken,     // the socket was dead before anything went out
    kFailed,       // errno tells
  };

  Exchange(int descriptor, const iov_t* siov, std::size_t sparts, const iov_t* riov,
           std::size_t rparts, const Deadline& deadline, const CancellationDisabled& quiet)
      : descriptor_(descriptor),
        send_{kSendMagic, static_cast<std::uint32_t>(TotalLength(siov, sparts)),
              static_cast<std::uint32_t>(TotalLength(riov, rparts))},
        outgoing_(&send_, sizeof send_, siov, sparts),
        incoming_(&answer_, sizeof answer_, riov, rparts),
        deadline_(deadline),
        quiet_(quiet) {}

  End Run() {
    Unwinding unwinding{*this};
    const End end = SendAndAwait();
    unwinding.cancelled = false;
    return end;
  }

  const ReplyHeader& answer() const { return answer_; }

 private:
  struct Unwinding {
    Exchange& exchange;
    bool cancelled = true;
    ~Unwinding() {
      if (!cancelled) return;
      const bool answered = exchange.AnswerCameBeforeGivingUp();
      cancelledSendWasAnswered = answered && exchange.answer_.error == 0;
    }
  };

  End SendAndAwait() {
    bool untouched = true;
    bool everythingOut = false;
    while (!everythingOut) {
      const ssize_t sent = outgoing_.Send(descriptor_);
      if (sent >= 0) {
        untouched = false;
        outgoing_.Advance(static_cast<std::size_t>(sent));
        everythingOut = outgoing_.left() == 0;
        continue;
      }
      if (errno == EINTR) continue;
      if (errno != EAGAIN) {
        if (untouched) return End::kNotTaken;
        break;  // the receiver hung up; perhaps it answered first
      }
      short ready = 0;
      if (!Wait(POLLIN | POLLOUT, ready)) return GiveUp();
      if ((ready & POLLIN) != 0) break;  // answered, or hung up, before it took everything
    }
    return Await(everythingOut);
  }

  End Await(bool everythingOut) {
    for (;;) {
      short ready = 0;
      if (!Wait(POLLIN, ready)) return GiveUp();
      const Part part = ReceivePart();
      if (part == Part::kMore) continue;
      const bool reusable = everythingOut && answer_.last == 0;
      if (part == Part::kWhole) return reusable ? End::kAnswered : End::kAnsweredCut;
      errno = ESRCH;
      return End::kFailed;
    }
  }

  // Waits until one of `events` can be served. The only place where a sender can be cancelled.
  bool Wait(short events, short& ready) {
    pollfd wait = {descriptor_, events, 0};
    timespec room = {};
    const timespec* limit = deadline_.Left(room);
    int count = 0;
    {
      const CancellationAllowed open(quiet_);
      count = ppoll(&wait, 1, limit, nullptr);
    }
    ready = wait.revents;
    if (count == 0) errno = ETIMEDOUT;
    return count > 0;
  }

  enum class Part { kWhole, kMore, kNone };

  // Takes what is there of the answer.
  Part ReceivePart() {
    const ssize_t got = incoming_.Receive(descriptor_);
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) return Part::kMore;
    if (got <= 0) return Part::kNone;
    received_ += static_cast<std::size_t>(got);
    incoming_.Advance(static_cast<std::size_t>(got));
    if (received_ < sizeof answer_) return Part::kMore;
    const std::size_t expected = sizeof answer_ + answer_.length;
    if (answer_.length > send_.replyCapacity || received_ > expected) return Part::kNone;
    return received_ == expected ? Part::kWhole : Part::kMore;
  }

  bool AnswerCameBeforeGivingUp() {
    shutdown(descriptor_, SHUT_RD);
    return ReceivePart() == Part::kWhole;
  }

  End GiveUp() {
    const int cause = errno;
    if (AnswerCameBeforeGivingUp()) return End::kAnsweredCut;
    errno = cause;
    return End::kFailed;
  }

  const int descriptor_;
  SendHeader send_;
  ReplyHeader answer_ = {};
  Pieces outgoing_;
  Pieces incoming_;
  std::size_t received_ = 0;
  const Deadline& deadline_;
  const CancellationDisabled& quiet_;
};

// Never destroyed: threads may still send while the process ends.
struct ConnectionTable {
  std::mutex lock;
  std::unordered_map<int, std::shared_ptr<Connection>> connections;
  int last = 0;
};

ConnectionTable& TheConnections() {
  static ConnectionTable& table = *new ConnectionTable;
  return table;
}

std::shared_ptr<Connection> FindConnection(int coid) {
  ConnectionTable& table = TheConnections();
  const std::lock_guard<std::mutex> hold(table.lock);
  const auto found = table.connections.find(coid);
  return found == table.connections.end() ? nullptr : found->second;
}

}  // namespace

std::shared_ptr<Connection> Connection::To(std::string path) {
  const CancellationDisabled whole;
  UniqueFd first = Dial(path);
  if (!first) return nullptr;
  std::shared_ptr<Connection> connection(new Connection(std::move(path)));
  connection->PutIdle(std::move(first));
  return connection;
}

UniqueFd Connection::TakeIdle() {
  const std::lock_guard<std::mutex> hold(lock_);
  if (idle_.empty()) return {};
  UniqueFd descriptor = std::move(idle_.back());
  idle_.pop_back();
  return descriptor;
}

void Connection::PutIdle(UniqueFd descriptor) {
  const std::lock_guard<std::mutex> hold(lock_);
  idle_.push_back(std::move(descriptor));
}

long Connection::Send(const iov_t* siov, std::size_t sparts, const iov_t* riov, std::size_t rparts,
                      const Deadline& deadline) {
  const CancellationDisabled quiet;
  if (TotalLength(siov, sparts) > kMostBytes || TotalLength(riov, rparts) > kMostBytes) {
    errno = EMSGSIZE;
    return -1;
  }
  for (;;) {
    UniqueFd descriptor = TakeIdle();
    const bool dialled = !descriptor;
    if (dialled) descriptor = Dial(path_);
    if (!descriptor) return -1;
    Exchange exchange(descriptor.get(), siov, sparts, riov, rparts, deadline, quiet);
    const Exchange::End end = exchange.Run();
    if (end == Exchange::End::kNotTaken && !dialled) continue;
    if (end == Exchange::End::kNotTaken) errno = ESRCH;
    if (end == Exchange::End::kNotTaken || end == Exchange::End::kFailed) return -1;
    if (end == Exchange::End::kAnswered) PutIdle(std::move(descriptor));
    const ReplyHeader answer = exchange.answer();
    if (answer.error == 0) return answer.status;
    errno = answer.error;
    return -1;
  }
}

int AddConnection(std::shared_ptr<Connection> connection, unsigned index) {
  ConnectionTable& table = TheConnections();
  const unsigned side = index & _NTO_SIDE_CHANNEL;
  const std::lock_guard<std::mutex> hold(table.lock);
  int id = 0;
  do {
    table.last = table.last == 0x3fffffff ? 1 : table.last + 1;
    id = static_cast<int>(static_cast<unsigned>(table.last) | side);
  } while (table.connections.count(id) != 0);
  table.connections[id] = std::move(connection);
  return id;
}

bool CancelledSendWasAnswered() {
  return cancelledSendWasAnswered;
}

}  // namespace platform

int ConnectDetach(int coid) {
  platform::ConnectionTable& table = platform::TheConnections();
  std::shared_ptr<platform::Connection> detached;  // outlives the lock
  const std::lock_guard<std::mutex> hold(table.lock);
  const auto found = table.connections.find(coid);
  if (found == table.connections.end()) {
    errno = EBADF;
    return -1;
  }
  detached = std::move(found->second);
  table.connections.erase(found);
  return 0;
}

long MsgSendv(int coid, const iov_t* siov, std::size_t sparts, const iov_t* riov,
              std::size_t rparts) {
  const platform::Deadline deadline =
      platform::TakeDeadline(_NTO_TIMEOUT_SEND | _NTO_TIMEOUT_REPLY);
  const std::shared_ptr<platform::Connection> connection = platform::FindConnection(coid);
  platform::cancelledSendWasAnswered = false;
  if (!connection) {
    errno = EBADF;
    return -1;
  }
  return connection->Send(siov, sparts, riov, rparts, deadline);
}

long MsgSend(int coid, const void* smsg, std::size_t sbytes, void* rmsg, std::size_t rbytes) {
  const iov_t request = {const_cast<void*>(smsg), sbytes};
  const iov_t reply = {rmsg, rbytes};
  return MsgSendv(coid, &request, 1, &reply, 1);
}
