// SPDX-License-Identifier: Apache-2.0
// Any message of the catalogue as named fields, and back.
//
// The bench engine reads requests and writes responses through this, and shows any block by its
// fields. The names and kinds of a message's fields stand in messages/layout_table.cpp. Pure
// functions, any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "messages/block_cursor.h"
#include "messages/function_ids.h"

namespace ventrik {

// Each destination's text and its further items.
using DestinationValues = std::vector<std::pair<std::string, std::vector<std::string>>>;

// The value of a field, by its kind: a number for word, byte and length; a double; a string for the
// kinds of text and for bytes; a list of strings or words; destinations for the two trip kinds.
using FieldValue = std::variant<std::int32_t, double, std::string, std::vector<std::string>,
                                std::vector<std::int32_t>, DestinationValues>;

struct MessageField {
  std::string name;
  FieldValue value;
};

inline bool operator==(const MessageField& left, const MessageField& right) {
  return left.name == right.name && left.value == right.value;
}

using MessageFields = std::vector<MessageField>;

// The field of that name; nullptr if there is none.
const FieldValue* FindField(const MessageFields& fields, std::string_view name);

// All fields of the message, in the order of its layout; nothing if the block has no whole
// FunctionId or one that isn't catalogued. What the block is too short for is 0 or empty, and a
// list ends where the block does, whatever its count says. Bytes behind the last field are ignored.
std::optional<MessageFields> DecodeMessage(ReceivedBlock block);

// Writes the message's block to `out` and returns true. Fields may come in any order; those left
// out are 0 or empty. A text ends at its first NUL. Counts and lengths are those of the values; a
// `length` field, whose text doesn't travel, is given as a number.
//
// On an unknown number, an unknown or repeated field or a value of the wrong sort, returns false
// with `out` unchanged and the reason in `error`:
//   "RESP_INIT has no field 'answer'; it has result:word"
//   "RESP_INIT: the field 'result' is a word and takes a number; it has result:word"
bool EncodeMessage(FunctionId id, const MessageFields& fields, std::vector<std::uint8_t>& out,
                   std::string& error);

}  // namespace ventrik
