// SPDX-License-Identifier: Apache-2.0
// The hexadecimal digits of batch logs: upper case only. Pure functions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ventrik {

namespace hex_digits {

constexpr std::array<std::int8_t, 256> MakeValues() {
  std::array<std::int8_t, 256> values = {};
  for (auto& value : values) value = -1;
  for (std::int8_t i = 0; i < 10; ++i) values[static_cast<std::size_t>('0' + i)] = i;
  for (std::int8_t i = 0; i < 6; ++i) {
    values[static_cast<std::size_t>('A' + i)] = static_cast<std::int8_t>(10 + i);
  }
  return values;
}

inline constexpr std::array<std::int8_t, 256> kValues = MakeValues();

}  // namespace hex_digits

// 0 to 15, or -1 for what is no digit.
constexpr int HexDigit(char character) {
  return hex_digits::kValues[static_cast<unsigned char>(character)];
}

// Decodes pairs, the high half first, up to the first pair with a character that is no digit, and
// returns how many characters those were. `bytes` has room for half of the text; what isn't decoded
// is not written. A last character without another is left alone.
//   "01AB" => 4, {01 AB}     "01aB" => 2, {01}     "01A" => 2, {01}
std::size_t DecodeHexPairs(std::string_view text, std::uint8_t* bytes);

// The number that eight characters are, the highest digit first, if all of them are digits.
std::optional<std::uint32_t> ParseEightDigits(const char* text);

// How many digits a text begins with.
std::size_t CountHexDigits(std::string_view text);

}  // namespace ventrik
