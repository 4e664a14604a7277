// SPDX-License-Identifier: Apache-2.0
// What the texts of several messages have in common.
//
// Lists end where the block ends, whatever their count says. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "messages/block_cursor.h"

namespace ventrik {

// The words for 1 and for everything else.
const char* ValidWord(std::int32_t state);      // "valid", "invalid"
const char* OnOffWord(std::int32_t state);      // "on", "off"
const char* TrueFalseWord(std::int32_t state);  // "true", "false"

const char* AudioSourceWord(std::int32_t source);  // "invalid value" for an unknown one

// Strings and whole words as the block has them.
std::vector<std::string_view> NextStrings(BlockCursor& cursor, std::int32_t count);
std::vector<std::int32_t> NextWords(BlockCursor& cursor, std::int32_t count);

// The string of a message that has nothing else: word 1 tells whether there is one.
std::string_view OneString(const ReceivedBlock& block);

// Appends one line.

void AppendQuotedLine(std::string& text, std::string_view label, std::string_view value);
//   AppendQuotedLine(text, "X> eis: ", "a") => X> eis: "a"

// Appends a label, the entries each with a blank behind it, and a line end.

void AppendQuotedList(std::string& text, std::string_view label,
                      const std::vector<std::string_view>& strings);
//   X> items: "a" "b"
void AppendRouteModes(std::string& text, std::string_view label, BlockCursor& cursor,
                      std::int32_t count);
//   X> routeModes: "fastest|ecoRoute" "0"
void AppendNumbers(std::string& text, std::string_view label,
                   const std::vector<std::int32_t>& numbers);
//   X> handles: 31 32

// Appends an entry with its number, on a line of its own: "   1. (jam)".
void AppendNumbered(std::string& text, std::int32_t number, std::string_view entry);

// Appends a label and, with no line end between them, a line for each event, counted from 1.
void AppendEvents(std::string& text, std::string_view label, BlockCursor& cursor,
                  std::int32_t count);
//   X> tmcEvents:   1. (jam)

// Appends "NAME> Enabled" for 1, "NAME> Disabled" for 2, and otherwise "NAME> Invalid (number)".
void AppendEnabledLine(std::string& text, const char* name, std::int32_t state);

// Appends, in red, that the tester doesn't print what this message holds.
void AppendNotImplemented(std::string& text, const char* name);

}  // namespace ventrik
