// SPDX-License-Identifier: Apache-2.0
#include "bench/letters.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace ventrik::bench {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// What U+00C0 to U+017F fold to; "*" marks the two signs among them that are no letters.
constexpr std::string_view kLatinFolds =
    "aaaaaaaceeeeiiiidnooooo*ouuuuyts"  // U+00C0
    "aaaaaaaceeeeiiiidnooooo*ouuuuyty"  // U+00E0
    "aaaaaaccccccccddddeeeeeeeeeegggg"  // U+0100
    "gggghhhhiiiiiiiiiiiijjkkklllllll"  // U+0120
    "lllnnnnnnnnnoooooooorrrrrrssssss"  // U+0140
    "ssttttttuuuuuuuuuuuuwwyyyzzzzzzs"  // U+0160
    ;
static_assert(kLatinFolds.size() == 0x180 - 0xC0);

// The length that a lead byte promises; 0 if it is none.
std::size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

// Overlong forms, surrogates and numbers past the last are malformed although their bytes fit.
bool IsProper(char32_t letter, std::size_t length) {
  if (length == 3) return letter >= 0x800 && (letter < 0xD800 || letter >= 0xE000);
  if (length == 4) return letter >= 0x10000 && letter <= 0x10FFFF;
  return true;
}

// Reads one code point from the start of `bytes`, which is not empty, and drops what it has read.
char32_t TakeLetter(std::string_view& bytes) {
  const auto lead = static_cast<unsigned char>(bytes.front());
  const std::size_t length = SequenceLength(lead);
  char32_t letter = length <= 1 ? lead : lead & (0x7Fu >> length);
  bool proper = length != 0 && length <= bytes.size();
  for (std::size_t index = 1; proper && index < length; ++index) {
    const auto byte = static_cast<unsigned char>(bytes[index]);
    proper = (byte & 0xC0u) == 0x80u;
    letter = (letter << 6) | (byte & 0x3Fu);
  }
  proper = proper && IsProper(letter, length);
  bytes.remove_prefix(proper ? length : 1);
  return proper ? letter : kReplacement;
}

char Byte(char32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

char Continuation(char32_t letter, int shift) {
  return Byte(0x80u | ((letter >> shift) & 0x3Fu));
}

}  // namespace

std::u32string DecodeUtf8(std::string_view bytes) {
  std::u32string letters;
  letters.reserve(bytes.size());
  while (!bytes.empty()) letters += TakeLetter(bytes);
  return letters;
}

void AppendUtf8(std::string& bytes, char32_t letter) {
  if ((letter >= 0xD800 && letter < 0xE000) || letter > 0x10FFFF) letter = kReplacement;
  if (letter < 0x80) {
    bytes += Byte(letter);
  } else if (letter < 0x800) {
    bytes += Byte(0xC0u | (letter >> 6));
    bytes += Continuation(letter, 0);
  } else if (letter < 0x10000) {
    bytes += Byte(0xE0u | (letter >> 12));
    bytes += Continuation(letter, 6);
    bytes += Continuation(letter, 0);
  } else {
    bytes += Byte(0xF0u | (letter >> 18));
    bytes += Continuation(letter, 12);
    bytes += Continuation(letter, 6);
    bytes += Continuation(letter, 0);
  }
}

char32_t FoldLetter(char32_t letter) {
  if (letter >= U'A' && letter <= U'Z') return letter - U'A' + U'a';
  if (letter >= 0xC0 && letter < 0x180) {
    const char fold = kLatinFolds[letter - 0xC0];
    return fold == '*' ? letter : static_cast<char32_t>(fold);
  }
  if (letter == 0x2018 || letter == 0x2019) return U'\'';
  return letter;
}

Name MakeName(std::string_view utf8) {
  Name name{std::string(utf8), DecodeUtf8(utf8), {}};
  name.folded.resize(name.letters.size());
  std::transform(name.letters.begin(), name.letters.end(), name.folded.begin(), FoldLetter);
  return name;
}

bool BeginsWith(const Name& name, const Name& typed) {
  return name.folded.compare(0, typed.folded.size(), typed.folded) == 0;
}

bool SameName(const Name& name, const Name& typed) {
  return name.folded == typed.folded;
}

}  // namespace ventrik::bench
