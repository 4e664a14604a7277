// SPDX-License-Identifier: Apache-2.0
#include "overlay/overlay_buffer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "platform/shared_memory.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr mode_t kEverybody = 0777;

// Memory in one piece, and for the graphics chip.
constexpr int kMemoryFlags = 3;
constexpr unsigned kMemoryKind = 9;

int OpenObject(const char* name) {
  const int descriptor = shm_open(name, O_RDWR | O_CREAT, kEverybody);
  if (descriptor == -1) return -1;
  // The creator's umask has taken bits away. Where somebody else is the owner, it's theirs to say.
  fchmod(descriptor, kEverybody);
  return descriptor;
}

std::int32_t Stride(const OverlayBuffer& buffer) {
  const std::int32_t end = buffer.width * buffer.bytesPerPixel + buffer.strideAlignment - 1;
  return end - end % buffer.strideAlignment;
}

}  // namespace

int InitBuffer(OverlayBuffer& buffer) {
  std::fprintf(stderr, "Init buffer:%s\n", buffer.sid.data());
  const std::string name = std::string("/") + buffer.sid.data();
  buffer.fd = OpenObject(name.c_str());
  if (buffer.fd == -1) {
    std::fprintf(stderr, "Open \"%s\" failed:%s\n", name.c_str(), std::strerror(errno));
    return 1;
  }
  const std::int32_t stride = Stride(buffer);
  buffer.size = static_cast<std::uint32_t>(buffer.height * stride);
  logger->print(L"stride: %d\tbytes: %d\n", stride, static_cast<std::int32_t>(buffer.size));
  shm_ctl_special(buffer.fd, kMemoryFlags, 0, buffer.size, kMemoryKind);  // the mapping will tell
  buffer.pixels = static_cast<std::uint8_t*>(platform::MapObject(buffer.fd, buffer.size));
  if (buffer.pixels == nullptr) {
    std::fprintf(stderr, "mmap failed:%s\n", std::strerror(errno));
    return 1;
  }
  std::size_t contiguous = 0;
  mem_offset64(buffer.pixels, NOFD, buffer.size, &buffer.physicalAddress, &contiguous);
  return 0;
}

void CloseBuffer(OverlayBuffer& buffer) {
  std::fprintf(stderr, "Close buffer:%s\n", buffer.sid.data());
  munmap(buffer.pixels, buffer.size);
  close(buffer.fd);
  buffer.fd = -1;
  buffer.size = 0;
  buffer.pixels = nullptr;
  buffer.physicalAddress = 0;
}

}  // namespace ventrik
