// SPDX-License-Identifier: Apache-2.0
// The name service: a name is a link to the socket of the channel that it was attached to.
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>
#include <string>

#include "platform/linux/connection.h"
#include "platform/linux/runtime_directory.h"
#include "platform/linux/socket.h"
#include "platform/neutrino.h"

struct dispatch_t {
  int chid;
};

namespace platform {
namespace {

struct AttachedName {
  name_attach_t record;  // first, because the caller holds a pointer to it
  std::string link;
};

// What a name's link points at, relative to the run-time directory; empty if there is no such link.
std::string LinkTarget(const std::string& link) {
  std::array<char, PATH_MAX> target = {};
  const ssize_t length = readlink(link.c_str(), target.data(), target.size());
  return length > 0 ? std::string(target.data(), static_cast<std::size_t>(length)) : std::string();
}

// The socket a name leads to. Only links that this library makes count.
std::string ChannelBehind(const std::string& directory, const std::string& link) {
  const std::string target = LinkTarget(link);
  const bool ours = target.compare(0, 2, "c.") == 0 && target.find('/') == std::string::npos;
  return ours ? directory + "/" + target : std::string();
}

// Points `link` at `target` in one step, whatever stood there. Expects the directory's lock held.
bool ReplaceLink(const std::string& directory, const std::string& link, const std::string& target) {
  const std::string fresh = directory + "/t." + std::to_string(getpid());
  unlink(fresh.c_str());
  if (symlink(target.c_str(), fresh.c_str()) != 0) return false;
  if (rename(fresh.c_str(), link.c_str()) == 0) return true;
  unlink(fresh.c_str());
  return false;
}

std::string ChannelFile(int chid) {
  return "c." + std::to_string(getpid()) + "." + std::to_string(chid);
}

}  // namespace
}  // namespace platform

dispatch_t* dispatch_create_channel(int chid, unsigned flags) {
  if (chid < 0 || flags != 0) {
    errno = EINVAL;
    return nullptr;
  }
  return new dispatch_t{chid};
}

int dispatch_destroy(dispatch_t* dpp) {
  if (dpp == nullptr) {
    errno = EINVAL;
    return -1;
  }
  ChannelDestroy(dpp->chid);
  delete dpp;
  return 0;
}

name_attach_t* name_attach(dispatch_t* dpp, const char* path, unsigned flags) {
  const platform::CancellationDisabled whole;
  if (dpp == nullptr || path == nullptr || flags != 0) {
    errno = EINVAL;
    return nullptr;
  }
  const std::optional<std::string> directory = platform::RuntimeDirectory(true);
  const std::optional<std::string> link = platform::NamePath(path, true);
  if (!directory || !link) return nullptr;
  const platform::DirectoryLock lock(*directory);
  if (!lock) return nullptr;
  const std::string channel = platform::ChannelBehind(*directory, *link);
  if (!channel.empty() && platform::SomebodyListens(channel)) {
    errno = EEXIST;
    return nullptr;
  }
  if (!platform::ReplaceLink(*directory, *link, platform::ChannelFile(dpp->chid))) return nullptr;
  auto attach = std::make_unique<platform::AttachedName>();
  attach->record = {dpp, dpp->chid, 0};
  attach->link = *link;
  return &attach.release()->record;
}

int name_detach(name_attach_t* attach, unsigned flags) {
  const platform::CancellationDisabled whole;
  if (attach == nullptr || flags != 0) {
    errno = EINVAL;
    return -1;
  }
  const std::unique_ptr<platform::AttachedName> attached(
      reinterpret_cast<platform::AttachedName*>(attach));
  const std::optional<std::string> directory = platform::RuntimeDirectory(false);
  if (directory) {
    const platform::DirectoryLock lock(*directory);
    const std::string own = platform::ChannelFile(attach->chid);
    if (platform::LinkTarget(attached->link) == own) unlink(attached->link.c_str());
  }
  return dispatch_destroy(attached->record.dpp);
}

int name_open(const char* name, int) {
  const platform::CancellationDisabled whole;
  if (name == nullptr) {
    errno = EINVAL;
    return -1;
  }
  const std::optional<std::string> directory = platform::RuntimeDirectory(false);
  const std::optional<std::string> link = platform::NamePath(name, false);
  if (!directory || !link) return -1;
  std::shared_ptr<platform::Connection> connection;
  const std::string channel = platform::ChannelBehind(*directory, *link);
  if (!channel.empty()) connection = platform::Connection::To(channel);
  if (!connection) {
    errno = ENOENT;
    return -1;
  }
  return platform::AddConnection(std::move(connection), 0);
}
