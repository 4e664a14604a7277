// SPDX-License-Identifier: Apache-2.0
#include "replay/record_reader.h"

#include "replay/hex_digits.h"

namespace ventrik {

HexField ParseHexField(std::string_view text) {
  HexField field;
  field.result = static_cast<int>(text.size());
  if (text.size() == kFieldLength) {
    if (const auto value = ParseEightDigits(text.data())) {  // as nearly all fields are
      field.value = *value;
      return field;
    }
  }
  field.endsInNul = text.size() == kFieldLength && text.back() == '\0';
  for (std::size_t i = 0; i < text.size(); ++i) {
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

int ParseHexBytes(std::string_view text, Payload& payload) {
  const std::size_t decoded = DecodeHexPairs(text, payload.bytes.data());
  const bool isWhole = text.size() - decoded < 2;
  return isWhole ? static_cast<int>(text.size()) : -static_cast<int>(decoded);
}

}  // namespace ventrik
