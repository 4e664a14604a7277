// SPDX-License-Identifier: Apache-2.0
// Any file must be read as records of a batch log, each shown as a line.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <string>

#include "replay/display_line.h"
#include "replay/record_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  std::FILE* file = fmemopen(const_cast<std::uint8_t*>(data), size, "rb");
  if (file == nullptr) return 0;
  static ventrik::Payload payload;
  const std::map<std::int32_t, std::string> names = {{16, "demo"}, {9001, "GPS_DATA"}};
  while (std::feof(file) == 0) {
    ventrik::ReadHexField(file);
    const std::size_t length = ventrik::ReadHexField(file).value % (payload.bytes.size() + 1);
    ventrik::ReadHexBytes(file, 2 * length, payload);
    ventrik::DisplayLine({payload, length, 0, 0}, names);
  }
  std::fclose(file);
  return 0;
}
