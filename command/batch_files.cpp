// SPDX-License-Identifier: Apache-2.0
#include "command/batch_files.h"

#include <fcntl.h>
#include <unistd.h>

#include "console/utf8.h"
#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr int kMarkLow = 0xFF;
constexpr int kMarkHigh = 0xFE;

// The last owner closes, which can be a thread that is being cancelled.
void CloseStream(std::FILE* file) {
  const platform::CancellationDisabled whole;
  std::fclose(file);
}

// Opened without waiting, because a pipe that nobody writes to would hold up everything.
BatchStream OpenStream(const char* path) {
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor == -1) return nullptr;
  fcntl(descriptor, F_SETFL, 0);  // what is read later may take its time
  std::FILE* file = fdopen(descriptor, "rb");
  if (file == nullptr) close(descriptor);
  return file == nullptr ? nullptr : BatchStream(file, CloseStream);
}

void PrintCannotOpen() {
  logger->print(L"%sError: Can't open file.\n%s", ColourRed, ColourReset);
}

// Appends units to `line` up to the line's end. Returns false at the end of the file, also after an
// error or in front of an odd last byte.
bool ReadLine(std::FILE* file, std::wstring& line) {
  while (std::feof(file) == 0 && std::ferror(file) == 0) {
    const int low = std::getc(file);
    const int high = low == EOF ? EOF : std::getc(file);
    if (high == EOF) return false;
    const int unit = low + 256 * high;
    if (unit == L'\n' || unit == L'\r') return true;
    line += static_cast<wchar_t>(unit);
  }
  return false;
}

// The echo shows the line as it stands in the file; responses wait meanwhile.
void Echo(const std::wstring& line, const char* colour) {
  holdOutput = 1;
  logger->print(L"Cmd> %s%ls\n%s", colour, line.c_str(), ColourReset);
  holdOutput = 0;
}

bool IsComment(const std::wstring& line) {
  return line[0] == L'#' || line[0] == L';';
}

BatchStream NewestFile(ClientApp& app) {
  return app.batchFiles.With(
      [](auto& stack) { return stack.empty() ? BatchStream() : stack.back(); });
}

// Another thread may have pushed a file meanwhile, so the one that ended is not always the newest.
void RemoveFile(ClientApp& app, const BatchStream& ended) {
  app.batchFiles.With([&ended](auto& stack) {
    for (auto at = stack.end(); at != stack.begin();) {
      if (*--at != ended) continue;
      stack.erase(at);
      return;
    }
  });
}

}  // namespace

void OpenBatchFile(ClientApp& app, const char* path) {
  const platform::CancellationDisabled whole;
  const BatchStream file = OpenStream(path);
  if (!file) return PrintCannotOpen();
  const int low = std::getc(file.get());
  const int high = std::getc(file.get());
  if (low == EOF || high == EOF) return PrintCannotOpen();
  if (low != kMarkLow || high != kMarkHigh) {
    logger->print(L"%sError: This is not an Unicode file!\n%s", ColourRed, ColourReset);
    return;
  }
  logger->print(L"Batch file %ls is running...\n", Utf8ToWide(path).c_str());
  app.batchFiles.With([&file](auto& stack) { stack.push_back(file); });
}

int ReadBatchLine(ClientApp& app, std::wstring& line) {
  line.clear();
  for (;;) {
    const BatchStream file = NewestFile(app);
    if (!file) {
      logger->print(L"Batch file finished\n");
      return 0;
    }
    bool more = true;
    while (line.empty() && more) more = ReadLine(file.get(), line);
    if (line.empty()) {
      RemoveFile(app, file);
      return 0;
    }
    if (!IsComment(line)) {
      Echo(line, ColourGreen);
      return 1;
    }
    Echo(line, ColourYellow);
    line.clear();
  }
}

}  // namespace ventrik
