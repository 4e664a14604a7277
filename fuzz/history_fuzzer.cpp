// SPDX-License-Identifier: Apache-2.0
// Any file must do as the history. Reads and writes "qhistory.txt": run it in a directory of its
// own.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzzed_console.h"
#include "shell/history.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ventrik::PrepareConsole();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::FILE* file = std::fopen("qhistory.txt", "wb");
  if (file == nullptr) std::abort();
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  ventrik::ClientApp app;
  ventrik::LoadHistory(app);
  ventrik::AppendToHistory(app, L"a line");
  bool endless = false;
  if (ventrik::HistoryFileText(app.history, endless).empty() && !endless) std::abort();
  if (!endless) ventrik::SaveHistory();  // an empty entry would make it wait for ever
  return 0;
}
