// SPDX-License-Identifier: Apache-2.0
// Searching for the first of two bytes. Pure.
#pragma once

#include <cstddef>
#include <string_view>

namespace ventrik {

// The first place from `from` on where one of the two stands, or the text's size. `from` may lie
// behind the end.
std::size_t FindEither(std::string_view text, std::size_t from, char one, char other);

}  // namespace ventrik
