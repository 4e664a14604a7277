// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/bmp_file.h"

namespace ventrik::tests {
namespace {

template <class Number>
std::string Little(Number number) {
  std::string bytes;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> 8 * i & 0xFF);
  }
  return bytes;
}

}  // namespace

std::string Codes(std::initializer_list<int> bytes) {
  std::string codes;
  for (const int byte : bytes) codes += static_cast<char>(byte);
  return codes;
}

std::vector<std::string> BmpFile::Fields() const {
  return {Little(type),
          Little(fileSize),
          Little(reserved1),
          Little(reserved2),
          Little(dataOffset),
          Little(headerSize),
          Little(width),
          Little(height),
          Little(planes),
          Little(bitCount),
          Little(compression),
          Little(imageSize),
          Little(xResolution),
          Little(yResolution),
          Little(coloursUsed.value_or(static_cast<std::uint32_t>(palette.size()))),
          Little(coloursImportant)};
}

std::string BmpFile::PaletteBytes() const {
  std::string bytes;
  for (const Entry& entry : palette) {
    bytes += Codes({entry.blue, entry.green, entry.red, entry.unused});
  }
  return bytes;
}

std::string BmpFile::Bytes() const {
  std::string bytes;
  for (const std::string& field : Fields()) bytes += field;
  return bytes + PaletteBytes() + codes;
}

}  // namespace ventrik::tests
