// SPDX-License-Identifier: Apache-2.0
#include "bench/model/update_package.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace ventrik::bench {
namespace {

constexpr std::int32_t kLastVersion = 999'999;

struct FlagWord {
  std::string_view word;
  UpdateResult flag;
};

constexpr FlagWord kFlagWords[] = {
    {"invalid", kInvalidPackage}, {"broken", kInvalidPackage}, {"full", kNotEnoughSpace},
    {"old", kOlderPackage},       {"older", kOlderPackage},    {"none", kNoPackage},
    {"missing", kNoPackage},      {"same", kSamePackage},
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
  return c >= 'a' && c <= 'z';
}

// In lower case.
std::vector<std::string> WordsOf(std::string_view name) {
  std::vector<std::string> words(1);
  for (char c : name) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (IsDigit(c) || IsLetter(c)) {
      words.back() += c;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  return words;
}

std::int32_t FlagsOf(const std::vector<std::string>& words) {
  std::int32_t flags = kUpdateSuccess;
  for (const FlagWord& row : kFlagWords) {
    if (std::find(words.begin(), words.end(), row.word) != words.end()) flags |= row.flag;
  }
  return flags;
}

std::optional<std::int32_t> VersionIn(std::string_view word) {
  if (!word.empty() && word[0] == 'v') word.remove_prefix(1);
  std::int32_t version = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, version);
  if (error != std::errc() || stop != end || version > kLastVersion) return std::nullopt;
  return version;
}

std::optional<std::int32_t> FirstVersion(const std::vector<std::string>& words) {
  for (const std::string& word : words) {
    if (const auto version = VersionIn(word)) return version;
  }
  return std::nullopt;
}

}  // namespace

std::string_view LastPart(std::string_view path) {
  while (!path.empty() && path.back() == '/') path.remove_suffix(1);
  const std::size_t slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

UpdatePackage JudgeUpdatePackage(std::string_view path, std::int32_t installed) {
  if (path.size() > kLongestUpdatePath) return {kInvalidPackage, 0};
  const std::string_view name = LastPart(path);
  if (name.empty()) return {kNoPackage, 0};
  const std::vector<std::string> words = WordsOf(name);
  const std::int32_t flags = FlagsOf(words);
  if (flags != kUpdateSuccess) return {flags, 0};
  const std::int32_t version = FirstVersion(words).value_or(installed + 1);
  if (version < installed) return {kOlderPackage, 0};
  if (version == installed) return {kSamePackage, 0};
  return {kUpdateSuccess, version};
}

}  // namespace ventrik::bench
