// SPDX-License-Identifier: Apache-2.0
// Pictures, and files of them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventrik::bench {

// Red, green, blue and alpha, a byte each; the first row is the upper edge.
struct Picture {
  int width = 0;  // pixels
  int height = 0;
  std::vector<std::uint8_t> pixels;  // 4 * width * height
};

// The bytes of a PNG file. None if the sizes don't fit the pixels, or for lack of memory. Pure.
std::optional<std::vector<std::uint8_t>> EncodePng(const Picture& picture);

// Whether a text that came over the wire may name a file in a folder: 1 to 200 bytes, no "/", no
// "." at the beginning, no control character.
//   "shot.png", "M\xC3\xBCnchen 1" => yes     "", "../x", "/tmp/x", "a/b", ".x", "a\nb" => no
bool IsPlainFileName(std::string_view name);

// Writes the picture to `folder`/`name` as PNG. `name` must be plain. The file appears whole; what
// had the name before, be it a link, is replaced and not written through. On failure returns false
// with the reason in `error`, which begins with the path, and leaves what was there. Blocks as long
// as the disk takes.
bool SavePng(const std::string& folder, const std::string& name, const Picture& picture,
             std::string& error);

}  // namespace ventrik::bench
