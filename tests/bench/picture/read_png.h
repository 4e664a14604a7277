// SPDX-License-Identifier: Apache-2.0
// PNG files as a test sees them.
#pragma once

#include <gtest/gtest.h>
#include <png.h>

#include <array>
#include <string>

#include "bench/picture/png_file.h"

namespace ventrik::bench {

// The picture in a file; an empty one if there is no good PNG file.
inline Picture ReadPng(const std::string& path) {
  png_image image = {};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&image, path.c_str()) == 0) return {};
  image.format = PNG_FORMAT_RGBA;
  Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
  picture.pixels.resize(PNG_IMAGE_SIZE(image));
  if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) return {};
  return picture;
}

using Pixel = std::array<int, 4>;

inline Pixel PixelOf(const Picture& picture, int x, int y) {
  const auto at = 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
                       static_cast<std::size_t>(x));
  if (at + 3 >= picture.pixels.size()) return {-1, -1, -1, -1};
  const std::uint8_t* pixel = &picture.pixels[at];
  return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

}  // namespace ventrik::bench
