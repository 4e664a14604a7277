// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey.h"

namespace ventrik {

// Never destroyed: threads may still follow answers when the process ends.
Monkey& Monkey::Instance() {
  static Monkey* const monkey = new Monkey;
  return *monkey;
}

void SetMonkeyRunning(Monkey& monkey, bool runs) {
  monkey.monkeyRunning = runs;
}

void SetStopRequest(Monkey& monkey, std::int32_t seconds) {
  monkey.stopRequest = seconds;
}

void SetActiveRoute(Monkey& monkey, bool isActive) {
  monkey.activeRoute = isActive;
}

}  // namespace ventrik
