// SPDX-License-Identifier: Apache-2.0
// The console writer that every room prints through, and the colours of its texts.
//
// Only the interface lives here, so that the lowest rooms can print; console/logger_posix.h writes
// to the real standard output. All text is wide: once standard output is wide-oriented, narrow
// output on it fails silently.
#pragma once

#include <cstdio>

namespace ventrik {

// Narrow, for the %s conversion of a wide format: "%sError: Bad syntax!\n%s" takes ColourRed and
// ColourReset.
inline constexpr const char* ColourRed = "\033[1;31m";     // error messages, the monkey's mark
inline constexpr const char* ColourGreen = "\033[1;32m";   // command lines, the banner
inline constexpr const char* ColourYellow = "\033[1;33m";  // comments of batch files
inline constexpr const char* ColourReset = "\033[0;37m";   // ends every coloured text

class Logger {
 public:
  // Formats as wprintf does and writes to standard output. Returns the number of wide characters,
  // or a negative value, which no caller looks at. A narrow text that is not plain ASCII must come
  // through Utf8ToWide and %ls: a byte that cannot be decoded makes %s give up the whole text.
  // Any thread; lines of several threads can mix.
  virtual int print(const wchar_t* format, ...) = 0;

  // The same on `stream`, which becomes wide-oriented.
  virtual int printTo(std::FILE* stream, const wchar_t* format, ...) = 0;

  virtual ~Logger() = default;
};

}  // namespace ventrik
