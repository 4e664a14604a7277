// SPDX-License-Identifier: Apache-2.0
#include "platform/shared_memory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

int shm_ctl_special(int fd, int, std::uint64_t, std::uint64_t size, unsigned) {
  if (size > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
    errno = EINVAL;
    return -1;
  }
  const auto length = static_cast<off_t>(size);
  if (ftruncate(fd, length) != 0) return -1;
  // A file system in memory hands out a page when it is first written to, and kills the writer if
  // there is none left. So all of them are asked for now.
  const int error = length == 0 ? 0 : posix_fallocate(fd, 0, length);
  if (error == 0) return 0;
  static_cast<void>(ftruncate(fd, 0) == 0);
  errno = error;
  return -1;
}

int mem_offset64(const void*, int, std::size_t, off64_t*, std::size_t*) {
  errno = ENOSYS;
  return -1;
}

namespace platform {

void* MapObject(int fd, std::size_t size) {
  struct stat status = {};
  if (fstat(fd, &status) != 0) return nullptr;
  if (status.st_size < 0 || static_cast<std::uint64_t>(status.st_size) < size) {
    errno = ENXIO;
    return nullptr;
  }
  void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

}  // namespace platform
