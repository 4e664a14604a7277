// SPDX-License-Identifier: Apache-2.0
#include "bench/picture/shared_surface.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace ventrik::bench {
namespace {

// The object is read and not mapped: its owner may make it smaller at any time, and then a read
// ends early where a mapping would raise SIGBUS.
bool ReadPixels(int object, std::vector<std::uint8_t>& pixels) {
  std::size_t have = 0;
  while (have < pixels.size()) {
    const ssize_t count =
        pread(object, pixels.data() + have, pixels.size() - have, static_cast<off_t>(have));
    if (count == 0 || (count < 0 && errno != EINTR)) return false;
    if (count > 0) have += static_cast<std::size_t>(count);
  }
  return true;
}

std::string SizeError(off_t size) {
  return std::to_string(size) + " bytes instead of " + std::to_string(kSurfaceBytes);
}

bool HasSurfaceSize(int object, std::string& error) {
  struct stat facts = {};
  if (fstat(object, &facts) != 0 || !S_ISREG(facts.st_mode)) {
    error = "no memory object";
    return false;
  }
  if (facts.st_size != static_cast<off_t>(kSurfaceBytes)) {
    error = SizeError(facts.st_size);
    return false;
  }
  return true;
}

std::optional<Picture> ReadObject(int object, std::string& error) {
  if (!HasSurfaceSize(object, error)) return std::nullopt;
  Picture picture{kSurfaceWidth, kSurfaceHeight, std::vector<std::uint8_t>(kSurfaceBytes)};
  if (!ReadPixels(object, picture.pixels)) {
    error = "it ends while it is read";
    return std::nullopt;
  }
  return picture;
}

std::string ObjectName(const std::string& sid) {
  return "/" + sid;
}

// -1, with the reason in `error`, if the object can't be had.
int OpenObject(const std::string& sid, std::string& error) {
  if (!IsPlainFileName(sid)) {
    error = "not the name of a memory object";
    return -1;
  }
  // Without O_NONBLOCK a pipe of that name would hold up its reader until somebody writes to it.
  const int object = shm_open(ObjectName(sid).c_str(), O_RDONLY | O_NONBLOCK, 0);
  if (object == -1) error = std::strerror(errno);
  return object;
}

}  // namespace

std::optional<Picture> ReadSurface(const std::string& sid, std::string& error) {
  const int object = OpenObject(sid, error);
  if (object == -1) return std::nullopt;
  std::optional<Picture> picture = ReadObject(object, error);
  close(object);
  return picture;
}

void RemoveSurface(const std::string& sid) {
  std::string error;
  const int object = OpenObject(sid, error);
  if (object == -1) return;
  if (HasSurfaceSize(object, error) && flock(object, LOCK_EX | LOCK_NB) == 0) {
    shm_unlink(ObjectName(sid).c_str());
  }
  close(object);
}

}  // namespace ventrik::bench
