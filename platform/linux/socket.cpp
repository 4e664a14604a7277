// SPDX-License-Identifier: Apache-2.0
#include "platform/linux/socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cerrno>
#include <cstring>

namespace platform {
namespace {

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

bool SomebodyListens(const std::string& path) {
  sockaddr_un address;
  if (!MakeAddress(path, address)) return true;
  const UniqueFd descriptor = NewSocket();
  if (!descriptor || ConnectTo(descriptor.get(), address)) return true;
  return errno != ECONNREFUSED && errno != ENOENT;
}

}  // namespace platform
