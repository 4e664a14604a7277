// SPDX-License-Identifier: Apache-2.0
// Any bytes must come apart as a raw log, and what comes out is never longer than what went in.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "replay/extraction.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view log(reinterpret_cast<const char*>(data), size);
  for (const bool keep : {false, true}) {
    if (ventrik::ExtractBatchChannel(log, keep).log.size() > size) std::abort();
  }
  if (ventrik::ExtractTextChannel(log).size() > size) std::abort();
  if (ventrik::ExtractBothChannels(log).size() > size) std::abort();
  return 0;
}
