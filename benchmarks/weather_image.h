// SPDX-License-Identifier: Apache-2.0
// A weather image with many short runs, for the benchmarks, and a device that only counts what it
// is told to draw.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include "benchmarks/beside.h"
#include "overlay/bmp_decoder.h"
#include "overlay/bmp_output_device.h"

namespace ventrik {

constexpr std::size_t kBmpHeaders = 54;    // bytes
constexpr std::size_t kBmpPalette = 1024;  // bytes
constexpr std::size_t kBlock = 65536;      // bytes read at a time

struct WeatherImage {
  std::string path;
  std::size_t runs = 0;
  int side = 0;
};

inline void Put(std::string& bytes, std::size_t place, std::uint32_t number) {
  std::memcpy(&bytes[place], &number, sizeof number);
}

// A square of coloured runs of 1 to 15 pixels, none of them black.
inline WeatherImage MakeImage(int side) {
  static const Scratch scratch;
  std::minstd_rand random(5);
  WeatherImage image = {"", 0, side};
  std::string codes;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++image.runs) {
      const int length = std::min(side - x, 1 + static_cast<int>(random() % 15));
      codes += static_cast<char>(length);
      codes += static_cast<char>(1 + random() % 255);
      x += length;
    }
    codes += '\0';
    codes += y + 1 < side ? '\0' : '\1';
  }
  std::string bytes(kBmpHeaders + kBmpPalette, '\0');
  bytes[0] = 'B';
  bytes[1] = 'M';
  Put(bytes, 2, static_cast<std::uint32_t>(bytes.size() + codes.size()));
  Put(bytes, 10, kBmpHeaders + kBmpPalette);
  Put(bytes, 14, 40);
  bytes[26] = 1;
  bytes[28] = 8;
  Put(bytes, 18, static_cast<std::uint32_t>(side));
  Put(bytes, 22, static_cast<std::uint32_t>(side));
  Put(bytes, 30, 1);
  Put(bytes, 46, 256);
  for (std::uint32_t i = 0; i < 256; ++i) Put(bytes, kBmpHeaders + 4 * i, i * 0x010305);
  image.path = scratch.Write("image" + std::to_string(side), bytes + codes);
  return image;
}

class CountingDevice : public CBMPOutputDevice {
 public:
  void SetAreas(const GeoRect&, const GeoRect&, const GeoRect&) override {}
  void BeginImage(std::int32_t, std::int32_t) override {}
  void DrawRun(std::int32_t, std::int32_t count, const std::uint8_t*) override {
    ++runs;
    pixels += static_cast<std::size_t>(count);
  }
  void SetPosition(std::int32_t, std::int32_t) override {}
  void EndImage() override {}

  std::size_t runs = 0;
  std::size_t pixels = 0;
};

inline void Decode(const WeatherImage& image, CBMPOutputDevice& device) {
  static std::uint8_t block[kBlock];
  const int file = open(image.path.c_str(), O_RDONLY | O_CLOEXEC);
  CBMPDecoder decoder(&device, block, kBlock);
  ReadBmp(decoder, file);
  close(file);
  FinishBmp(decoder);
}

}  // namespace ventrik
