// SPDX-License-Identifier: Apache-2.0
// Reading a batch log piece by piece, with results that the replay's decisions depend on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace ventrik {

inline constexpr std::size_t kLogField = 8;               // characters
inline constexpr std::size_t kMostHexCharacters = 16384;  // of one payload

struct HexField {
  // The characters read, 8 for a whole field. A character that is no digit, no blank and no NUL
  // makes it minus its index, or 0 for the first.
  int result = 0;
  std::uint32_t value = 0;  // of the digits up to the first blank, NUL or other character
  bool endsInNul = false;   // the eighth character is a NUL
};

// Reads a field. Not a cancellation point.
HexField ReadHexField(std::FILE* file);

struct Payload {
  std::array<std::uint8_t, kMostHexCharacters / 2> bytes = {};
};

// Reads `characters` hexadecimal digits, at most kMostHexCharacters, and decodes them into the
// payload; what isn't decoded keeps what it was. Returns the characters read. If one of the first
// two is no digit, 0; at a later one it stops, with minus twice the number of bytes decoded. Not a
// cancellation point.
int ReadHexBytes(std::FILE* file, std::size_t characters, Payload& payload);

}  // namespace ventrik
