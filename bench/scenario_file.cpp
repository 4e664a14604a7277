// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace ventrik::bench {
namespace {

bool ReadFile(const std::string& path, std::string& text, std::string& error) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                             std::fclose);
  std::array<char, 4096> part = {};
  std::size_t count = 0;
  while (file && (count = std::fread(part.data(), 1, part.size(), file.get())) > 0) {
    text.append(part.data(), count);
  }
  if (file && std::ferror(file.get()) == 0) return true;
  error = path + ": " + std::strerror(errno);
  return false;
}

}  // namespace

std::optional<Scenario> LoadScenario(const std::string& path, std::string& error) {
  std::string text;
  if (!ReadFile(path, text, error)) return std::nullopt;
  return ParseScenario(text, path, error);
}

}  // namespace ventrik::bench
