// SPDX-License-Identifier: Apache-2.0
#include "messages/function_ids.h"

#include <algorithm>

#include "messages/catalogue.h"

namespace ventrik {

const char* FunctionName(std::int32_t id) {
  const auto* row =
      std::find_if(kCatalogue.begin(), kCatalogue.end(),
                   [id](const CatalogueRow& candidate) { return candidate.id == id; });
  return row == kCatalogue.end() ? nullptr : row->name;
}

std::int32_t FunctionNumber(std::string_view name) {
  const auto* row =
      std::find_if(kCatalogue.begin(), kCatalogue.end(),
                   [name](const CatalogueRow& candidate) { return candidate.name == name; });
  return row == kCatalogue.end() ? FUNC_INVALID : row->id;
}

std::int32_t NameToFunctionId(std::wstring_view name) {
  const auto named = [name](const CatalogueRow& row) {
    const std::string_view text = row.name;
    return row.nameable && std::equal(text.begin(), text.end(), name.begin(), name.end(),
                                      [](char narrow, wchar_t wide) {
                                        return static_cast<wchar_t>(narrow) == wide;
                                      });
  };
  const auto* row = std::find_if(kCatalogue.begin(), kCatalogue.end(), named);
  return row == kCatalogue.end() ? FUNC_INVALID : row->id;
}

}  // namespace ventrik
