// SPDX-License-Identifier: Apache-2.0
// Random parameters, appended as text to the line under construction.
//
// The generators know the words of the command language and nothing of messages: what they write
// goes through the parser like a typed line. A generator that has no value to give clears
// commandValid and goes on. Each draws in the order of its description. Monkey's thread.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "monkey/monkey.h"

namespace ventrik {

// Which of the stored names or handles is taken. All callers draw one.
enum class Choice { first = 1, random = 2, last = 4 };

// Appends to `target`, or to the line if that is null.
void AppendText(Monkey& monkey, std::wstring_view text, std::wstring* target = nullptr);

// A whole number from `low` to `high`. None, and an invalid line, if `low` is above `high`.
void AppendInteger(Monkey& monkey, std::int32_t low, std::int32_t high);

// So many decimal digits; none if `count` is 0 or less.
void AppendDigits(Monkey& monkey, std::int32_t count);

// Two whole numbers with a comma between them.
void AppendIntegerPair(Monkey& monkey, std::int32_t low1, std::int32_t high1, std::int32_t low2,
                       std::int32_t high2);

// A number with so many decimals from `low` up to, but not reaching, `high`; the two change places
// if need be. Oddity: equal bounds give the number with `digits` zeroes behind it and no point.
// Less than 0 digits fail an assertion.
//   (3, 4, 2) => "3.17"   (3, 3, 2) => "300"
void GenerateDouble(Monkey& monkey, std::int32_t low, std::int32_t high, std::int32_t digits);

// "longitude latitude" inside the region, with six decimals.
void AppendGeoPosition(Monkey& monkey);

// So many letters from "a" to "y"; 4096 or more fail an assertion. Oddity: no "z".
void GenerateString(Monkey& monkey, std::int32_t length, std::wstring* target = nullptr);

// Three such letters.
std::wstring MakeRandomName();

// The name of a stored item, of any type if `type` is empty. Returns whether there was one; if not,
// the line is invalid. Oddity: the search for a random one of a type goes out from a drawn place in
// steps that leave every second record on each side out, so it can miss.
bool AppendNameFrom(Monkey& monkey, Choice choice, std::wstring_view type);

// The handle of a route, added to `collected` as well; nothing if there are no routes.
void AppendRouteHandle(Monkey& monkey, Choice choice, std::vector<std::int32_t>& collected);

// The parameters of an `item` command that makes an item of that type, and the monkey's note of it.
// An empty name is replaced by a random one. Oddities: a route handle's text already ends in the
// closing quote and parenthesis, which the caller adds once more; a `WepTempIcon` is noted under
// the name "temp", whatever it is called in the line.
void GenerateItem(Monkey& monkey, std::wstring_view type, std::wstring_view name,
                  std::vector<std::int32_t>& collected);

// The three parameters of `wep`.
void AppendWepParameters(Monkey& monkey);

// Where the search stands: the path, and the term that is being spelled.
void AppendEisPath(Monkey& monkey);

// The same for `list`; a country or state that is asked for and not spelled becomes a position.
void AppendListEis(Monkey& monkey);

// A chain of random fields with random values; no command uses it.
void AppendRandomEis(Monkey& monkey);

// The first parameter of `map`: a chain of map controls (monkey/map_control_eis.cpp).
void AppendMapControlEis(Monkey& monkey);

// The separators around parameters.
inline constexpr const wchar_t* kOpening = L"(\"";
inline constexpr const wchar_t* kBetween = L"\", \"";
inline constexpr const wchar_t* kClosing = L"\")";

}  // namespace ventrik
