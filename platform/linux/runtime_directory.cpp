// SPDX-License-Identifier: Apache-2.0
#include "platform/linux/runtime_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "platform/linux/socket.h"

namespace platform {
namespace {

std::string DirectoryName() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr && runtime[0] == '/') return std::string(runtime) + "/ventrik";
  return "/tmp/ventrik-" + std::to_string(geteuid());
}

bool BelongsToThisUserAlone(const std::string& path) {
  struct stat found = {};
  if (lstat(path.c_str(), &found) != 0) return false;
  if (S_ISDIR(found.st_mode) && found.st_uid == geteuid() && (found.st_mode & 077) == 0)
    return true;
  errno = EPERM;
  return false;
}

std::vector<std::string> FilesIn(const std::string& directory) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(directory.c_str()), closedir);
  if (!open) return names;
  while (const dirent* entry = readdir(open.get())) names.emplace_back(entry->d_name);
  return names;
}

}  // namespace

std::optional<std::string> RuntimeDirectory(bool create) {
  std::string path = DirectoryName();
  if (create && mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) return std::nullopt;
  if (!BelongsToThisUserAlone(path)) return std::nullopt;
  return path;
}

std::optional<std::string> ChannelPath(pid_t pid, int chid, bool create) {
  std::optional<std::string> directory = RuntimeDirectory(create);
  if (!directory) return std::nullopt;
  return *directory + "/c." + std::to_string(pid) + "." + std::to_string(chid);
}

std::optional<std::string> NamePath(std::string_view name, bool create) {
  if (name.size() + 2 > NAME_MAX) {
    errno = ENAMETOOLONG;
    return std::nullopt;
  }
  const bool climbs = name.find('/') != name.npos || name.find("..") != name.npos;
  if (name.empty() || climbs) {
    errno = EINVAL;
    return std::nullopt;
  }
  std::optional<std::string> directory = RuntimeDirectory(create);
  if (!directory) return std::nullopt;
  return *directory + "/n." + std::string(name);
}

DirectoryLock::DirectoryLock(const std::string& directory)
    : descriptor_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
  if (!descriptor_) return;
  if (flock(descriptor_.get(), LOCK_EX) != 0) descriptor_ = UniqueFd();
}

void RemoveStaleFiles(const std::string& directory) {
  const std::vector<std::string> names = FilesIn(directory);
  for (const std::string& name : names) {
    if (name.compare(0, 2, "c.") != 0) continue;
    const std::string path = directory + "/" + name;
    if (!SomebodyListens(path)) unlink(path.c_str());
  }
  for (const std::string& name : names) {
    if (name.compare(0, 2, "t.") == 0) unlink((directory + "/" + name).c_str());
    if (name.compare(0, 2, "n.") != 0) continue;
    const std::string path = directory + "/" + name;
    struct stat target = {};
    if (stat(path.c_str(), &target) != 0 && errno == ENOENT) unlink(path.c_str());
  }
}

}  // namespace platform
