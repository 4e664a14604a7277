// SPDX-License-Identifier: Apache-2.0
// The conversions between wide text (one 32-bit code point a character) and UTF-8 bytes.
//
// All text in memory is wide, all text on the wire is UTF-8. Both directions are forgiving and
// total: any input gives some output, and nothing is reported. Pure functions, any thread.
#pragma once

#include <string>
#include <string_view>

namespace ventrik {

// Encodes each character by itself: below 128 one byte, below 2048 two, everything else three.
//   U+0041 => 41    U+00E9 => C3 A9    U+20AC => E2 82 AC
// Oddity: four-byte sequences are never produced. A character above 65535 gets a first byte that is
// 224 plus all its bits from 12 up, cut to a byte.
std::string WideToUtf8(std::wstring_view text);

// Decodes; each malformed place gives one "?".
//   "\xC3\xA9" => U+00E9    "\x80" => "?"    "\xC3" => "?"    "\xC3" "A" => "?A"
// Oddities: a line feed passes through the middle of a sequence without ending it; a new lead byte
// replaces an unfinished sequence with no mark; overlong forms and surrogates are taken as they
// are.
std::wstring Utf8ToWide(std::string_view bytes);

// Encodes for the terminal: every code point in its proper UTF-8 form of up to four bytes, and "?"
// for what has none (surrogates, values above U+10FFFF). This is what the console's wide stream
// would write; WideToUtf8 is the form of the wire.
std::string WideToTerminal(std::wstring_view text);

// The same, behind what `bytes` holds already.
void AppendForTerminal(std::wstring_view text, std::string& bytes);

}  // namespace ventrik
