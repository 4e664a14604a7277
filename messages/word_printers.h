// SPDX-License-Identifier: Apache-2.0
// From the numbers of the wire to the words that responses and lists are printed with.
//
// The lists are the printers' own; what a command accepts is in messages/word_parsers.h. Numbers
// come from outside and may be anything. Pure functions for any thread.
#pragma once

#include <cstdint>
#include <string>

#include "messages/block_cursor.h"

namespace ventrik {

// Equality: one name for one number.

const char* MeasurementSystemText(std::int32_t value);  // empty for a number without a name
const char* LanguageText(std::int32_t value);           // the same
const char* RouteCalcStateText(std::int32_t value);     // the same

// A number without a name is printed in decimal. Oddity: the numbers look like bits, but a
// combination is not taken apart.
//   2 => "descending"   3 => "3"
std::string SortOptionText(std::int32_t value);

// Flags, from the lowest bit up; bits without a name are left out.

// Joined by "|". The number in decimal if that gives nothing.
//   0x3 => "fastest|shortest"   0 => "0"   0x400000 => "4194304"
std::string RouteModeText(std::int32_t flags);

// Each with a blank behind it. Only three of the flags have a name here.
//   0xD => "zoom visible "
std::string WorldPropertyText(std::int32_t flags);

// Each with a blank behind it, except for the highest.
//   0x3 => "geoCoordinate locationDetails "   0x11 => "geoCoordinate weatherData"
std::string WorldElementText(std::int32_t flags);

// Joined by "|", "unknown" among them for a number above 127, and the number in parentheses.
//   0 => "updSuccess(0)"   40 => "updOlderPackage|updSamePackage(40)"   2 => "(2)"
std::string UpdateResultText(std::int32_t flags);

// The text of the word at the cursor, which moves on by it.

std::string NextRouteMode(BlockCursor& cursor);
std::string NextSortOption(BlockCursor& cursor);

}  // namespace ventrik
