// SPDX-License-Identifier: Apache-2.0
// Tagged text: a run of <TAG>value<*> pairs, the form of all structured values on the wire.
//
// A tag is upper-case letters and digits; a value holds no "<"; an empty value is <TAG><*>. The
// reader takes whatever a person or a broken program may send and never fails. Pure functions.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ventrik::bench {

inline constexpr std::size_t kMaxEisPairs = 64;    // what follows is not read
inline constexpr std::size_t kMaxEisTag = 16;      // bytes; a longer one is no tag
inline constexpr std::size_t kMaxEisValue = 1024;  // bytes; a longer one is cut

// Both point into the text that was read.
struct EisPair {
  std::string_view tag;    // without the brackets
  std::string_view value;  // blanks and all
};

// The pairs of `text` in their order, in time linear in its length.
//   "<GEOC>Germany<*><GEOS>Ba<*>" => GEOC "Germany", GEOS "Ba"
//   "<GEOC><*>"                   => GEOC ""
//   "<GEOC>Ger"                   => GEOC "Ger"; the end closes a value
//   "<GEOC>Ger<GEOS>Ba<*>"        => GEOC "Ger", GEOS "Ba"; so does the next tag
//   "x <GEOC>Ger<*> y"            => GEOC "Ger"; text outside of pairs is skipped
//   "<geoc>Ger<*>", "<>", "<*>"   => none; a "<" that begins no tag is skipped
std::vector<EisPair> ParseEis(std::string_view text);

// The value of the first pair with that tag.
std::optional<std::string_view> FindEis(const std::vector<EisPair>& pairs, std::string_view tag);

// Appends <TAG>value<*>. A "<" inside the value, which no reader could tell from a tag's, is left
// out.
void AppendEis(std::string& text, std::string_view tag, std::string_view value);

}  // namespace ventrik::bench
