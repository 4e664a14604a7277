// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_batch.h"

#include <optional>

#include "console/whole_file.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kUnit = 2;       // bytes
constexpr std::size_t kPathBegin = 7;  // behind batch("
constexpr std::size_t kPathEnd = 2;    // from the end: ")

std::wstring PathIn(std::wstring_view name) {
  if (name.size() <= kPathBegin + kPathEnd) return {};
  return std::wstring(name.substr(kPathBegin, name.size() - kPathBegin - kPathEnd));
}

std::string Narrowed(const std::wstring& text) {
  std::string bytes;
  for (const wchar_t character : text) bytes += static_cast<char>(character);
  return bytes;
}

wchar_t UnitAt(std::string_view file, std::size_t at) {
  const auto low = static_cast<unsigned char>(file[at]);
  const auto high = static_cast<unsigned char>(file[at + 1]);
  return static_cast<wchar_t>(low + 256 * high);
}

}  // namespace

std::deque<std::wstring> MonkeyBatchLines(std::string_view file) {
  std::deque<std::wstring> lines(1);
  for (std::size_t at = kUnit; at + kUnit <= file.size(); at += kUnit) {
    const wchar_t unit = UnitAt(file, at);
    if (unit == L'\n') {
      lines.emplace_back();
    } else {
      lines.back() += unit;
    }
  }
  return lines;
}

void LoadMonkeyBatch(Monkey& monkey, std::wstring_view name) {
  const std::wstring path = PathIn(name);
  const std::optional<std::string> file = ReadWholeFile(Narrowed(path).c_str());
  if (!file) {
    logger->print(L"%ls does not exist\n", path.c_str());
    return;
  }
  if (file->size() < kUnit) {
    logger->print(L"Monkey: Error reading %ls\n", path.c_str());
    return;
  }
  for (std::wstring& line : MonkeyBatchLines(*file)) {
    monkey.queuedCommands.push_back(std::move(line));
  }
}

}  // namespace ventrik
