// SPDX-License-Identifier: Apache-2.0
// The line that the console shows for a record that is played.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "replay/record_reader.h"

namespace ventrik {

struct RecordToShow {
  const Payload& payload;
  std::size_t length;        // bytes of it that belong to the record
  std::uint32_t sinceFirst;  // milliseconds since the first record; before it, as a word wraps
  std::uint32_t position;    // of the payload in the file's text, counted through all passes
};

// UTF-8, without a line end. `names` are those of the messages. Pure.
std::string DisplayLine(const RecordToShow& record,
                        const std::map<std::int32_t, std::string>& names);

}  // namespace ventrik
