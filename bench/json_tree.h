// SPDX-License-Identifier: Apache-2.0
// JSON text as a tree that remembers where every value stands, so that whoever reads the values can
// say where a wrong one is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventrik::bench {

inline constexpr std::size_t kMaxJsonDepth = 32;  // lists and objects in one another

struct JsonNode {
  enum class Kind { Nothing, Flag, Integer, Decimal, Text, List, Object };

  Kind kind = Kind::Nothing;
  int line = 0;       // of the key of an object's member, of the value itself otherwise; from 1
  int column = 0;     // of its first byte, in bytes, from 1
  std::string key;    // of an object's member
  bool flag = false;  // Flag
  std::int64_t integer = 0;     // Integer; one too large for it is a Decimal
  double decimal = 0;           // Integer and Decimal
  std::string text;             // Text, UTF-8
  std::vector<JsonNode> nodes;  // List: the elements; Object: the members, in the order written

  // The member of that name; nullptr if there is none.
  const JsonNode* Find(std::string_view name) const;
};

// The whole text. On failure nothing, with "LINE:COLUMN: PATH: reason" in `error`, where the path
// is that of the list, object or member which is not complete; it is left out in the outermost one.
//   "7:12: rules[0].on: syntax error while parsing value - ..."
std::optional<JsonNode> ParseJson(std::string_view text, std::string& error);

}  // namespace ventrik::bench
