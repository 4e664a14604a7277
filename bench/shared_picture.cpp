// SPDX-License-Identifier: Apache-2.0
#include "bench/shared_picture.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "bench/picture/shared_surface.h"
#include "bench/report.h"

namespace ventrik::bench {
namespace {

constexpr mode_t kMode = 0600;  // testers are found only by the same user anyway
constexpr int kBars = 8;
constexpr int kRampTop = kSurfaceHeight * 3 / 4;  // rows of bars above the ramp

// A bar's number has one bit for each colour.
std::array<std::uint8_t, 4> PixelAt(int x, int y) {
  if (y >= kRampTop) {
    const auto grey = static_cast<std::uint8_t>(x * 255 / (kSurfaceWidth - 1));
    return {grey, grey, grey, 255};
  }
  const int bar = x * kBars / kSurfaceWidth;
  const auto part = [bar](int bit) {
    return static_cast<std::uint8_t>((bar & bit) != 0 ? 255 : 0);
  };
  return {part(4), part(2), part(1), 255};
}

bool WriteAll(int object, const std::vector<std::uint8_t>& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count =
        pwrite(object, bytes.data() + written, bytes.size() - written, static_cast<off_t>(written));
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
  return true;
}

bool Holds(int object, const std::vector<std::uint8_t>& bytes) {
  struct stat facts = {};
  if (fstat(object, &facts) != 0 || facts.st_size != static_cast<off_t>(bytes.size())) return false;
  std::vector<std::uint8_t> held(bytes.size());
  const ssize_t count = pread(object, held.data(), held.size(), 0);
  return count == static_cast<ssize_t>(held.size()) && held == bytes;
}

}  // namespace

std::vector<std::uint8_t> SharedTestPicture() {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(kSurfaceBytes);
  for (int y = 0; y < kSurfaceHeight; ++y) {
    for (int x = 0; x < kSurfaceWidth; ++x) {
      const auto pixel = PixelAt(x, y);
      bytes.insert(bytes.end(), pixel.begin(), pixel.end());
    }
  }
  return bytes;
}

SharedPicture::SharedPicture(const std::string& name) : name_(name) {
  if (Create()) return;
  if (errno == EEXIST) {
    TakeOver();
  } else {
    Report("%s can't be made: %s", name_.c_str(), std::strerror(errno));
  }
}

bool SharedPicture::Create() {
  object_ = shm_open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL, kMode);
  if (object_ == -1) return false;
  flock(object_, LOCK_EX);
  if (WriteAll(object_, SharedTestPicture())) return true;
  const int error = errno;
  Remove();
  errno = error;
  return false;
}

// Whoever made an object holds the lock on it as long as it lives. One that is still being filled
// doesn't hold the whole picture yet, so nobody takes it from its maker.
void SharedPicture::TakeOver() {
  const int object = shm_open(name_.c_str(), O_RDWR | O_NONBLOCK, 0);
  if (object == -1) return;
  if (flock(object, LOCK_EX | LOCK_NB) == 0 && Holds(object, SharedTestPicture())) {
    object_ = object;
  } else {
    close(object);
  }
}

void SharedPicture::Remove() {
  if (object_ == -1) return;
  shm_unlink(name_.c_str());
  close(std::exchange(object_, -1));
}

}  // namespace ventrik::bench
