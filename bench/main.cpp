// SPDX-License-Identifier: Apache-2.0
// kelmora-bench: serves until SIGINT, SIGTERM or SIGHUP, which this thread alone waits for.
//
// Standard output gets one line when clients can connect and one at the end. Exit status 0, or 2 if
// the engine could not start.
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "bench/engine.h"
#include "bench/options.h"
#include "bench/report.h"
#include "bench/world.h"
#include "platform/thread_start.h"
#include "state/process_state.h"

namespace {

using namespace ventrik::bench;

constexpr int kCannotStart = 2;

// Before any thread starts, so that none of them can be the one that a signal ends.
sigset_t BlockEndingSignals() {
  sigset_t ending;
  sigemptyset(&ending);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&ending, number);
  pthread_sigmask(SIG_BLOCK, &ending, nullptr);
  signal(SIGPIPE, SIG_IGN);  // nobody has to read what is printed
  return ending;
}

void PrintLine(const std::string& text) {
  std::printf("kelmora-bench: %s\n", text.c_str());
  std::fflush(stdout);
}

int Fail(const std::string& reason) {
  Report("%s", reason.c_str());
  return kCannotStart;
}

int Serve(const Options& options, const sigset_t& ending) {
  std::string error;
  const auto world = World::Parse(BuiltInPlaces(), error);
  if (!world) return Fail("the world's places: " + error);
  Engine engine(options, *world);
  if (!engine.Start(error)) return Fail(error);
  PrintLine("serving \"" + options.name + "\"");
  int number = 0;
  sigwait(&ending, &number);
  if (!engine.Stop()) _exit(0);  // with what the threads still hold
  PrintLine(engine.Summary());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const sigset_t ending = BlockEndingSignals();
  static ErrorLogger errors;
  ventrik::logger = &errors;
  platform::PrepareCancellation();
  const CommandLineResult commandLine = ParseCommandLine(argc, argv);
  std::fputs(commandLine.output.c_str(), stdout);
  std::fputs(commandLine.error.c_str(), stderr);
  if (!commandLine.run) return commandLine.error.empty() ? 0 : kCannotStart;
  return Serve(commandLine.options, ending);
}
