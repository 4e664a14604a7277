// SPDX-License-Identifier: Apache-2.0
// The seam to the operating system: shared memory objects as QNX Neutrino has them.
//
// Opening, naming and closing an object is plain POSIX (shm_open) and isn't repeated here. Any
// thread; nothing here waits or is a cancellation point. A failure is -1 (or null) with errno set.
#pragma once

#include <sys/mman.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>

#ifdef __QNX__

namespace platform {
// Memory that isn't there can't be mapped on this system.
inline void* MapObject(int fd, std::size_t size) {
  void* const memory = mmap64(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}
}  // namespace platform

#else

inline constexpr int NOFD = -1;  // for mem_offset64: whatever object the memory belongs to

// Gives an object its size, in bytes, and the memory for all of it; what it held up to there stays.
// `flags`, `paddr` and `special` say on the target what kind of memory it is to be; no effect here.
// Errors: EBADF, EINVAL; ENOSPC if there is no room for it, and then the object is empty.
int shm_ctl_special(int fd, int flags, std::uint64_t paddr, std::uint64_t size, unsigned special);

// The physical address of `length` bytes of memory, and how many of them lie in one piece. Always
// fails here with ENOSYS, and touches neither result: a process isn't told.
int mem_offset64(const void* memory, int fd, std::size_t length, off64_t* offset,
                 std::size_t* contiguous);

namespace platform {

// Maps the first `size` bytes of an object for reading and writing, shared with all who map it;
// null on failure. Errors: those of mmap; ENXIO if the object is smaller: touching what lies behind
// its end would kill the process.
void* MapObject(int fd, std::size_t size);

}  // namespace platform

#endif
