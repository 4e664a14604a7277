// SPDX-License-Identifier: Apache-2.0
// The command line of kelmora-bench.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/fault.h"
#include "bench/message_log.h"

namespace ventrik::bench {

struct Options {
  std::string name = "navigation";         // that clients find the engine by
  std::string recordFile;                  // empty: nothing is recorded
  std::string scenarioFile;                // empty: no scenario
  bool check = false;                      // look at the scenario and end
  bool blank = false;                      // no built-in answers
  std::chrono::milliseconds heartbeat{0};  // 0: none
  std::string logFile;                     // empty: no log; "-": standard output
  LogFormat logFormat = LogFormat::text;
  std::string pictureFolder;    // of screen shots; empty: they are refused
  std::string overlayFolder;    // of overlay surfaces; empty: they are not kept
  bool exitOnShutdown = false;  // a REQU_SHUTDOWN ends the program
  std::vector<Fault> faults;
  std::optional<std::uint32_t> seed;  // of what is left to chance; none: from the clock
};

// What came of reading a command line.
struct CommandLineResult {
  bool run = false;  // go on with `options`; else print the rest and end
  Options options;
  std::string output;  // help or version, for standard output; the status is 0
  std::string error;   // for standard error; the status is 2
};

CommandLineResult ParseCommandLine(int argc, const char* const* argv);

}  // namespace ventrik::bench
