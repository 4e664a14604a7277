// SPDX-License-Identifier: Apache-2.0
#include "state/process_state.h"

namespace ventrik {

Logger* logger = nullptr;
COMMUNICATION_LAYER* communicationLayer = nullptr;
ResponsePrinter* responsePrinter = nullptr;

Flag mainLoopRunning = 1;
Flag listenerErrorsOn = 1;
Flag stopRequested = 0;
Flag autoPromptReady = 1;
Flag weatherOn = 0;
Flag holdOutput = 0;
Flag autoScroll = 0;
Flag overwriteMode = 0;
Flag stopBatchlog = 0;
Flag packagePhase = 0;
Flag livePhase = 0;

volatile std::int32_t waitResponseId = 0;
volatile std::uint32_t waitMilliseconds = 0;
volatile std::uint32_t packageResume = 0;
std::int32_t consoleColumns = 80;

std::recursive_mutex commandLock;

void LockCommands() {
  commandLock.lock();
}
void UnlockCommands() {
  commandLock.unlock();
}

}  // namespace ventrik
