// SPDX-License-Identifier: Apache-2.0
#include "messages/block_cursor.h"

#include <algorithm>
#include <cstring>

#include "messages/message_buffer.h"

namespace ventrik {
namespace {

// The Value at `offset`, or a zero one if it isn't wholly inside. Blocks come unaligned.
template <class Value>
Value Read(const ReceivedBlock& block, std::size_t offset) {
  Value value{};
  if (offset <= block.size && block.size - offset >= sizeof value) {
    std::memcpy(&value, block.data + offset, sizeof value);
  }
  return value;
}

}  // namespace

std::int32_t ReceivedBlock::Word(std::size_t index) const {
  if (index >= size / kWordSize) return 0;  // before the product below can wrap round
  return Read<std::int32_t>(*this, index * kWordSize);
}

std::uint8_t ReceivedBlock::Byte(std::size_t offset) const {
  return Read<std::uint8_t>(*this, offset);
}

double ReceivedBlock::Double(std::size_t offset) const {
  return Read<double>(*this, offset);
}

BlockCursor::BlockCursor(ReceivedBlock block, std::size_t firstWord)
    : block_(block), offset_(std::min(firstWord, block.size / kWordSize + 1) * kWordSize) {
  offset_ = std::min(offset_, block_.size);
}

std::string_view BlockCursor::NextString() {
  if (AtEnd()) return {};
  const std::string_view rest(reinterpret_cast<const char*>(block_.data) + offset_, Remaining());
  const std::string_view text = WireText(rest);
  Advance(PackedSize(text.size()));
  return text;
}

std::string_view BlockCursor::OptionalString(std::int32_t flag) {
  return flag != 0 ? NextString() : std::string_view();
}

std::size_t BlockCursor::CopyString(char* buffer, std::size_t size) {
  const std::string_view text = NextString();
  if (size == 0) return 0;
  const std::size_t copied = std::min(text.size(), size - 1);
  buffer[std::copy_n(text.data(), copied, buffer) - buffer] = '\0';
  return copied;
}

std::int32_t BlockCursor::NextWord() {
  const std::int32_t word = Read<std::int32_t>(block_, offset_);
  Advance(kWordSize);
  return word;
}

void BlockCursor::Advance(std::size_t count) {
  offset_ += std::min(count, Remaining());
}

}  // namespace ventrik
