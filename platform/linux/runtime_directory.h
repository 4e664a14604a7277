// SPDX-License-Identifier: Apache-2.0
// The directory where a user's channels and attached names live.
//
// $XDG_RUNTIME_DIR/ventrik if that variable names an absolute path, else /tmp/ventrik-<uid>; mode
// 0700 and owned by this user, or nothing is done in it. In it stand
//
//     c.<process id>.<channel id>   the listening socket of a channel
//     n.<name>                      a link to the socket of the channel attached to a name
//     t.<process id>                such a link in the making
//
// Files of dead processes are removed by the next one that creates a channel.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/unique_fd.h"

namespace platform {

// The directory's path, creating it if `create`. Nothing with errno set: ENOENT if it is not there,
// EPERM if it is not a directory of this user alone.
std::optional<std::string> RuntimeDirectory(bool create);

// The path of a channel's socket. Nothing with errno set if the directory isn't usable.
std::optional<std::string> ChannelPath(pid_t pid, int chid, bool create);

// The path of a name's link. Nothing with errno EINVAL if `name` can't be one: empty, or holding
// "/" or ".."; ENAMETOOLONG if it is longer than a file's name may be.
std::optional<std::string> NamePath(std::string_view name, bool create);

// Keeps other processes from creating, removing or attaching while it lives. False if the directory
// can't be locked or a signal handler ran meanwhile.
class DirectoryLock {
 public:
  explicit DirectoryLock(const std::string& directory);
  explicit operator bool() const { return static_cast<bool>(descriptor_); }

 private:
  UniqueFd descriptor_;
};

// Removes sockets and names whose process is gone. Expects the directory's lock held.
void RemoveStaleFiles(const std::string& directory);

}  // namespace platform
