// SPDX-License-Identifier: Apache-2.0
// What a message is called where a person reads of it.
#pragma once

#include <cstdint>
#include <string>

namespace ventrik::bench {

// Its name in the catalogue, or its number where it has none:  302 => "REQU_GET_SPELL"
//   4711 => "4711"
std::string MessageName(std::int32_t number);

}  // namespace ventrik::bench
