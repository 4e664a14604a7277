// SPDX-License-Identifier: Apache-2.0
#include "replay/record_reader.h"

#include "platform/cancellation.h"
#include "replay/hex_digits.h"

namespace ventrik {

HexField ReadHexField(std::FILE* file) {
  const platform::CancellationDisabled whole;
  std::array<char, kLogField> text = {};
  const std::size_t count = std::fread(text.data(), 1, text.size(), file);
  HexField field;
  field.result = static_cast<int>(count);
  field.endsInNul = count == text.size() && text.back() == '\0';
  for (std::size_t i = 0; i < count; ++i) {
    if (text[i] == ' ' || text[i] == '\0') break;
    const int digit = HexDigit(text[i]);
    if (digit < 0) {
      field.result = -static_cast<int>(i);
      break;
    }
    field.value = field.value << 4 | static_cast<std::uint32_t>(digit);
  }
  return field;
}

int ReadHexBytes(std::FILE* file, std::size_t characters, Payload& payload) {
  const platform::CancellationDisabled whole;
  std::array<char, kMostHexCharacters> text;
  const std::size_t count = std::fread(text.data(), 1, characters, file);
  for (std::size_t i = 0; i + 1 < count; i += 2) {
    const int high = HexDigit(text[i]);
    const int low = HexDigit(text[i + 1]);
    if (high < 0 || low < 0) return -static_cast<int>(i);
    payload.bytes[i / 2] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return static_cast<int>(count);
}

}  // namespace ventrik
