// SPDX-License-Identifier: Apache-2.0
// Names as a speller sees them: code points, and which of them count as the same letter.
//
// Folding maps one code point to one, so that a place in the folded text is the same place in the
// name. Pure functions.
#pragma once

#include <string>
#include <string_view>

namespace ventrik::bench {

// The code points of UTF-8 bytes; each byte that belongs to no well-formed sequence gives U+FFFD.
//   "Gy\xC5\x91r" => U+0047 U+0079 U+0151 U+0072     "\x80" => U+FFFD     "\xC3" "A" => U+FFFD
//   U+0041
std::u32string DecodeUtf8(std::string_view bytes);

// Appends one code point as UTF-8; surrogates and what lies above U+10FFFF as U+FFFD.
void AppendUtf8(std::string& bytes, char32_t letter);

// The letter that stands for all that a search takes as the same: lower case, without accents, for
// ASCII and the Latin letters from U+00C0 to U+017F; the curly apostrophes are "'".
//   "U", U+00FC, U+00DC => "u"     U+0141 => "l"     U+00DF (sharp s) => "s"     U+0153 (oe) => "o"
// Anything else stands for itself.
char32_t FoldLetter(char32_t letter);

// A name in the three forms that a search needs. `letters` and `folded` are of one length.
struct Name {
  std::string text;        // UTF-8
  std::u32string letters;  // the same
  std::u32string folded;   // each letter folded
};

Name MakeName(std::string_view utf8);

// Whether `name` begins with what was typed, and whether it is exactly that, both folded.
bool BeginsWith(const Name& name, const Name& typed);
bool SameName(const Name& name, const Name& typed);

}  // namespace ventrik::bench
