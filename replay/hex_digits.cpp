// SPDX-License-Identifier: Apache-2.0
// Sixteen characters at a time, in vectors that the compiler maps to what the processor has. What a
// block can't settle, because it holds another character or is cut short, goes character by
// character.
#include "replay/hex_digits.h"

#include <cstring>

#include "replay/byte_vector.h"

namespace ventrik {
namespace {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "a pair's first character is its low byte");

using Pairs [[gnu::vector_size(16)]] = std::uint16_t;
using Decoded [[gnu::vector_size(8)]] = std::uint8_t;

// FF where the character is a letter of the digits, 0 elsewhere.
ByteVector LetterMask(ByteVector characters) {
  return reinterpret_cast<ByteVector>(characters - 'A' < 6);
}

bool AreDigits(ByteVector characters) {
  const auto isDecimal = reinterpret_cast<ByteVector>(characters - '0' < 10);
  return AreAllSet(isDecimal | LetterMask(characters));
}

// Expects digits.
Decoded DecodeBlock(ByteVector characters) {
  const auto values =
      reinterpret_cast<Pairs>((characters & 15) + (LetterMask(characters) & std::uint8_t{9}));
  return __builtin_convertvector((values << 4 | values >> 8) & 0xFF, Decoded);
}

}  // namespace

std::size_t DecodeHexPairs(std::string_view text, std::uint8_t* bytes) {
  std::size_t at = 0;
  for (; text.size() - at >= kVectorSize; at += kVectorSize) {
    const ByteVector characters = LoadVector(text.data() + at);
    if (!AreDigits(characters)) break;
    const Decoded decoded = DecodeBlock(characters);
    std::memcpy(bytes + at / 2, &decoded, sizeof decoded);
  }
  for (; text.size() - at >= 2; at += 2) {
    const int high = HexDigit(text[at]);
    const int low = HexDigit(text[at + 1]);
    if (high < 0 || low < 0) break;
    bytes[at / 2] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return at;
}

// Eight characters are one word, which takes less than a vector that has to be put together.
std::optional<std::uint32_t> ParseEightDigits(const char* text) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kTops = kOnes * 0x80;
  std::uint64_t word = 0;
  std::memcpy(&word, text, sizeof word);
  // The top bit of each byte tells whether the rest of it is at least so much.
  const auto reaches = [rest = word & ~kTops](std::uint64_t least) {
    return rest + kOnes * (0x80 - least);
  };
  const std::uint64_t decimals = reaches('0') & ~reaches('9' + 1);
  const std::uint64_t letters = reaches('A') & ~reaches('F' + 1) & kTops;
  if (((decimals | letters) & ~word & kTops) != kTops) return std::nullopt;
  std::uint64_t value = (word & kOnes * 15) + (letters >> 7) * 9;
  value = (value << 4 | value >> 8) & 0x00FF00FF00FF00FF;
  value = (value << 8 | value >> 16) & 0x0000FFFF0000FFFF;
  return static_cast<std::uint32_t>(value << 16 | value >> 32);
}

std::size_t CountHexDigits(std::string_view text) {
  std::size_t at = 0;
  while (text.size() - at >= kVectorSize && AreDigits(LoadVector(text.data() + at))) {
    at += kVectorSize;
  }
  while (at < text.size() && HexDigit(text[at]) >= 0) ++at;
  return at;
}

}  // namespace ventrik
