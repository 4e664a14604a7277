// SPDX-License-Identifier: Apache-2.0
#include "command/batch_files.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "console/utf8.h"
#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr int kMarkLow = 0xFF;
constexpr int kMarkHigh = 0xFE;
constexpr int kNoUnit = -1;

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

// The next unit; kNoUnit at the end of the file or after an error, also in front of an odd last
// byte. Without the stream's lock, which costs more than the bytes: an open file is read by one
// thread.
int NextUnit(std::FILE* file) {
  const int low = getc_unlocked(file);
  const int high = low == EOF ? EOF : getc_unlocked(file);
  return high == EOF ? kNoUnit : low + 256 * high;
}

bool EndsLine(int unit) {
  return unit == '\n' || unit == '\r' || unit == kNoUnit;
}

// What a line that there is no memory for leaves in the file would be taken for a line.
struct RestSkipped {
  ~RestSkipped() {
    while (!lineEnded) lineEnded = EndsLine(NextUnit(file));
  }
  std::FILE* const file;
  bool lineEnded = false;
};

// Reads the next line that isn't empty into `line`, which is; there is none if it stays so.
void ReadLine(std::FILE* file, std::wstring& line) {
  if (std::feof(file) != 0 || std::ferror(file) != 0) return;  // neither may pass with time
  RestSkipped rest{file};
  for (int unit = NextUnit(file); unit != kNoUnit; unit = NextUnit(file)) {
    if (!EndsLine(unit)) {
      line += static_cast<wchar_t>(unit);
    } else if (!line.empty()) {
      break;
    }
  }
  rest.lineEnded = true;
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

// Stays open: nobody else takes files away.
std::FILE* NewestFile(ClientApp& app) {
  return app.batchFiles.With(
      [](auto& stack) { return stack.empty() ? nullptr : stack.back().get(); });
}

// Returns the file, to be closed outside the lock. Another thread may have pushed one meanwhile, so
// the one that ended is not always the newest.
BatchStream TakeFile(ClientApp& app, std::FILE* ended) {
  return app.batchFiles.With([ended](auto& stack) {
    BatchStream taken;
    for (auto at = stack.end(); at != stack.begin();) {
      if ((--at)->get() != ended) continue;
      taken = std::move(*at);
      stack.erase(at);
      break;
    }
    return taken;
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
    std::FILE* const file = NewestFile(app);
    if (file == nullptr) {
      logger->print(L"Batch file finished\n");
      return 0;
    }
    ReadLine(file, line);
    if (line.empty()) {
      TakeFile(app, file);
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
