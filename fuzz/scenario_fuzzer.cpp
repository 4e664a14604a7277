// SPDX-License-Identifier: Apache-2.0
// Any file must do as a scenario: it is right, or there is a message that says where it isn't.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "bench/scenario.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(data), size);
  std::string error;
  const auto scenario = ventrik::bench::ParseScenario(file, "scenario.json", error);
  const bool saysWhere = error.rfind("scenario.json", 0) == 0;
  if (!scenario && !saysWhere) std::abort();
  return 0;
}
