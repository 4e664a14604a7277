// SPDX-License-Identifier: Apache-2.0
// The layout of every message in both directions, one row each.
//
// A row names the message's fields in the order of the header's words; what a field puts behind the
// header follows in the same order:
//
//     "inputEIS:string validState:word items:strings"
//     header: FunctionId, length of inputEIS, validState, count of items
//     tail:   packed inputEIS unless its length is 0, each item packed
//
// | Kind             | In the header       | Behind the header                              |
// |------------------|---------------------|------------------------------------------------|
// | word             | the word            |                                                |
// | byte             | low byte of a word  | the other three bytes have no meaning          |
// | double           | two words           |                                                |
// | length           | length of a text    | nothing: the text itself doesn't travel        |
// | text             | length              | packed text                                    |
// | string           | length              | packed text, absent if the length is 0         |
// | bareText         | length              | the text's bytes and one 0 byte, unpadded      |
// | strings          | count               | each packed                                    |
// | words            | count               | each a word                                    |
// | destinations     | count of elements   | each: packed text, count of items, items packed|
// | destinationSum   | elements plus items | the same                                       |
// | bytes            |                     | all that is left, as it is                     |
//
// A message whose contents nobody here reads or sends is one `bytes` field named body. Words that
// have no known meaning are named after their place: word5 is the word at index 5.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "messages/function_ids.h"

namespace ventrik {

enum class FieldKind {
  Word,
  Byte,
  Double,
  Length,
  Text,
  String,
  BareText,
  Strings,
  Words,
  Destinations,
  DestinationSum,
  Bytes,
  Unknown,  // a misspelt row; the table can't be built with one
};

// The word for a kind in a row. ORDER FieldKind.
inline constexpr std::array<std::string_view, 13> kFieldKindNames = {
    "word",    "byte",  "double",       "length",         "text",  "string", "bareText",
    "strings", "words", "destinations", "destinationSum", "bytes", "unknown"};

constexpr std::string_view FieldKindName(FieldKind kind) {
  return kFieldKindNames[static_cast<std::size_t>(kind)];
}

// How many words a field takes in the header.
constexpr std::size_t HeaderWords(FieldKind kind) {
  if (kind == FieldKind::Bytes) return 0;
  return kind == FieldKind::Double ? 2 : 1;
}

struct LayoutField {
  std::string_view name;
  FieldKind kind = FieldKind::Unknown;
};

inline constexpr std::size_t kMostFields = 9;

struct MessageLayout {
  // Splits `row`, fields separated by one blank each.
  constexpr MessageLayout(FunctionId function, std::string_view row) : id(function), text(row) {
    while (!row.empty() && count < kMostFields) {
      const std::string_view field = row.substr(0, row.find(' '));
      const std::size_t colon = field.find(':');
      fields[count].name = field.substr(0, colon);
      for (std::size_t kind = 0; colon < field.size() && kind < kFieldKindNames.size(); ++kind) {
        if (field.substr(colon + 1) == kFieldKindNames[kind]) {
          fields[count].kind = static_cast<FieldKind>(kind);
        }
      }
      ++count;
      row.remove_prefix(field.size() < row.size() ? field.size() + 1 : field.size());
    }
    rowFits = row.empty();
  }

  const LayoutField* begin() const { return fields.data(); }
  const LayoutField* end() const { return fields.data() + count; }

  // The header's length in words, the FunctionId included.
  constexpr std::size_t HeaderSize() const {
    std::size_t words = 1;
    for (std::size_t i = 0; i < count; ++i) words += HeaderWords(fields[i].kind);
    return words;
  }

  FunctionId id;
  std::string_view text;  // the row as written
  std::array<LayoutField, kMostFields> fields{};
  std::size_t count = 0;
  bool rowFits = false;  // no field was left over
};

// The layout of a catalogued message; nullptr for any other number. Static data, any thread.
const MessageLayout* FindLayout(std::int32_t id);

}  // namespace ventrik
