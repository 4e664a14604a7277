// SPDX-License-Identifier: Apache-2.0
#include "console/utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ventrik {
namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080u;  // set in bytes that aren't ASCII

std::uint64_t EightBytes(const char* from) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

// Compilers make vector instructions of it.
template <std::size_t count>
void Widen(const char* from, wchar_t* to) {
  unsigned char bytes[count];  // of their own: `to` can't be among them
  std::memcpy(bytes, from, count);
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<wchar_t>(bytes[i]);
}

// Decodes into memory that has room for as many characters as there are bytes: no byte ever gives
// more than one, if the mark of an unfinished sequence is put down to its lead byte.
//
// TakeByte() has all the rules. The other two are short cuts for what makes up nearly all texts and
// give what TakeByte() would; they expect that no sequence is unfinished.
class Utf8Decoder {
 public:
  Utf8Decoder(std::string_view bytes, wchar_t* to)
      : at_(bytes.data()), end_(bytes.data() + bytes.size()), to_(to) {}

  // Returns the end of the characters.
  wchar_t* Decode() {
    while (at_ != end_) {
      TakeAscii();
      TakeWholeSequences();
      if (at_ == end_ || IsAscii(*at_)) continue;
      do {
        TakeByte();
      } while (pending_ != 0 && at_ != end_);
    }
    if (pending_ != 0) *to_++ = L'?';
    return to_;
  }

 private:
  static std::uint32_t Value(char byte) { return static_cast<unsigned char>(byte); }
  static bool IsAscii(char byte) { return Value(byte) < 0x80; }
  static bool IsContinuation(char byte) { return (Value(byte) & 0xC0) == 0x80; }

  std::size_t Left() const { return static_cast<std::size_t>(end_ - at_); }

  void Put(std::uint32_t code) { *to_++ = static_cast<wchar_t>(code); }

  // A single character among others is taken by itself, which is faster than by a block.
  void TakeAscii() {
    for (int singles = 0; singles < 2; ++singles) {
      if (at_ == end_ || !IsAscii(*at_)) return;
      Put(Value(*at_++));
    }
    TakeAsciiBlocks();
    while (at_ != end_ && IsAscii(*at_)) Put(Value(*at_++));
  }

  // Of a block that isn't all ASCII its first bytes count; what is widened beyond them will be
  // overwritten.
  void TakeAsciiBlocks() {
    while (Left() >= 16 && ((EightBytes(at_) | EightBytes(at_ + 8)) & kHighBits) == 0) {
      Widen<16>(at_, to_);
      Advance(16);
    }
    while (Left() >= 8) {
      const std::uint64_t notAscii = EightBytes(at_) & kHighBits;
      Widen<8>(at_, to_);
      if (notAscii != 0) return Advance(LowestByte(notAscii));
      Advance(8);
    }
  }

  void Advance(std::size_t count) {
    at_ += count;
    to_ += count;
  }

  // Where in memory the first byte is that has a bit set.
  static std::size_t LowestByte(std::uint64_t bytes) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
    return static_cast<std::size_t>(__builtin_ctzll(bytes)) / 8;
  }

  void TakeWholeSequences() {
    while (at_ != end_) {
      const std::uint32_t lead = Value(*at_);
      if (lead < 0xC0 || lead >= 0xF8) return;
      const bool taken = lead < 0xE0   ? TakeWholeSequence<2>()
                         : lead < 0xF0 ? TakeWholeSequence<3>()
                                       : TakeWholeSequence<4>();
      if (!taken) return;
    }
  }

  template <std::size_t length>
  bool TakeWholeSequence() {
    if (Left() < length) return false;
    std::uint32_t code = Value(at_[0]) & (0xFFu >> (length + 1));
    bool whole = true;
    for (std::size_t i = 1; i < length; ++i) {
      whole = whole && IsContinuation(at_[i]);
      code = (code << 6) + (Value(at_[i]) & 0x3Fu);
    }
    if (!whole) return false;
    Put(code);
    at_ += length;
    return true;
  }

  void TakeByte() {
    const std::uint32_t byte = Value(*at_++);
    if (byte == '\n') {
      Put('\n');  // Oddity: leaves an unfinished sequence waiting.
    } else if (byte < 0x80) {
      if (pending_ != 0) Put('?');
      Put(byte);
      pending_ = 0;
    } else if (byte < 0xC0) {
      if (pending_ == 0) return Put('?');
      code_ = (code_ << 6) + (byte & 0x3Fu);
      if (--pending_ == 0) Put(code_);
    } else if (byte < 0xE0) {
      code_ = byte & 0x1Fu;
      pending_ = 1;
    } else if (byte < 0xF0) {
      code_ = byte & 0x0Fu;
      pending_ = 2;
    } else if (byte < 0xF8) {
      code_ = byte & 0x07u;
      pending_ = 3;
    } else {
      Put('?');
      pending_ = 0;
    }
  }

  const char* at_;
  const char* const end_;
  wchar_t* to_;
  std::uint32_t code_ = 0;
  int pending_ = 0;  // continuation bytes still owed
};

