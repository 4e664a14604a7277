// SPDX-License-Identifier: Apache-2.0
#include "messages/tagged_text.h"

namespace ventrik {
namespace {

constexpr std::string_view kTagEnd = "<*>";

}  // namespace

std::optional<std::string_view> TagValue(std::string_view text, std::string_view tag) {
  return TakeTagValue(text, tag);
}

std::optional<std::string_view> TakeTagValue(std::string_view& rest, std::string_view tag) {
  const std::size_t begin = rest.find(tag);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t valueBegin = begin + tag.size();
  const std::size_t end = rest.find(kTagEnd, valueBegin);
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view value = rest.substr(valueBegin, end - valueBegin);
  rest.remove_prefix(end + kTagEnd.size());
  return value;
}

}  // namespace ventrik
