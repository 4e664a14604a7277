// SPDX-License-Identifier: Apache-2.0
#include "shell/configuration.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>

namespace ventrik {
namespace {

constexpr const char* kConfigurationFile = "qconfig.txt";

// Oddity: the blank that is taken off the key's end is looked for behind the "=", so only spacing
// that is the same on both sides gives the key as it was meant.
std::string_view KeyOf(std::string_view line, std::size_t equals) {
  const bool blankBehind = equals + 1 < line.size() && line[equals + 1] == ' ';
  return line.substr(0, blankBehind && equals > 0 ? equals - 1 : equals);
}

std::string_view ValueOf(std::string_view line, std::size_t equals) {
  const std::size_t start = line.find_first_not_of(' ', equals + 1);
  return start == line.npos ? std::string_view() : line.substr(start);
}

void ApplyLine(ClientApp& app, std::string_view line) {
  if (line.size() > 1 && line[1] == ';') return;  // Oddity: the second byte is the comment mark.
  const std::size_t equals = line.find('=');
  if (equals == line.npos || ValueOf(line, equals) != "1") return;
  const std::string_view key = KeyOf(line, equals);
  if (key == "batchhistory") app.batchHistory = 1;
  if (key == "hidecomments") app.hideComments = 1;
}

}  // namespace

void ApplyConfiguration(ClientApp& app, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    ApplyLine(app, text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void LoadConfiguration(ClientApp& app) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(kConfigurationFile, "r"),
                                                             std::fclose);
  if (!file) return;
  std::string text;
  for (int byte = std::getc(file.get()); byte != EOF; byte = std::getc(file.get())) {
    text += static_cast<char>(byte);
  }
  ApplyConfiguration(app, text);
}

}  // namespace ventrik
