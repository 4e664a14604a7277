// SPDX-License-Identifier: Apache-2.0
// The digits of batch logs: upper case only.
#pragma once

#include <array>
#include <cstdint>

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

}  // namespace ventrik
