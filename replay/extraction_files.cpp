// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction_files.h"

#include <sys/stat.h>

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "console/whole_file.h"
#include "platform/cancellation.h"
#include "replay/batchlog.h"
#include "replay/extraction.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr double kOwnPace = 1.0;

bool IsFolder(const char* path) {
  struct stat status = {};
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

// The whole file; says so if it can't be opened.
std::optional<std::string> ReadLog(const char* path) {
  std::optional<std::string> log = IsFolder(path) ? std::nullopt : ReadWholeFile(path);
  if (!log) logger->print(L"%sError: Can not open file!\n%s", ColourRed, ColourReset);
  return log;
}

void WriteOutput(const char* path, std::string_view bytes) {
  const platform::CancellationDisabled whole;
  std::FILE* file = std::fopen(path, "wbe");
  if (file == nullptr) return;
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
}

void PrintWarnings(const BatchChannel& channel) {
  for (const CorruptLine& line : channel.corruptLines) {
    logger->print(L"Warning: corrupt line at 0x%x%s\n", static_cast<unsigned>(line.position),
                  line.kept ? "" : ", skipped");
  }
}

void PrintFinished() {
  logger->print(L"Extraction finished\n");
}

}  // namespace

void ExtractBatchChannel(const char* path, const char* output, bool keep) {
  if (const auto log = ReadLog(path)) {
    const BatchChannel channel = ExtractBatchChannel(std::string_view(*log), keep);
    PrintWarnings(channel);
    WriteOutput(output, channel.log);
  }
  PrintFinished();
}

void ExtractTextChannel(const char* path, const char* output) {
  if (const auto log = ReadLog(path)) {
    WriteOutput(output, ExtractTextChannel(std::string_view(*log)));
  }
  PrintFinished();
}

void ExtractAll(const char* path, const char* output) {
  ExtractBatchChannel(path, "extracted_batch.log", false);
  ExtractTextChannel(path, "extracted_dullog.txt");
  if (const auto log = ReadLog(path)) WriteOutput(output, ExtractBothChannels(*log));
  PrintFinished();
}

void ExtractAndReplay(ClientApp& app, const char* path) {
  if (!ReadLog(path)) return;
  ExtractBatchChannel(path, "ext_batch.log", false);
  ExtractTextChannel(path, "ext_dullog.txt");
  RunBatchlog(app, "ext_batch.log", kOwnPace, 0);
}

}  // namespace ventrik
