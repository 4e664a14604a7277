// SPDX-License-Identifier: Apache-2.0
#include "bench/message_name.h"

#include "messages/function_ids.h"

namespace ventrik::bench {

std::string MessageName(std::int32_t number) {
  const char* name = FunctionName(number);
  return name != nullptr ? name : std::to_string(number);
}

}  // namespace ventrik::bench
