// SPDX-License-Identifier: Apache-2.0
// The receiving calls, over the channels of this process.
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/cancellation.h"
#include "platform/linux/channel.h"
#include "platform/linux/connection.h"
#include "platform/linux/runtime_directory.h"
#include "platform/linux/socket.h"

namespace platform {
namespace {

// How long an answer that has begun waits for its sender to take more of it.
constexpr int kLongAnswerLimit = 15000;  // milliseconds

// Receives exactly `bytes` of the payload of a message in hand, waiting while the sender sends.
bool ReceivePayload(Inlet& inlet, void* data, std::size_t bytes,
                    const CancellationDisabled& quiet) {
  char* to = static_cast<char*>(data);
  while (bytes > 0) {
    const ssize_t got = recv(inlet.descriptor.get(), to, bytes, MSG_DONTWAIT);
    if (got > 0) {
      to += got;
      bytes -= static_cast<std::size_t>(got);
      inlet.fetched += static_cast<std::size_t>(got);
      continue;
    }
    if (got == 0 || (errno != EAGAIN && errno != EINTR)) {
      errno = ESRCH;
      return false;
    }
    pollfd wait = {inlet.descriptor.get(), POLLIN, 0};
    const CancellationAllowed open(quiet);
    poll(&wait, 1, -1);
  }
  return true;
}

std::size_t TakeArrived(Inlet& inlet, void* data, std::size_t bytes) {
  const std::size_t count = std::min(bytes, inlet.arrived.size());
  if (count == 0) return 0;
  std::memcpy(data, inlet.arrived.data(), count);
  inlet.arrived.erase(inlet.arrived.begin(),
                      inlet.arrived.begin() + static_cast<std::ptrdiff_t>(count));
  inlet.fetched += count;
  return count;
}

// Moves on to `offset` by throwing away what lies before it.
bool SkipTo(Inlet& inlet, std::size_t offset, const CancellationDisabled& quiet) {
  char scratch[4096];
  while (inlet.fetched < offset) {
    const std::size_t wanted = std::min(offset - inlet.fetched, sizeof scratch);
    if (TakeArrived(inlet, scratch, wanted) > 0) continue;
    if (!ReceivePayload(inlet, scratch, wanted, quiet)) return false;
  }
  return true;
}

// An honest sender reads each answer before it sends again, so its socket has room for the next
// one: one that has none is given up at once. Only in the middle of a long answer is there a wait.
bool SendAnswer(Inlet& inlet, const ReplyHeader& header, const void* data) {
  iovec parts[2] = {{const_cast<ReplyHeader*>(&header), sizeof header},
                    {const_cast<void*>(data), header.length}};
  std::size_t first = 0;
  bool begun = false;
  while (first < 2) {
    const ssize_t sent = SendPieces(inlet.descriptor.get(), parts + first, 2 - first);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) {
      pollfd wait = {inlet.descriptor.get(), POLLOUT, 0};
      if (errno != EAGAIN || !begun || poll(&wait, 1, kLongAnswerLimit) == 0) return false;
      continue;
    }
    begun = true;
    auto done = static_cast<std::size_t>(sent);
    while (first < 2 && done >= parts[first].iov_len) done -= parts[first++].iov_len;
    if (first < 2) {
      parts[first].iov_base = static_cast<char*>(parts[first].iov_base) + done;
      parts[first].iov_len -= done;
    }
  }
  return true;
}

int Answer(int receiveId, ReplyHeader header, const void* data, std::size_t bytes) {
  const CancellationDisabled whole;
  const std::shared_ptr<Inlet> inlet = RemoveMessageInHand(receiveId);
  const std::shared_ptr<Channel> channel = inlet ? inlet->channel.lock() : nullptr;
  if (!channel) {
    errno = ESRCH;
    return -1;
  }
  header.length =
      static_cast<std::uint32_t>(std::min<std::size_t>(bytes, inlet->header.replyCapacity));
  const bool reusable = channel->Release(*inlet);
  header.last = !reusable;
  const bool answered = SendAnswer(*inlet, header, data);
  if (!answered || !reusable) channel->Lose(inlet);
  if (answered) return 0;
  errno = ESRCH;
  return -1;
}

}  // namespace
}  // namespace platform

int ChannelCreate(unsigned flags) {
  const platform::CancellationDisabled whole;
  const std::shared_ptr<platform::Channel> channel =
      platform::Channel::Open(platform::NewChannelId(), flags);
  if (!channel) return -1;
  platform::AddChannel(channel);
  return channel->chid();
}

int ChannelDestroy(int chid) {
  const platform::CancellationDisabled whole;
  const std::shared_ptr<platform::Channel> channel = platform::RemoveChannel(chid);
  if (!channel) {
    errno = EINVAL;
    return -1;
  }
  channel->Destroy();
  return 0;
}

int ConnectAttach(std::uint32_t nd, pid_t pid, int chid, unsigned index, int) {
  if (nd != 0) {
    errno = ESRCH;
    return -1;
  }
  const platform::CancellationDisabled whole;
  const std::optional<std::string> path =
      platform::ChannelPath(pid == 0 ? getpid() : pid, chid, false);
  if (!path) return -1;
  std::shared_ptr<platform::Connection> connection = platform::Connection::To(*path);
  if (!connection) return -1;
  return platform::AddConnection(std::move(connection), index);
}

int MsgReceive(int chid, void* msg, std::size_t bytes, struct _msg_info* info) {
  const platform::Deadline deadline = platform::TakeDeadline(_NTO_TIMEOUT_RECEIVE);
  const std::shared_ptr<platform::Channel> channel = platform::FindChannel(chid);
  if (!channel) {
    errno = ESRCH;
    return -1;
  }
  return channel->Receive(msg, bytes, info, deadline);
}

ssize_t MsgRead(int rcvid, void* msg, std::size_t bytes, std::size_t offset) {
  const platform::CancellationDisabled quiet;
  const std::shared_ptr<platform::Inlet> inlet = platform::FindMessageInHand(rcvid);
  if (!inlet) {
    errno = ESRCH;
    return -1;
  }
  if (offset < inlet->fetched) {
    errno = EINVAL;
    return -1;
  }
  const std::size_t length = inlet->header.length;
  if (offset >= length) return 0;
  if (!platform::SkipTo(*inlet, offset, quiet)) return -1;
  const std::size_t wanted = std::min(bytes, length - offset);
  const std::size_t ahead = platform::TakeArrived(*inlet, msg, wanted);
  char* rest = static_cast<char*>(msg) + ahead;
  if (!platform::ReceivePayload(*inlet, rest, wanted - ahead, quiet)) return -1;
  return static_cast<ssize_t>(wanted);
}

int MsgReply(int rcvid, long status, const void* msg, std::size_t bytes) {
  return platform::Answer(rcvid, {static_cast<std::int32_t>(status), 0, 0, 0}, msg, bytes);
}

int MsgError(int rcvid, int error) {
  return platform::Answer(rcvid, {0, error, 0, 0}, nullptr, 0);
}
