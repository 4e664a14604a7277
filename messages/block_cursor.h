// SPDX-License-Identifier: Apache-2.0
// The bounded readers of received blocks.
//
// Counts, lengths and terminators come from the other side and may be wrong in any way. Every read
// here stays inside the block: what lies beyond its end reads as 0 or as empty text, and a string
// without a terminator ends where the block ends. A string's length word is never used to move on,
// only the string's own measured length. Views; the block must outlive them and what they return.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ventrik {

// One received block. The bytes need no alignment; a null `data` goes with a `size` of 0.
struct ReceivedBlock {
  const std::uint8_t* data;
  std::size_t size;  // bytes

  // The word at `index`, counted in words from the block's start; the FunctionId is word 0. 0 if
  // any byte of it is beyond the end.
  std::int32_t Word(std::size_t index) const;

  // The byte at `offset`; 0 beyond the end.
  std::uint8_t Byte(std::size_t offset) const;

  // The double at the byte `offset`; 0.0 if any byte of it is beyond the end.
  double Double(std::size_t offset) const;
};

// Walks over the packed strings and word lists behind a message's header.
class BlockCursor {
 public:
  // Starts at word `firstWord`, or at the end if the block is shorter.
  BlockCursor(ReceivedBlock block, std::size_t firstWord);

  // The text at the cursor, without its terminator. Moves on by the packed size, at most to the
  // end.
  //   "abc\0" => "abc", 4 bytes on    "abcd\0..." => "abcd", 8 bytes on    at the end => ""
  std::string_view NextString();

  // NextString if `flag` is not 0; otherwise the string is absent: empty text, and the cursor
  // stays.
  std::string_view OptionalString(std::int32_t flag);

  // Copies the text at the cursor with a terminator into `buffer`, cut to `size` - 1 bytes, and
  // moves on by the whole string. Returns the count of bytes before the terminator. A `size` of 0
  // writes nothing.
  std::size_t CopyString(char* buffer, std::size_t size);

  // The word at the cursor, which moves on by 4 bytes. With fewer left, 0, and the cursor is at the
  // end.
  std::int32_t NextWord();

  bool AtEnd() const { return offset_ == block_.size; }

  // The bytes from the cursor to the end.
  std::size_t Remaining() const { return block_.size - offset_; }

 private:
  void Advance(std::size_t count);

  ReceivedBlock block_;
  std::size_t offset_;  // never beyond block_.size
};

}  // namespace ventrik
