// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_log.h"

#include <cstdio>

#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const char* kLogFile = "monkeylog.txt";

}  // namespace

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
