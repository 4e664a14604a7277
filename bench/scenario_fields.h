// SPDX-License-Identifier: Apache-2.0
// The values of a scenario: places in its JSON that errors are told of, numbers, hexadecimal text,
// and the fields of a message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bench/json_tree.h"
#include "bench/model/replies.h"
#include "messages/layout_table.h"
#include "messages/message_layout.h"

namespace ventrik::bench {

// A value with the path of keys that leads to it, as "rules[0].send[1].hex". The readers take one
// and return false having told it of what is wrong.
struct JsonPlace {
  const JsonNode* node;
  std::string path;    // empty for the whole
  std::string* error;  // "LINE:COLUMN: PATH: what is wrong"

  JsonPlace Member(const JsonNode& member) const;
  JsonPlace Element(std::size_t index) const;

  // Returns false, as a reader that fails does.
  bool Fail(const std::string& what) const;
};

// A list of `what`: adds an element for each to `elements` and calls `read(place, element)`.
template <class Element, class Read>
bool ReadElements(const JsonPlace& place, std::vector<Element>& elements, const char* what,
                  const Read& read) {
  if (place.node->kind != JsonNode::Kind::List) {
    return place.Fail(std::string("takes a list of ") + what);
  }
  for (std::size_t index = 0; index < place.node->nodes.size(); ++index) {
    if (!read(place.Element(index), elements.emplace_back())) return false;
  }
  return true;
}

// A whole number from `least` to `most`.
bool ReadInteger(const JsonPlace& place, std::int64_t least, std::int64_t most,
                 std::int64_t& value);

// A text without NUL.
bool ReadText(const JsonPlace& place, std::string& text);

// Pairs of hexadecimal digits of any case; blanks, tabs and line feeds may stand anywhere.
//   "2e01 0000" => {2E 01 00 00}    "" => {}    "2E0" => odd number of digits
bool ParseHexText(const JsonPlace& place, std::string_view text, Block& bytes);

// Whether a field of that kind is a text, or has texts in it.
bool HoldsText(FieldKind kind);

// The fields of message `id`, which has a layout, by the kinds of that (messages/layout_table.h):
//   word, length                  a whole number of 32 bits
//   byte                          a whole number from 0 to 255
//   double                        a number
//   text, string, bareText        a text without NUL
//   bytes                         a text of hexadecimal digits
//   strings, words                a list of such
//   destinations, destinationSum  a list of ["text", ["item", ...]]
bool ReadFields(const JsonPlace& place, std::int32_t id, MessageFields& fields);

}  // namespace ventrik::bench
