// SPDX-License-Identifier: Apache-2.0
#include "platform/linux/socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace platform {
namespace {

// What a socket is to hold of a message: all of the longest one that the tester knows. Each filling
// of it costs a switch to the receiver and back, and with the usual room that makes three. The
// system gives less if its own limit is lower.
constexpr int kSendRoom = 1 << 19;  // bytes

// Up to here copying pieces together costs less than it costs the system to gather them.
constexpr std::size_t kShort = 2048;  // bytes

bool MakeAddress(const std::string& path, sockaddr_un& address) {
  address = {};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) {
    errno = ENAMETOOLONG;
    return false;
  }
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return true;
}

UniqueFd NewSocket() {
  return UniqueFd(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

// The peer's credentials are those it had when it connected or began to listen.
bool PeerIsThisUser(int descriptor, pid_t* pid) {
  ucred peer = {};
  socklen_t size = sizeof peer;
  if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return false;
  if (pid != nullptr) *pid = peer.pid;
  if (peer.uid == geteuid()) return true;
  errno = EPERM;
  return false;
}

bool ConnectTo(int descriptor, const sockaddr_un& address) {
  return connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

msghdr Header(iovec* pieces, std::size_t count) {
  msghdr whole = {};
  whole.msg_iov = pieces;
  whole.msg_iovlen = count;
  return whole;
}

}  // namespace

UniqueFd ListenAt(const std::string& path) {
  sockaddr_un address;
  if (!MakeAddress(path, address)) return {};
  UniqueFd descriptor = NewSocket();
  if (!descriptor) return {};
  fchmod(descriptor.get(), 0600);  // before bind: the file is made with the socket's mode
  if (bind(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return {};
  }
  if (listen(descriptor.get(), SOMAXCONN) != 0) return {};
  return descriptor;
}

UniqueFd Dial(const std::string& path) {
  sockaddr_un address;
  if (!MakeAddress(path, address)) return {};
  UniqueFd descriptor = NewSocket();
  if (!descriptor) return {};
  if (!ConnectTo(descriptor.get(), address)) {
    if (errno == ECONNREFUSED || errno == ENOENT) errno = ESRCH;
    return {};
  }
  if (!PeerIsThisUser(descriptor.get(), nullptr)) return {};
  setsockopt(descriptor.get(), SOL_SOCKET, SO_SNDBUF, &kSendRoom, sizeof kSendRoom);
  return descriptor;
}

UniqueFd AcceptFrom(int listener, pid_t& pid) {
  for (;;) {
    UniqueFd descriptor(accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!descriptor) {
      if (errno == ECONNABORTED || errno == EINTR) continue;
      return {};
    }
    if (PeerIsThisUser(descriptor.get(), &pid)) return descriptor;
  }
}

ssize_t SendPieces(int descriptor, iovec* pieces, std::size_t count) {
  constexpr int kFlags = MSG_NOSIGNAL | MSG_DONTWAIT;
  char whole[kShort];
  std::size_t size = 0;
  std::size_t next = 0;
  for (; next < count && pieces[next].iov_len <= sizeof whole - size; ++next) {
    std::copy_n(static_cast<const char*>(pieces[next].iov_base), pieces[next].iov_len,
                whole + size);
    size += pieces[next].iov_len;
  }
  if (next == count) return send(descriptor, whole, size, kFlags);
  const msghdr header = Header(pieces, count);
  return sendmsg(descriptor, &header, kFlags);
}

ssize_t ReceivePieces(int descriptor, iovec* pieces, std::size_t count) {
  while (count > 1 && pieces[count - 1].iov_len == 0) --count;
  if (count == 1) return recv(descriptor, pieces->iov_base, pieces->iov_len, MSG_DONTWAIT);
  msghdr header = Header(pieces, count);
  return recvmsg(descriptor, &header, MSG_DONTWAIT);
}

bool SomebodyListens(const std::string& path) {
  sockaddr_un address;
  if (!MakeAddress(path, address)) return true;
  const UniqueFd descriptor = NewSocket();
  if (!descriptor || ConnectTo(descriptor.get(), address)) return true;
  return errno != ECONNREFUSED && errno != ENOENT;
}

}  // namespace platform
