// SPDX-License-Identifier: Apache-2.0
// What a line of the monkey's costs, beside the draws that it makes and the appending of its
// characters, a piece for each draw.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "benchmarks/beside.h"
#include "console/logger_posix.h"
#include "monkey/command_generation.h"
#include "monkey/draw.h"
#include "monkey/monkey.h"
#include "monkey/weights.h"
#include "state/client_app.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

const Scratch* scratch = nullptr;

constexpr std::size_t kLines = 2000;  // to a round
constexpr unsigned kSeed = 7;

// All commands whose lines are made of parameters alone: those left out run other lines first or
// pause.
constexpr const wchar_t* kCommands[] = {
    L"adas", L"audio", L"blk",  L"citem",  L"demo",   L"info",   L"item", L"lang",    L"list",
    L"map",  L"meas",  L"opt",  L"posdet", L"prompt", L"rswarn", L"sci",  L"spell",   L"sscm",
    L"tmca", L"tmci",  L"tmcm", L"tmcrm",  L"tmctm",  L"vers",   L"wait", L"weather",
};

struct Line {
  std::wstring text;
  int draws;
};

int draws = 0;

int CountedDraw() {
  ++draws;
  return std::rand();
}

// Like new, with the items that a start defines.
void Prepare(Monkey& monkey) {
  monkey.itemRecords.assign(200, {L"ListSStringArray", L"abc"});
  monkey.region = {-10, 30, 35, 60};
  monkey.search.Store({L"<CTR>Deutschland<*>", L"<CTY>Sch<*>", L"", 100});
  monkey.weights.With([](MonkeyWeights& weights) {
    weights = {};
    for (const wchar_t* name : kCommands) weights.commandRecords.push_back({name, 10, 10, 10, {}});
    weights.weightTotal = 10 * static_cast<std::int32_t>(weights.commandRecords.size());
  });
  std::srand(kSeed);
}

// As GenerateCommand does, but for the log.
const std::wstring& MakeLine(ClientApp& app, Monkey& monkey) {
  const std::wstring name = PickCommand(monkey);
  monkey.commandBuffer = name;
  GenerateParameters(app, monkey, name);
  return monkey.commandBuffer;
}

std::vector<Line> RecordLines(ClientApp& app, Monkey& monkey, std::size_t count) {
  Prepare(monkey);
  drawSource = CountedDraw;
  std::vector<Line> lines;
  for (std::size_t i = 0; i < count; ++i) {
    draws = 0;
    const std::wstring text = MakeLine(app, monkey);
    lines.push_back({text, draws});
  }
  drawSource = std::rand;
  return lines;
}

void DrawAndAppend(const Line& line, std::wstring& buffer) {
  buffer.clear();
  std::wstring_view rest = line.text;
  for (int left = line.draws; left > 0; --left) {
    benchmark::DoNotOptimize(Draw());
    const std::size_t length = rest.size() / static_cast<std::size_t>(left);
    buffer += rest.substr(0, length);
    rest.remove_prefix(length);
  }
}

void LinesBesideDraws(benchmark::State& state) {
  ClientApp app;
  Monkey& monkey = Monkey::Instance();
  const std::vector<Line> lines = RecordLines(app, monkey, Amount(kLines));
  std::wstring buffer;
  bool same = true;
  const auto anchor = [&] {
    return ProcessorSecondsOf([&] {
      for (const Line& line : lines) {
        DrawAndAppend(line, buffer);
        benchmark::DoNotOptimize(buffer.data());
      }
    });
  };
  const auto ours = [&] {
    Prepare(monkey);
    return ProcessorSecondsOf([&] {
      for (const Line& line : lines) {
        if (MakeLine(app, monkey) != line.text) same = false;
      }
    });
  };
  const Comparison seconds = Compare(state, anchor, ours);
  if (!same) return state.SkipWithError("other lines than before");
  ReportCost(state, "ns a line", 1e-9, static_cast<double>(lines.size()), seconds);
}

// The log goes to the working directory.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) : before_(open(".", O_RDONLY | O_CLOEXEC)) {
    if (before_ < 0 || chdir(path.c_str()) != 0) std::abort();
  }
  ~WorkingDirectory() {
    if (fchdir(before_) != 0) std::abort();
    close(before_);
  }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  const int before_;
};

void LoggedLines(benchmark::State& state) {
  const WorkingDirectory here(scratch->Path(""));
  Logger_posix writer;  // the log's lines go through it
  Logger* const before = std::exchange(logger, &writer);
  ClientApp app;
  Monkey& monkey = Monkey::Instance();
  const std::size_t lines = Amount(kLines);
  std::vector<double> microseconds;
  for (auto _ : state) {
    Prepare(monkey);
    const double seconds = ProcessorSecondsOf([&] {
      for (std::size_t i = 0; i < lines; ++i) GenerateCommand(app, monkey);
    });
    microseconds.push_back(seconds * 1e6 / static_cast<double>(lines));
    state.SetIterationTime(seconds);
  }
  logger = before;
  ReportAlone(state, "us a line", Median(microseconds));
}

void LinesGrow(benchmark::State& state) {
  ClientApp app;
  Monkey& monkey = Monkey::Instance();
  RunGrowth(state, 200, [&](std::size_t lines) {
    Prepare(monkey);
    return ProcessorSecondsOf([&] {
      for (std::size_t i = 0; i < lines; ++i) MakeLine(app, monkey);
    });
  });
}

void Register() {
  const auto usual = [](const char* name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, run)
        ->UseManualTime()
        ->Iterations(Rounds(31))
        ->Unit(benchmark::kMillisecond);
  };
  usual("LinesBesideDraws", LinesBesideDraws);
  usual("LoggedLines", LoggedLines);
  usual("LinesGrowth", LinesGrow);
}

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  ventrik::scratch = &files;
  ventrik::Register();
  benchmark::RunSpecifiedBenchmarks();
}
