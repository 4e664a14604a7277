// SPDX-License-Identifier: Apache-2.0
// A parameter's text in the form that a command wants it.
//
// None of these reports an error: a text that makes no sense gives the value stated.
#pragma once

#include <cstdint>

#include "state/command_line.h"

namespace ventrik {

// One byte for each character: file paths, list names and other plain ASCII. A character of 128 to
// 255 keeps its number, one above becomes "?"; none becomes 0. The pointer is valid until the next
// ParamNarrow on the parameter.
const char* ParamNarrow(CommandParameter& parameter);

// UTF-8, the form of every tagged text. Valid until the next ParamUtf8 on the parameter.
const char* ParamUtf8(CommandParameter& parameter);

// The number at the start of the text, with its prefix deciding the base; 0 if there is none. A
// number beyond 32 bits gives the nearest that fits.
//   "12" => 12   "0x10" => 16   "010" => 8   "-3x" => -3   "ten" => 0   "0b101" => 0
std::int32_t ParamInt(const CommandParameter& parameter);

// The decimal number at the start of the text, with "." whatever the environment; 0.0 if none.
double ParamDouble(const CommandParameter& parameter);

// 1 if the text begins with "on", otherwise 2: the values that requests carry.
// Oddity: only the first two characters count, so "onward" is on and "ON" is off.
std::int32_t ParamOnOff(const CommandParameter& parameter);

}  // namespace ventrik
