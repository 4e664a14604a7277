// SPDX-License-Identifier: Apache-2.0
#include "bench/picture/png_file.h"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace ventrik::bench {
namespace {

constexpr std::size_t kLongestName = 200;  // bytes; with an addition it still is a file's name
constexpr mode_t kFileMode = 0644;

bool WriteAll(int file, const std::vector<std::uint8_t>& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = write(file, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  return true;
}

// A file that nobody had before, so that nothing can be written through it to elsewhere.
bool WriteNewFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  unlink(path.c_str());
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kFileMode);
  if (file == -1) return false;
  const bool written = WriteAll(file, bytes);
  return (close(file) == 0) && written;
}

}  // namespace

std::optional<std::vector<std::uint8_t>> EncodePng(const Picture& picture) {
  const bool hasArea = picture.width > 0 && picture.height > 0;
  if (!hasArea || picture.pixels.size() != std::size_t{4} *
                                               static_cast<std::size_t>(picture.width) *
                                               static_cast<std::size_t>(picture.height)) {
    return std::nullopt;
  }
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width);
  image.height = static_cast<png_uint_32>(picture.height);
  image.format = PNG_FORMAT_RGBA;
  std::vector<std::uint8_t> bytes(PNG_IMAGE_PNG_SIZE_MAX(image));
  png_alloc_size_t size = bytes.size();
  const int encoded =
      png_image_write_to_memory(&image, bytes.data(), &size, 0, picture.pixels.data(), 0, nullptr);
  if (encoded == 0) return std::nullopt;
  bytes.resize(size);
  return bytes;
}

bool IsPlainFileName(std::string_view name) {
  const auto isControl = [](char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
  };
  return !name.empty() && name.size() <= kLongestName && name.front() != '.' &&
         name.find('/') == std::string_view::npos &&
         std::none_of(name.begin(), name.end(), isControl);
}

bool SavePng(const std::string& folder, const std::string& name, const Picture& picture,
             std::string& error) {
  const std::string path = folder + "/" + name;
  const auto bytes = EncodePng(picture);
  if (!bytes) {
    error = path + ": the picture can't be encoded";
    return false;
  }
  const std::string unfinished = folder + "/." + name + ".part";
  if (WriteNewFile(unfinished, *bytes) && std::rename(unfinished.c_str(), path.c_str()) == 0) {
    return true;
  }
  error = path + ": " + std::strerror(errno);
  unlink(unfinished.c_str());
  return false;
}

}  // namespace ventrik::bench
