// SPDX-License-Identifier: Apache-2.0
#include "console/response_printer.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "console/logger_posix.h"
#include "console/utf8.h"
#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/out_of_memory.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// The console's wide output path takes no longer arguments than this.
constexpr std::size_t kPieceLength = 100;  // characters

// Closes without being cut short: the last owner may be a thread that is being cancelled.
void CloseLog(std::FILE* file) {
  const platform::CancellationDisabled whole;
  std::fclose(file);
}

std::shared_ptr<std::FILE> OpenLog(const char* path) {
  std::FILE* file = std::fopen(path, "w");
  if (file == nullptr) return nullptr;
  return std::shared_ptr<std::FILE>(file, CloseLog);
}

// A NUL would end its piece and take the rest of it away.
void PrintInPieces(std::wstring text) {
  for (std::size_t at = 0; (at = text.find(L'\0', at)) != text.npos;) text[at] = L'?';
  const PrintedTogether oneWrite;
  for (std::size_t at = 0; at < text.size(); at += kPieceLength) {
    const std::size_t length = std::min(kPieceLength, text.size() - at);
    logger->print(L"%.*ls", static_cast<int>(length), text.data() + at);
  }
}

}  // namespace

void StartLog(ResponsePrinter& printer, const char* path) {
  if (printer.logFile.Copy()) return;
  const platform::CancellationDisabled whole;
  printer.logFile.Store(OpenLog(path));
}

void StopLog(ResponsePrinter& printer) {
  printer.logFile.Store(nullptr);
}

void SetMapId(ResponsePrinter& printer, std::string_view text) {
  printer.mapId.Store(std::string(text));
}

void QueueResponseText(ResponsePrinter& printer, std::string_view text) {
  printer.queuedTexts.With([&](auto& queue) { queue.emplace_back(text); });
  if (holdOutput) return;
  const std::vector<std::string> ready =
      printer.queuedTexts.With([](auto& queue) { return std::exchange(queue, {}); });
  for (const std::string& waiting : ready) {
    RunIfMemoryLasts([&] { WriteText(printer, waiting); });
  }
}

void WriteText(ResponsePrinter& printer, std::string_view text) {
  const platform::CancellationDisabled whole;
  std::wstring wide = Utf8ToWide(text);
  if (const std::shared_ptr<std::FILE> log = printer.logFile.Copy()) {
    std::fwrite(text.data(), 1, text.size(), log.get());
  }
  PrintInPieces(std::move(wide));
}

}  // namespace ventrik
