// SPDX-License-Identifier: Apache-2.0
// Bytes of BMP files, right or wrong ones, for tests.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

namespace ventrik::tests {

// A palette entry as the file has it.
struct Entry {
  std::uint8_t blue;
  std::uint8_t green;
  std::uint8_t red;
  std::uint8_t unused = 0;
};

// The codes of runs, byte by byte.
std::string Codes(std::initializer_list<int> bytes);

inline const std::string kEndOfLine("\0\0", 2);
inline const std::string kEndOfBitmap("\0\1", 2);

// Where the parts of a file begin.
inline constexpr std::size_t kInfoHeader = 14;
inline constexpr std::size_t kPaletteStart = 54;

// A file in its parts; each field is written as it stands here.
struct BmpFile {
  std::uint16_t type = 19778;
  std::uint32_t fileSize = 0;
  std::uint16_t reserved1 = 0;
  std::uint16_t reserved2 = 0;
  std::uint32_t dataOffset = 0;
  std::uint32_t headerSize = 40;
  std::int32_t width = 4;
  std::int32_t height = 1;
  std::uint16_t planes = 1;
  std::uint16_t bitCount = 8;
  std::uint32_t compression = 1;
  std::uint32_t imageSize = 0;
  std::uint32_t xResolution = 0;
  std::uint32_t yResolution = 0;
  std::optional<std::uint32_t> coloursUsed;  // else the palette's entries
  std::uint32_t coloursImportant = 0;
  std::vector<Entry> palette;
  std::string codes;

  // The fields of both headers, one by one, as the file has them.
  std::vector<std::string> Fields() const;
  std::string PaletteBytes() const;
  std::string Bytes() const;
};

}  // namespace ventrik::tests
