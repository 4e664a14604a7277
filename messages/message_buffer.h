// SPDX-License-Identifier: Apache-2.0
// The growing block that requests of variable length are assembled in.
//
// A message is all its words first, then its packed strings and word lists. A word is 32 bits,
// little-endian. A packed string is its bytes, one 0 byte and padding to the next multiple of 4:
//   "" => 00 00 00 00    "abc" => 61 62 63 00    "abcd" => 61 62 63 64 00 00 00 00
// The padding has no meaning to a reader; here it is always 0, so that no stray memory goes out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string_view>

namespace ventrik {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "words are stored as the machine has them, and the wire is little-endian");

inline constexpr std::size_t kWordSize = sizeof(std::int32_t);  // bytes

// What a packed string of `length` bytes of text takes: always 1 to 4 bytes more than the text.
constexpr std::size_t PackedSize(std::size_t length) {
  return (length + 4) & ~std::size_t{3};
}

// What goes out of a text. Texts are C strings on the wire, so one ends at its first NUL.
//   "ab\0cd" => "ab"
std::string_view WireText(std::string_view text);

// The length word of a text: the bytes that go out, without the terminator.
std::int32_t TextLength(std::string_view text);

// Owns its block. Movable; a buffer that was moved from is empty and can be filled anew.
struct MessageBuffer {
  explicit MessageBuffer(std::size_t initialCapacity);
  MessageBuffer(MessageBuffer&& other) noexcept;
  MessageBuffer& operator=(MessageBuffer&& other) noexcept;

  // Makes room for `n` more bytes at `cursor`. Grows to the larger of what is needed and twice the
  // old capacity; then `base` and `cursor` are new and the bytes written so far are kept.
  void Reserve(std::size_t n);

  void AppendWord(std::int32_t word);
  void AppendHeader(std::initializer_list<std::int32_t> words);

  // Appends one packed string. Counts and length words are the caller's.
  void AppendString(std::string_view text);

  const void* data() const { return base.get(); }
  std::size_t size() const { return used; }

  std::unique_ptr<std::uint8_t[]> base;
  std::uint8_t* cursor;  // the next free byte
  std::size_t used;      // bytes written
  std::size_t capacity;  // bytes allocated
};

}  // namespace ventrik
