// SPDX-License-Identifier: Apache-2.0
// Any file must be taken as a batch file: opened or refused, and read to its end.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "command/batch_files.h"
#include "fuzz/fuzzed_console.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ventrik::PrepareConsole();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const int file = memfd_create("batch", MFD_CLOEXEC);
  if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size)) std::abort();
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  ventrik::ClientApp app;
  ventrik::OpenBatchFile(app, path.c_str());
  std::wstring line;
  while (!app.batchFiles.Copy().empty()) ventrik::ReadBatchLine(app, line);
  close(file);
  return 0;
}
