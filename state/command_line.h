// SPDX-License-Identifier: Apache-2.0
// A parsed command line: a name and up to six parameters, all wide text.
//
// Plain data; command/parser.h fills it and reads it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ventrik {

struct CommandParameter {
  // The text is a C string wherever it goes, so it ends at its first 0.
  explicit CommandParameter(std::wstring_view characters = {})
      : text(characters.substr(0, characters.find(L'\0'))) {}

  std::wstring text;   // the characters between the quotes
  std::string narrow;  // result of the latest ParamNarrow
  std::string utf8;    // result of the latest ParamUtf8
};

struct CommandLine {
  std::vector<CommandParameter> parameters;  // in line order
  std::uint32_t parameterCount = 0;          // entries in `parameters`
  std::wstring name;                         // text before the first "(", or the whole line
  std::uint8_t matchFailed = 0;  // set by MatchCommand when the name was right and the count wrong
};

}  // namespace ventrik
