// SPDX-License-Identifier: Apache-2.0
// What the tests of the printers have in common: messages put together from pieces, and their
// texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "messages/dispatch.h"
#include "tests/messages/bytes.h"
#include "tests/messages/guarded_block.h"

namespace ventrik {

// The text of a message that lies against unreadable memory.
inline std::string TextOf(const Bytes& message) {
  return MessageText(GuardedBlock(message.value.data(), message.value.size()).Block());
}

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.value.insert(left.value.end(), right.value.begin(), right.value.end());
  return left;
}

inline Bytes Raw(std::string_view text) {
  return Copy(text.data(), text.size());
}

// Texts too long to be written out in Hex().
inline Bytes Packed(std::string_view text) {
  Bytes packed = Raw(text);
  do packed.value.push_back(0);
  while (packed.value.size() % 4 != 0);
  return packed;
}

inline Bytes Word(std::int32_t word) {
  return Copy(&word, sizeof word);
}

inline void SetWord(Bytes& message, std::size_t index, std::int32_t word) {
  std::memcpy(&message.value.at(index * sizeof word), &word, sizeof word);
}

}  // namespace ventrik
