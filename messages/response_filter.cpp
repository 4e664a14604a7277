// SPDX-License-Identifier: Apache-2.0
#include "messages/response_filter.h"

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <optional>
#include <string>

#include "messages/function_ids.h"
#include "platform/cancellation.h"
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

// The whole file as wide characters, up to its end or the first byte that can't be decoded.
std::optional<std::wstring> ReadFilterFile() {
  const platform::CancellationDisabled whole;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(kFilterFile, "r"),
                                                             std::fclose);
  if (!file) return std::nullopt;
  std::wstring text;
  for (std::wint_t c = std::fgetwc(file.get()); c != WEOF; c = std::fgetwc(file.get())) {
    text += static_cast<wchar_t>(c);
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
  const std::optional<std::wstring> text = ReadFilterFile();
  if (text) app.responseFilter.Store(ParseResponseFilter(*text));
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
