// SPDX-License-Identifier: Apache-2.0
// The one object that holds the tester's state.
//
// Plain data that every room may include. Its two operations are in shell/, because they know
// everything: what the process does when the object comes and goes (files, signals, connection) is
// told there, and a ClientApp on its own does none of it. Only main, the signal handler and thread
// bodies call Instance(): all other code is handed a ClientApp&, so that a test can make its own.
//
// Who touches what: fields without a Guarded<> belong to the thread that holds commandLock, or to
// the main thread where the comment says so.
#pragma once

#include <pthread.h>

#include <cstdint>
#include <cstdio>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "state/command_line.h"
#include "state/guarded.h"
#include "state/lists.h"
#include "state/variables.h"

namespace ventrik {

// An open batch file. Shared, because the stack may be pushed by one thread while another reads.
using BatchStream = std::shared_ptr<std::FILE>;

class ClientApp {
 public:
  // The singleton. The first call constructs it and registers its destruction for process exit.
  static ClientApp& Instance();

  // Start-up and main loop; returns when the loop has ended. Main thread only.
  void Run();

  ClientApp() = default;
  ClientApp(const ClientApp&) = delete;
  ClientApp& operator=(const ClientApp&) = delete;

  // Threads. A handle stays after its thread has ended; nothing joins it until the process ends.
  pthread_t listenerThread = 0;  // 0 until `init` has run
  pthread_t monkeyThread = 0;    // 0 until `monkey` has run
  pthread_t batchlogThread = 0;  // 0 until a line began with "batchlog("

  // Switches.
  volatile std::uint8_t scrollOn = 0;  // keys at the pause point are special keys; `scroll` sets it
  std::uint8_t batchHistory = 0;       // configuration key, stored and read by nothing
  std::uint8_t hideComments = 0;       // configuration key, stored and read by nothing
  volatile std::uint8_t listRequested = 0;  // set by `list`, cleared by the listener

  // How many times in a row `list` was given the same first parameter.
  std::int32_t listRepeatCount = 0;

  // The named lists (state/lists.h).
  NamedLists<SStringArray> stringArrayLists;
  NamedLists<SRouteHandleList> routeHandleLists;
  NamedLists<SDestinationElementList> destinationElementLists;
  NamedLists<SRouteModeList> routeModeLists;

  // Line history, oldest first; main thread. The cursor means something only while a line is
  // edited.
  std::int32_t historyCursor = 0;

  // Command-line arguments are ignored: the singleton is always built with none.
  std::int32_t argumentCount = 0;
  char** argumentVector = nullptr;

  std::wstring lastListEis;  // first parameter of the latest `list`
  std::vector<std::wstring> history;

  // Message numbers and names for the display lines of a log replay; not the command table.
  std::map<std::int32_t, std::string> commandIdNames;

  Guarded<VariableTable> variables;  // every thread that runs commands; listener
  Guarded<PendingListAssignments> pendingListAssignments;  // the same
  Guarded<std::vector<std::int32_t>> responseFilter;       // FunctionIds to silence, in file order

  // The newest line given to ExecuteCommand, white space and variables resolved as far as it came.
  Guarded<std::wstring> currentLine;

  std::int32_t mapZoomScale = 500;  // zoom of the keys + and -; main thread

  // Open batch files; the back is the one being read.
  Guarded<std::deque<BatchStream>> batchFiles;

  // The newest parsed line, once its command has run. While it runs, the line is the executing
  // thread's own, so that a line parsed by another thread can't take its parameters away.
  Guarded<std::shared_ptr<const CommandLine>> parsedLine;
};

}  // namespace ventrik
