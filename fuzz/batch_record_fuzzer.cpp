// SPDX-License-Identifier: Apache-2.0
// Any text must be read as records of a batch log, each shown as a line.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "replay/display_line.h"
#include "replay/record_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto take = [&text](std::size_t count) {
    const std::string_view taken = text.substr(0, count);
    text.remove_prefix(taken.size());
    return taken;
  };
  static ventrik::Payload payload;
  const std::map<std::int32_t, std::string> names = {{16, "demo"}, {9001, "GPS_DATA"}};
  while (!text.empty()) {
    ventrik::ParseHexField(take(ventrik::kFieldLength));
    const std::size_t length =
        ventrik::ParseHexField(take(ventrik::kFieldLength)).value % (payload.bytes.size() + 1);
    ventrik::ParseHexBytes(take(2 * length), payload);
    ventrik::DisplayLine({payload, length, 0, 0}, names);
  }
  return 0;
}
