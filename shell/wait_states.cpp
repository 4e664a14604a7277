// SPDX-License-Identifier: Apache-2.0
#include "shell/wait_states.h"

#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::uint32_t kTickMilliseconds = kTick / 1000;

}  // namespace

bool CountTick() {
  const std::uint32_t left = waitMilliseconds;
  if (left != 0) {
    waitMilliseconds = left >= kTickMilliseconds ? left - kTickMilliseconds : 0;
    return true;
  }
  return waitResponseId != 0;
}

}  // namespace ventrik
