// SPDX-License-Identifier: Apache-2.0
// From one line of text to a command's name and parameters.
//
// A line is `Cmd` or `Cmd("param1","param2")`. White space outside quotes and variables are gone
// before it gets here. Only the double quote means anything between the parentheses, and it has no
// escape; everything outside a pair of quotes is skipped.
#pragma once

#include <cstddef>

#include "state/command_line.h"

namespace ventrik {

inline constexpr std::uint32_t kMaxParameters = 6;

// Splits `line` into `commandLine`. Returns 1 if it is well formed, otherwise 0. Prints nothing.
//   Cmd           => name "Cmd"              Cmd()        => name "Cmd"
//   Cmd("a","b")  => two parameters          Cmd("a"x"b") => two parameters
//   Cmd(1,2)      => none                    )Cmd(        => name ")Cmd", none
//   Cmd(x)y("a")  => name "Cmd", one         Cmd("a)b")   => one, a)b
//   Cmd("a"       => 0                       Cmd("a)      => 0
//   #Cmd          => 0                       an empty line => 0
// More than kMaxParameters give 0. A refused line that is empty, a comment or short of a
// parenthesis leaves the former name and parameters in place.
int ParseCommandLine(CommandLine& commandLine, const std::wstring& line);

// Returns 1 if the command is `keyword` and has `expectedCount` parameters, or any number if that
// is 0. A right name with a wrong count prints the error, sets matchFailed and returns 0.
int MatchCommand(CommandLine& commandLine, const wchar_t* keyword, std::uint32_t expectedCount);

// Returns 1 if the parameter `index` exists and equals `text`, otherwise 0.
int ParamIs(const CommandLine& commandLine, std::size_t index, const wchar_t* text);

}  // namespace ventrik
