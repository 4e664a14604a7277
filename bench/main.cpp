// SPDX-License-Identifier: Apache-2.0
// kelmora-bench: serves until SIGINT, SIGTERM or SIGHUP, which this thread alone waits for, or
// until the engine itself sets the alarm clock.
//
// Standard output gets a line when clients can connect and some at the end. Exit status 0, or 2 if
// the engine could not start or the scenario that it was to check is wrong.
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include "bench/engine.h"
#include "bench/options.h"
#include "bench/report.h"
#include "bench/scenario_file.h"
#include "bench/shared_picture.h"
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
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGALRM}) sigaddset(&ending, number);
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

// Looks at the scenario, without serving.
int Check(const std::string& file) {
  std::string error;
  const std::optional<Scenario> scenario = LoadScenario(file, error);
  if (!scenario) return Fail(error);
  std::printf("%s: %zu rules, no errors\n", file.c_str(), scenario->rules.size());
  return 0;
}

int Serve(const Options& options, const sigset_t& ending) {
  std::string error;
  const auto world = World::Parse(BuiltInPlaces(), error);
  if (!world) return Fail("the world's places: " + error);
  Engine engine(options, *world);
  if (!engine.Start(error)) return Fail(error);
  SharedPicture picture;
  PrintLine("serving \"" + options.name + "\"");
  if (const auto seed = engine.ChanceSeed()) PrintLine("seed " + std::to_string(*seed));
  int number = 0;
  sigwait(&ending, &number);
  picture.Remove();
  if (!engine.Stop()) _exit(0);  // with what the threads still hold
  PrintLine(engine.Summary());
  for (const std::string& remark : engine.Remarks()) PrintLine(remark);
  std::fputs(engine.Table().c_str(), stdout);
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
  if (commandLine.options.check) return Check(commandLine.options.scenarioFile);
  return Serve(commandLine.options, ending);
}
