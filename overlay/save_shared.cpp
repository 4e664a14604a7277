// SPDX-License-Identifier: Apache-2.0
#include "overlay/save_shared.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "platform/cancellation.h"
#include "platform/shared_memory.h"

namespace ventrik {
namespace {

constexpr char kObjectName[] = "/TORVALE_GLES2";
constexpr mode_t kEverybody = 0777;

constexpr std::uint32_t kWidth = 640;  // pixels
constexpr std::uint32_t kHeight = 480;
constexpr std::uint32_t kBitsPerPixel = 32;
constexpr std::uint32_t kImageSize = kWidth * kHeight * kBitsPerPixel / 8;  // bytes
constexpr std::uint32_t kFileHeaderSize = 14;
constexpr std::uint32_t kInfoHeaderSize = 40;
constexpr std::uint32_t kDataOffset = kFileHeaderSize + kInfoHeaderSize;
constexpr std::uint32_t kResolution = 10000;  // pixels for each metre

template <std::size_t Size>
class HeaderWriter {
 public:
  HeaderWriter& Put(std::uint32_t number, std::size_t size) {
    for (; size > 0; --size, number >>= 8) bytes_[place_++] = static_cast<std::uint8_t>(number);
    return *this;
  }
  HeaderWriter& Word16(std::uint32_t number) { return Put(number, 2); }
  HeaderWriter& Word32(std::uint32_t number) { return Put(number, 4); }
  const std::array<std::uint8_t, Size>& Bytes() const { return bytes_; }

 private:
  std::array<std::uint8_t, Size> bytes_ = {};
  std::size_t place_ = 0;
};

std::array<std::uint8_t, kFileHeaderSize> FileHeader() {
  constexpr std::uint32_t kMagic = 'B' + ('M' << 8);
  return HeaderWriter<kFileHeaderSize>()
      .Word16(kMagic)
      .Word32(kDataOffset + kImageSize)
      .Word32(0)  // reserved
      .Word32(kDataOffset)
      .Bytes();
}

std::array<std::uint8_t, kInfoHeaderSize> InfoHeader() {
  return HeaderWriter<kInfoHeaderSize>()
      .Word32(kInfoHeaderSize)
      .Word32(kWidth)
      .Word32(kHeight)
      .Word16(1)  // planes
      .Word16(kBitsPerPixel)
      .Word32(0)  // not compressed
      .Word32(kImageSize)
      .Word32(kResolution)
      .Word32(kResolution)
      .Word32(0)  // no palette, so neither used
      .Word32(0)  // nor important colours
      .Bytes();
}

void WriteFile(std::FILE* file, const std::uint8_t* pixels) {
  // Without a buffer the system takes the pixels from where they lie: should the server make its
  // object smaller meanwhile, the write ends early, where a copy of ours would end the process.
  std::setvbuf(file, nullptr, _IONBF, 0);
  const auto fileHeader = FileHeader();
  const auto infoHeader = InfoHeader();
  std::fwrite(fileHeader.data(), fileHeader.size(), 1, file);
  std::fwrite(infoHeader.data(), infoHeader.size(), 1, file);
  std::fwrite(pixels, kImageSize, 1, file);
}

}  // namespace

void SaveShared(const char* path) {
  const platform::CancellationDisabled whole;
  const int descriptor = shm_open(kObjectName, O_RDWR, kEverybody);
  if (descriptor == -1) {
    std::fprintf(stderr, "Open %s failed:%s\n", kObjectName, std::strerror(errno));
    return;
  }
  void* const memory = platform::MapObject(descriptor, kImageSize);
  if (memory == nullptr) {
    std::fprintf(stderr, "mmap failed:%s\n", std::strerror(errno));
    return;
  }
  off64_t address = 0;
  std::size_t contiguous = 0;
  mem_offset64(memory, NOFD, kImageSize, &address, &contiguous);
  std::FILE* file = std::fopen(path, "wbe");
  if (file == nullptr) {
    std::fprintf(stderr, "Failed to open %s", path);
    return;
  }
  WriteFile(file, static_cast<const std::uint8_t*>(memory));
  std::fclose(file);
  munmap(memory, kImageSize);
  close(descriptor);
}

}  // namespace ventrik
