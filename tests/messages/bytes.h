// SPDX-License-Identifier: Apache-2.0
// Blocks as tests write and compare them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

#include "messages/block_cursor.h"

namespace ventrik {

struct Bytes {
  std::vector<std::uint8_t> value;

  ReceivedBlock Block() const { return {value.data(), value.size()}; }
};

bool operator==(const Bytes& left, const Bytes& right);

// In groups of four, so that a failed comparison reads like a Hex() argument.
std::ostream& operator<<(std::ostream& out, const Bytes& bytes);

// Bytes in the order of the wire: pairs of hexadecimal digits and texts in single quotes; blanks
// are for the eye.
//   Hex("2E010000 03000000 'abc' 00")
Bytes Hex(std::string_view notation);

Bytes Copy(const void* data, std::size_t size);

// The bytes of an encoder's block.
template <class Block>
Bytes Wire(const Block& block) {
  return Copy(block.data(), block.size());
}

}  // namespace ventrik
