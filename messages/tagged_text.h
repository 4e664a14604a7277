// SPDX-License-Identifier: Apache-2.0
// The few values that the tester itself reads out of tagged text: <TAG>value<*>.
#pragma once

#include <optional>
#include <string_view>

namespace ventrik {

// The value behind the first `tag`, which is given with its brackets, up to the next "<*>"; none if
// either is missing. Pure.
//   TagValue("x<MID>map<*>", "<MID>") => "map"     TagValue("<MID>map", "<MID>") => none
std::optional<std::string_view> TagValue(std::string_view text, std::string_view tag);

// The same, and `rest` becomes what stands behind the "<*>". Without a value `rest` stays.
std::optional<std::string_view> TakeTagValue(std::string_view& rest, std::string_view tag);

}  // namespace ventrik
