// SPDX-License-Identifier: Apache-2.0
// The command line of kelmora-bench.
#pragma once

#include <chrono>
#include <string>

namespace ventrik::bench {

struct Options {
  std::string name = "navigation";         // that clients find the engine by
  std::string recordFile;                  // empty: nothing is recorded
  std::string scenarioFile;                // empty: no scenario
  bool blank = false;                      // no built-in answers
  std::chrono::milliseconds heartbeat{0};  // 0: none
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
