// SPDX-License-Identifier: Apache-2.0
// The fields of a batch log's record, with results that the replay's decisions depend on. Pure
// functions; replay/log_file.h reads the text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ventrik {

inline constexpr std::size_t kFieldLength = 8;            // characters
inline constexpr std::size_t kMostHexCharacters = 16384;  // of one payload

struct HexField {
  // The characters that there were, 8 for a whole field. A character that is no digit, no blank and
  // no NUL makes it minus its index, or 0 for the first.
  int result = 0;
  std::uint32_t value = 0;  // of the digits up to the first blank, NUL or other character
  bool endsInNul = false;   // the eighth character is a NUL
};

// Reads a field, of which the end of a file may have cut off a part.
//   "0000001F" => {8, 31}     "1F      " => {8, 31}     "1F" => {2, 31}     "12x45678" => {-2, 18}
HexField ParseHexField(std::string_view text);

struct Payload {
  std::array<std::uint8_t, kMostHexCharacters / 2> bytes = {};
};

// Decodes hexadecimal digits, at most kMostHexCharacters, into the payload; what isn't decoded
// keeps what it was. Returns the number of characters. If one of the first two is no digit, 0; at a
// later one it stops, with minus twice the number of bytes decoded.
//   "01AB" => 4     "x1AB" => 0     "01xB" => -2     "01A" => 3, and the A is not decoded
int ParseHexBytes(std::string_view text, Payload& payload);

}  // namespace ventrik