char Byte(std::uint32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

char Continuation(std::uint32_t code, int shift) {
  return Byte(0x80 | ((code >> shift) & 0x3F));
}

bool IsAscii(wchar_t character) {
  return static_cast<std::uint32_t>(character) < 0x80;
}

// Writes eight characters if they are all ASCII. What is there otherwise has no meaning. Looks at
// the first two by themselves: single ones among others aren't worth more.
bool NarrowEight(const wchar_t* from, char* to) {
  if (!IsAscii(from[0]) || !IsAscii(from[1])) return false;
  std::uint32_t all = 0;
  char bytes[8];  // of their own: `from` can't be among them
  for (std::size_t i = 0; i < sizeof bytes; ++i) {
    const auto code = static_cast<std::uint32_t>(from[i]);
    all |= code;
    bytes[i] = Byte(code);
  }
  std::memcpy(to, bytes, sizeof bytes);
  return all < 0x80;
}

// Returns the end of what it has written, four bytes at most.
char* PutForTerminal(std::uint32_t code, char* to) {
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (code < 0x80) {
    *to++ = Byte(code);
  } else if (code > 0x10FFFF || surrogate) {
    *to++ = '?';
  } else if (code < 0x800) {
    *to++ = Byte(0xC0 | (code >> 6));
    *to++ = Continuation(code, 0);
  } else if (code < 0x10000) {
    *to++ = Byte(0xE0 | (code >> 12));
    *to++ = Continuation(code, 6);
    *to++ = Continuation(code, 0);
  } else {
    *to++ = Byte(0xF0 | (code >> 18));
    *to++ = Continuation(code, 12);
    *to++ = Continuation(code, 6);
    *to++ = Continuation(code, 0);
  }
  return to;
}

}  // namespace

std::string WideToUtf8(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (const wchar_t character : text) {
    const auto code = static_cast<std::uint32_t>(character);
    if (code < 0x80) {
      bytes += Byte(code);
    } else if (code < 0x800) {
      bytes += Byte(0xC0 + (code >> 6));
      bytes += Continuation(code, 0);
    } else {
      bytes +=
          Byte(0xE0 + (code >> 12));  // Oddity: no mask, so code points above 65535 spill over.
      bytes += Continuation(code, 6);
      bytes += Continuation(code, 0);
    }
  }
  return bytes;
}

std::wstring Utf8ToWide(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  Utf8Decoder decoder(bytes, text.data());
  text.resize(static_cast<std::size_t>(decoder.Decode() - text.data()));
  return text;
}

void AppendForTerminal(std::wstring_view text, std::string& bytes) {
  constexpr std::size_t kLongestForm = 4;
  const std::size_t before = bytes.size();
  bytes.resize(before + text.size() * kLongestForm);
  const wchar_t* at = text.data();
  const wchar_t* const end = at + text.size();
  char* to = bytes.data() + before;
  while (at != end) {
    while (end - at >= 8 && NarrowEight(at, to)) {
      at += 8;
      to += 8;
    }
    if (at != end) to = PutForTerminal(static_cast<std::uint32_t>(*at++), to);
  }
  bytes.resize(static_cast<std::size_t>(to - bytes.data()));
}

std::string WideToTerminal(std::wstring_view text) {
  std::string bytes;
  AppendForTerminal(text, bytes);
  return bytes;
}

}  // namespace ventrik
