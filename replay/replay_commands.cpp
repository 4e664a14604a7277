// SPDX-License-Identifier: Apache-2.0
#include "replay/replay_commands.h"

#include <iterator>

#include "command/parameters.h"
#include "replay/batchlog.h"
#include "replay/extraction_files.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// Oddity: how the parameters are read depends on their number alone. With four of them, and with
// one, speed and pause have their defaults.
void RunBatchlogCommand(ClientApp& app, CommandLine& line) {
  auto& parameters = line.parameters;
  const std::size_t count = parameters.size();
  const bool hasSpeed = count == 2 || count == 3 || count == 5;
  const bool hasPause = count == 3 || count == 5;
  RunBatchlog(app, count == 0 ? "" : ParamNarrow(parameters[0]),
              hasSpeed ? ParamDouble(parameters[1]) : 1.0, hasPause ? ParamInt(parameters[2]) : 0);
}

void RunStopbatchlog(ClientApp&, CommandLine&) {
  stopBatchlog = 1;
}

void RunGne(ClientApp&, CommandLine& line) {
  ExtractAll(ParamNarrow(line.parameters[0]), ParamNarrow(line.parameters[1]));
}

void RunGnext(ClientApp&, CommandLine& line) {
  const bool keep = line.parameters.size() > 2 && ParamInt(line.parameters[2]) != 0;
  ExtractBatchChannel(ParamNarrow(line.parameters[0]), ParamNarrow(line.parameters[1]), keep);
}

void RunGnlog(ClientApp& app, CommandLine& line) {
  ExtractAndReplay(app, ParamNarrow(line.parameters[0]));
}

void RunGntolog(ClientApp&, CommandLine& line) {
  ExtractTextChannel(ParamNarrow(line.parameters[0]), ParamNarrow(line.parameters[1]));
}

constexpr CommandRow kReplayCommands[] = {
    {L"batchlog", 0, RunBatchlogCommand, {"path", "speed", "minutes"}},
    {L"gne", 2, RunGne, {"path", "path"}},
    {L"gnext", 0, RunGnext, {"path", "path", "number"}, 2},
    {L"gnlog", 1, RunGnlog, {"path"}},
    {L"gntolog", 2, RunGntolog, {"path", "path"}},
    {L"stopbatchlog", 0, RunStopbatchlog},
};

}  // namespace

CommandRows ReplayCommands() {
  return {std::begin(kReplayCommands), std::end(kReplayCommands)};
}

}  // namespace ventrik
