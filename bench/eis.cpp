// SPDX-License-Identifier: Apache-2.0
#include "bench/eis.h"

#include <algorithm>

namespace ventrik::bench {
namespace {

bool IsTagCharacter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9');
}

// The tag behind the "<" at `start`; empty if there is none.
std::string_view TagAt(std::string_view text, std::size_t start) {
  const std::string_view rest = text.substr(start + 1, kMaxEisTag + 1);
  const std::size_t length = static_cast<std::size_t>(
      std::find_if_not(rest.begin(), rest.end(), IsTagCharacter) - rest.begin());
  if (length == rest.size() || rest[length] != '>') return {};
  return rest.substr(0, length);
}

}  // namespace

std::vector<EisPair> ParseEis(std::string_view text) {
  std::vector<EisPair> pairs;
  std::size_t at = text.find('<');
  while (at != std::string_view::npos && pairs.size() < kMaxEisPairs) {
    const std::size_t next = text.find('<', at + 1);
    const std::string_view tag = TagAt(text, at);
    if (!tag.empty()) {
      const std::size_t start = at + tag.size() + 2;
      const std::string_view value = text.substr(start, next - start);
      pairs.push_back({tag, value.substr(0, kMaxEisValue)});
    }
    at = next;
  }
  return pairs;
}

std::optional<std::string_view> FindEis(const std::vector<EisPair>& pairs, std::string_view tag) {
  for (const EisPair& pair : pairs) {
    if (pair.tag == tag) return pair.value;
  }
  return std::nullopt;
}

void AppendEis(std::string& text, std::string_view tag, std::string_view value) {
  text += '<';
  text += tag;
  text += '>';
  std::copy_if(value.begin(), value.end(), std::back_inserter(text),
               [](char character) { return character != '<'; });
  text += "<*>";
}

}  // namespace ventrik::bench
