// SPDX-License-Identifier: Apache-2.0
#include "messages/words.h"

namespace ventrik {
namespace {

struct WordRow {
  std::wstring_view word;
  std::int32_t value;
};

constexpr WordRow kSortOptions[] = {
    {L"ascending", 1}, {L"descending", 2},        {L"nearFirst", 4},
    {L"farFirst", 8},  {L"hierarchicalSort", 16}, {L"hierarchicalDescSort", 32},
};

}  // namespace

std::int32_t ParseSortOption(std::wstring_view word) {
  for (const WordRow& row : kSortOptions) {
    if (row.word == word) return row.value;
  }
  return 0;
}

}  // namespace ventrik
