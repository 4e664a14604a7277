// SPDX-License-Identifier: Apache-2.0
#include "tests/messages/bytes.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <string>

namespace ventrik {

bool operator==(const Bytes& left, const Bytes& right) {
  return left.value == right.value;
}

std::ostream& operator<<(std::ostream& out, const Bytes& bytes) {
  out << bytes.value.size() << " bytes:" << std::hex << std::uppercase << std::setfill('0');
  for (std::size_t i = 0; i < bytes.value.size(); ++i) {
    out << (i % 4 == 0 ? " " : "") << std::setw(2) << int{bytes.value[i]};
  }
  return out << std::dec << std::setfill(' ');
}

Bytes Hex(std::string_view notation) {
  Bytes bytes;
  for (std::size_t at = 0; at < notation.size(); ++at) {
    if (notation[at] == ' ') continue;
    if (notation[at] == '\'') {
      while (notation.at(++at) != '\'') {
        bytes.value.push_back(static_cast<std::uint8_t>(notation[at]));
      }
      continue;
    }
    const std::string pair(notation.substr(at++, 2));
    std::size_t digits = 0;
    bytes.value.push_back(static_cast<std::uint8_t>(std::stoi(pair, &digits, 16)));
    EXPECT_EQ(digits, 2u) << "not a pair of digits: " << pair;
  }
  return bytes;
}

Bytes Copy(const void* data, std::size_t size) {
  const auto* first = static_cast<const std::uint8_t*>(data);
  return {{first, first + size}};
}

}  // namespace ventrik
