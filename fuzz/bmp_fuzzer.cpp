// SPDX-License-Identifier: Apache-2.0
// Any file must be decoded to its end, whatever the size of the blocks in which it is read, and
// what the device is told must make sense. The first byte of an input chooses the block size, the
// second what the block holds before; the rest is the file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzzed_console.h"
#include "overlay/bmp_decoder.h"

namespace {

constexpr std::size_t kColoursUsed = 46;       // where the field stands
constexpr std::uint32_t kManyColours = 70000;  // more than an image can name

void Demand(bool isTrue) {
  if (!isTrue) std::abort();
}

// Draws nothing, looks at everything.
class DemandingDevice : public ventrik::CBMPOutputDevice {
 public:
  void SetAreas(const ventrik::GeoRect&, const ventrik::GeoRect&,
                const ventrik::GeoRect&) override {
    Demand(false);  // the decoder knows no areas
  }
  void BeginImage(std::int32_t, std::int32_t) override { Demand(begun_++ == 0); }
  void DrawRun(std::int32_t x, std::int32_t count, const std::uint8_t* colour) override {
    Demand(begun_ == 1 && positions_ > 0 && x >= 0 && count >= 1 && count <= 255);
    std::uint8_t copy[4];
    std::memcpy(copy, colour, sizeof copy);  // all four can be read
    sum_ = static_cast<std::uint8_t>(sum_ + copy[0] + copy[1] + copy[2] + copy[3]);
  }
  void SetPosition(std::int32_t x, std::int32_t y) override {
    Demand(begun_ == 1 && x == 0 && y >= line_ && (positions_++ > 0 || y == 0));
    line_ = y;
  }
  void EndImage() override { Demand(positions_ > 0); }

 private:
  int begun_ = 0;
  std::size_t positions_ = 0;
  std::int32_t line_ = 0;
  volatile std::uint8_t sum_ = 0;
};

// Files with a palette of gigabytes are well read, but take the time of all others.
void LimitPalette(std::vector<std::uint8_t>& file) {
  std::uint32_t colours = 0;
  if (file.size() < kColoursUsed + sizeof colours) return;
  std::memcpy(&colours, &file[kColoursUsed], sizeof colours);
  if (colours < 1u << 29) colours %= kManyColours;
  std::memcpy(&file[kColoursUsed], &colours, sizeof colours);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ventrik::PrepareConsole();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::vector<std::uint8_t> buffer(data[0], data[1]);
  std::vector<std::uint8_t> bytes(data + 2, data + size);
  LimitPalette(bytes);
  const int file = memfd_create("bmp", MFD_CLOEXEC);
  Demand(file >= 0 &&
         write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
  lseek(file, 0, SEEK_SET);
  DemandingDevice device;
  ventrik::CBMPDecoder decoder(&device, buffer.data(), static_cast<std::uint32_t>(buffer.size()));
  const int result = ventrik::ReadBmp(decoder, file);
  Demand(result == 0 || result == 1);
  ventrik::FinishBmp(decoder);
  close(file);
  return 0;
}
