// SPDX-License-Identifier: Apache-2.0
// The words that commands use for the numbers of the wire.
//
// A parser never reports an error: an unknown word gives its table's default. Printers are separate
// code with lists of their own.
#pragma once

#include <cstdint>
#include <string_view>

namespace ventrik {

// How a list is sorted. Unknown words, "defaultSort" among them, give 0.
std::int32_t ParseSortOption(std::wstring_view word);

}  // namespace ventrik
