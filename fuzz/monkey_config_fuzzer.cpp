// SPDX-License-Identifier: Apache-2.0
// Any file must do as the monkey's configuration, and any of its names for a draw of weights.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "monkey/monkey_batch.h"
#include "monkey/monkey_config.h"
#include "monkey/weights.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view file(reinterpret_cast<const char*>(data), size);
  ventrik::Monkey monkey;
  auto records = ventrik::ParseMonkeyConfig(file, monkey.region);
  ventrik::MonkeyBatchLines(file);
  monkey.weights.With([&records](ventrik::MonkeyWeights& weights) {
    weights.commandRecords = records;
    for (const auto& record : records) {
      weights.weightTotal =
          static_cast<std::int32_t>(static_cast<std::uint32_t>(weights.weightTotal) +
                                    static_cast<std::uint32_t>(record.currentWeight));
    }
  });
  for (const auto& record : records) {
    ventrik::PickCommand(monkey);
    ventrik::ApplyInfluences(monkey, record.name);
  }
  ventrik::ApplyActiveRouteWeights(monkey);
  ventrik::PickCommand(monkey);
  return 0;
}
