// SPDX-License-Identifier: Apache-2.0
#include "messages/message_buffer.h"

#include <algorithm>
#include <utility>

namespace ventrik {
namespace {

// Not zeroed, unlike make_unique: every byte up to `used` is written before it is read.
std::unique_ptr<std::uint8_t[]> Allocate(std::size_t capacity) {
  return std::unique_ptr<std::uint8_t[]>(new std::uint8_t[capacity]);
}

}  // namespace

std::string_view WireText(std::string_view text) {
  return text.substr(0, text.find('\0'));
}

std::int32_t TextLength(std::string_view text) {
  return static_cast<std::int32_t>(WireText(text).size());
}

MessageBuffer::MessageBuffer(std::size_t initialCapacity)
    : base(Allocate(initialCapacity)), cursor(base.get()), used(0), capacity(initialCapacity) {}

MessageBuffer::MessageBuffer(MessageBuffer&& other) noexcept
    : base(std::move(other.base)),
      cursor(std::exchange(other.cursor, nullptr)),
      used(std::exchange(other.used, 0)),
      capacity(std::exchange(other.capacity, 0)) {}

MessageBuffer& MessageBuffer::operator=(MessageBuffer&& other) noexcept {
  MessageBuffer taken(std::move(other));
  std::swap(base, taken.base);
  std::swap(cursor, taken.cursor);
  std::swap(used, taken.used);
  std::swap(capacity, taken.capacity);
  return *this;
}

void MessageBuffer::Reserve(std::size_t n) {
  if (used + n <= capacity) return;
  capacity = std::max(used + n, 2 * capacity);
  std::unique_ptr<std::uint8_t[]> larger = Allocate(capacity);
  std::copy_n(base.get(), used, larger.get());
  base = std::move(larger);
  cursor = base.get() + used;
}

void MessageBuffer::AppendWord(std::int32_t word) {
  AppendHeader({word});
}

void MessageBuffer::AppendHeader(std::initializer_list<std::int32_t> words) {
  const std::size_t size = words.size() * kWordSize;
  Reserve(size);
  cursor = std::copy_n(reinterpret_cast<const std::uint8_t*>(words.begin()), size, cursor);
  used += size;
}

void MessageBuffer::AppendString(std::string_view text) {
  const std::string_view sent = WireText(text);
  const std::size_t size = PackedSize(sent.size());
  Reserve(size);
  std::uint8_t* const end = std::copy(sent.begin(), sent.end(), cursor);
  std::fill(end, cursor + size, std::uint8_t{0});
  cursor += size;
  used += size;
}

}  // namespace ventrik
