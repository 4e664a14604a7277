// SPDX-License-Identifier: Apache-2.0
// Any line must be taken: each input is a few lines of UTF-8, run one after the other.
//
// A line with a slash is left out, so that commands can name files of the working directory only;
// run this one in a directory of its own. `batchlog` would leave threads behind.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "command/executor.h"
#include "console/utf8.h"
#include "fuzz/fuzzed_console.h"

namespace {

bool IsHarmless(std::string_view line) {
  return line.find('/') == std::string_view::npos &&
         line.find("batchlog") == std::string_view::npos;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ventrik::PrepareConsole();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ventrik::ClientApp app;
  std::string_view lines(reinterpret_cast<const char*>(data), size);
  while (!lines.empty()) {
    const std::string_view line = lines.substr(0, lines.find('\n'));
    if (IsHarmless(line)) ventrik::ExecuteCommand(app, ventrik::Utf8ToWide(line), true);
    lines.remove_prefix(line.size() < lines.size() ? line.size() + 1 : line.size());
  }
  return 0;
}
