// SPDX-License-Identifier: Apache-2.0
// The process-wide pointers, flags and wait values, and the lock around a command.
//
// The flags and wait values are plain machine words on purpose: each has one meaning, is written in
// few places and polled by loops that tolerate a view that is one 50 ms tick late. They are
// volatile so that those loops reload them; atomics or barriers would promise an order that nothing
// here relies on.
#pragma once

#include <cstdint>
#include <mutex>

namespace ventrik {

class Logger;
class COMMUNICATION_LAYER;
struct ResponsePrinter;

// Set first of all in main and valid to the end of the process.
extern Logger* logger;

// Set by the construction of ClientApp, cleared by its destruction.
extern COMMUNICATION_LAYER* communicationLayer;
extern ResponsePrinter* responsePrinter;

using Flag = volatile std::uint8_t;

extern Flag mainLoopRunning;   // 1; cleared by `quit` and the signal handler, read by the main loop
extern Flag listenerErrorsOn;  // 1; cleared by the signal handler, read by the listener
extern Flag stopRequested;     // 0; tested by the loops and the monkey's start, set by nothing
extern Flag autoPromptReady;   // 1; `prompt` sets it, the automatic replies read it
extern Flag weatherOn;         // 0; `weather` sets it, the overlay's messages read it
extern Flag holdOutput;        // 0; set while a line is typed or echoed: response text then waits
extern Flag autoScroll;        // 0; toggled by the key 5, read by the keys 2, 4, 6, 8
extern Flag overwriteMode;     // 0; toggled by the key Insert, read by the line editor
extern Flag stopBatchlog;      // 0; `stopbatchlog` sets it, the log replay reads and clears it
extern Flag packagePhase;      // 0; the log replay sets it, the listener clears it
extern Flag livePhase;         // 0; the log replay plays the recording proper

// The FunctionId that holds back the main loop's next line, 0 for none. Written by `waitresp` and
// `list`, cleared by the listener when a message of that number arrives.
extern volatile std::int32_t waitResponseId;

// What is left of a `wait`, in milliseconds; the main loop takes 50 off at each tick.
extern volatile std::uint32_t waitMilliseconds;

// Where in its file a log replay goes on once the engine has loaded the package.
extern volatile std::uint32_t packageResume;

// The console's width in characters, 80 unless COLUMNS says otherwise. Set once, at start-up.
extern std::int32_t consoleColumns;

// Held around one command of the main or the monkey thread and around one automatic reply of the
// listener; a log replay takes it around each send. Always taken before the communication layer's
// own lock. Recursive, because a replay on the calling thread takes it again for its sends.
extern std::recursive_mutex commandLock;

void LockCommands();
void UnlockCommands();

// Holds commandLock for a scope if `wanted`. A cancelled thread releases it by unwinding.
class CommandLockHolder {
 public:
  explicit CommandLockHolder(bool wanted = true) : held_(wanted) {
    if (held_) LockCommands();
  }
  ~CommandLockHolder() {
    if (held_) UnlockCommands();
  }
  CommandLockHolder(const CommandLockHolder&) = delete;
  CommandLockHolder& operator=(const CommandLockHolder&) = delete;

 private:
  const bool held_;
};

}  // namespace ventrik
