// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const char* kLogFile = "monkeylog.txt";

}  // namespace

std::optional<std::string> ReadWholeFile(const char* path) {
  const platform::CancellationDisabled whole;
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor == -1) return std::nullopt;
  std::string bytes;
  std::array<char, 4096> part = {};
  ssize_t count = 0;
  while ((count = read(descriptor, part.data(), part.size())) > 0) {
    bytes.append(part.data(), static_cast<std::size_t>(count));
  }
  close(descriptor);
  return bytes;
}

void EmptyMonkeyLog() {
  const platform::CancellationDisabled whole;
  std::FILE* file = std::fopen(kLogFile, "we");
  if (file != nullptr) std::fclose(file);
}

void AppendToMonkeyLog(const std::wstring& line) {
  const platform::CancellationDisabled whole;
  std::FILE* file = std::fopen(kLogFile, "ae");
  if (file == nullptr) return;
  logger->printTo(file, L"%ls\n", line.c_str());
  std::fclose(file);
}

}  // namespace ventrik
