// SPDX-License-Identifier: Apache-2.0
// Reading single keys from standard input.
//
// The terminal is in raw mode (no line editing, no echo) only for the length of each read. Nothing
// is read ahead, so keys typed early wait in the terminal.
#pragma once

#include <cstdint>
#include <optional>

namespace ventrik {

// One byte as a number, -1 after a pause at the end of the input or if it can't be read. Nothing if
// the program is being ended by a signal. Blocks. Main thread.
std::optional<int> ReadRawByte();

// One whole character, decoded from UTF-8; 0 at the end of the input. Nothing as ReadRawByte.
// Oddity: prints the number of each continuation byte and a blank.
std::optional<std::uint32_t> ReadKey();

// The decoding alone. `next` delivers the bytes, `printByte` is called for each continuation byte.
//   41 => 'A'    C3 A9 => U+00E9    FF, the end of the input => 0, and no more bytes are read
template <class Next, class PrintByte>
std::optional<std::uint32_t> DecodeKey(Next next, PrintByte printByte) {
  const std::optional<int> first = next();
  if (!first) return std::nullopt;
  const auto lead = static_cast<std::uint32_t>(*first);
  if ((lead & 0x80) == 0) return lead;
  std::uint32_t value = lead & 0x1F;
  int following = 1;
  if ((lead & 0x20) != 0) {
    int clear = 4;
    while (clear >= 0 && (lead >> clear & 1) != 0) --clear;
    if (clear < 0) return 0;
    value = lead & ((1u << clear) - 1);
    following = 6 - clear;
  }
  for (; following > 0; --following) {
    const std::optional<int> byte = next();
    if (!byte) return std::nullopt;
    printByte(static_cast<std::uint32_t>(*byte));
    value = value * 64 + (static_cast<std::uint32_t>(*byte) & 0x3F);
  }
  return value;
}

}  // namespace ventrik
