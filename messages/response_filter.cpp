// SPDX-License-Identifier: Apache-2.0
#include "messages/response_filter.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "console/utf8.h"
#include "console/whole_file.h"
#include "messages/function_ids.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const char* kFilterFile = "response_filter.txt";

// What one line silences, if anything.
std::optional<std::int32_t> SilencedBy(std::wstring_view line) {
  const std::size_t blank = line.find(L' ');
  if (blank == line.npos) return std::nullopt;
  const std::size_t value = line.find_first_not_of(L' ', blank);
  if (value == line.npos || line[value] != L'0') return std::nullopt;
  return NameToFunctionId(line.substr(0, blank));
}

// Line by line, so that a broken character at a line's end doesn't reach into the next.
std::wstring Decoded(std::string_view bytes) {
  std::wstring text;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    text += Utf8ToWide(bytes.substr(0, end)) + L'\n';
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
  }
  return text;
}

}  // namespace

std::vector<std::int32_t> ParseResponseFilter(std::wstring_view text) {
  std::vector<std::int32_t> silenced;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(L'\n'), text.size());
    if (const auto id = SilencedBy(text.substr(0, end))) silenced.push_back(*id);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return silenced;
}

void LoadResponseFilter(ClientApp& app) {
  app.responseFilter.Store({});
  const std::optional<std::string> file = ReadWholeFile(kFilterFile);
  if (file) app.responseFilter.Store(ParseResponseFilter(Decoded(*file)));
}

void SetResponseFilter(ClientApp& app, std::int32_t mode) {
  if (mode == 1) {
    LoadResponseFilter(app);
    logger->print(L"Response Filter : ON\n");
  } else {
    app.responseFilter.Store({});
    logger->print(L"Response Filter : OFF\n");
  }
}

bool IsFiltered(const ClientApp& app, std::int32_t functionId) {
  return app.responseFilter.With([functionId](const std::vector<std::int32_t>& silenced) {
    return functionId != FUNC_INVALID &&
           std::find(silenced.begin(), silenced.end(), functionId) != silenced.end();
  });
}

}  // namespace ventrik
