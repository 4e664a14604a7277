// SPDX-License-Identifier: Apache-2.0
// The names that a log replay shows for recorded messages.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace ventrik {

// A table of its own, not derived from the commands: 14 and 408 are both "start", and 118 is "shot"
// although its command is `sshot`.
std::map<std::int32_t, std::string> CommandIdNames();

}  // namespace ventrik
