// SPDX-License-Identifier: Apache-2.0
// The traffic events that `tmcdebug` sends when it is given none.
#pragma once

#include <array>

namespace ventrik {

// In the order of sending.
extern const std::array<const char*, 14> kTrafficTestEvents;

}  // namespace ventrik
