// SPDX-License-Identifier: Apache-2.0
// What a command line costs from the door on to the point where its message would go out, as a
// whole and stage by stage, in time and in allocations. No channel is there to send on.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "benchmarks/beside.h"
#include "command/command_table.h"
#include "command/executor.h"
#include "command/parser.h"
#include "command/variables.h"
#include "state/client_app.h"
#include "state/process_state.h"

namespace {

std::size_t allocations = 0;  // of the only thread

void* Allocate(std::size_t size) {
  ++allocations;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

// What the program allocates, counted.
void* operator new(std::size_t size) {
  return Allocate(size);
}
void* operator new[](std::size_t size) {
  return Allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace ventrik {
namespace {

constexpr std::size_t kLines = 20'000;  // to a round

const std::wstring kSpell = L"spell(\"<CTR>Deutschland<*><CTY>Sch\u00F6nfeld<*>\")";
const std::wstring kSixParameters =
    L"list(\"<CTR>Deutschland<*>\", \"1\", \"10\", \"ascending\", \"fields\", \"off\")";

struct Cost {
  double nanoseconds;
  double allocations;
};

// What it costs to run `stage` on something that `prepare` makes anew each time, of which the cost
// is taken away.
template <class Prepare, class Stage>
Cost CostOf(Prepare prepare, Stage stage) {
  const std::size_t lines = Amount(kLines);
  const auto measure = [&](auto work) {
    const std::size_t before = allocations;
    const double seconds = ProcessorSecondsOf([&] {
      for (std::size_t i = 0; i < lines; ++i) work();
    });
    const auto times = static_cast<double>(lines);
    return Cost{seconds * 1e9 / times, static_cast<double>(allocations - before) / times};
  };
  const Cost alone = measure([&] { benchmark::DoNotOptimize(prepare()); });
  const Cost both = measure([&] {
    auto prepared = prepare();
    stage(prepared);
    benchmark::DoNotOptimize(prepared);
  });
  return {both.nanoseconds - alone.nanoseconds, both.allocations - alone.allocations};
}

template <class Prepare, class Stage>
void ReportStage(benchmark::State& state, Prepare prepare, Stage stage) {
  std::vector<double> nanoseconds;
  Cost cost{};
  for (auto _ : state) {
    cost = CostOf(prepare, stage);
    nanoseconds.push_back(cost.nanoseconds);
    state.SetIterationTime(cost.nanoseconds * 1e-9);
  }
  ReportAlone(state, "ns a line", Median(nanoseconds));
  state.counters["allocations"] = cost.allocations;
}

int Nothing() {
  return 0;
}

void WholeLine(benchmark::State& state, const std::wstring& line) {
  ClientApp app;
  ReportStage(state, Nothing, [&](int) { ExecuteCommand(app, line, true); });
}

void LineAllocations(benchmark::State& state, const std::wstring& line) {
  ClientApp app;
  ReportStage(state, Nothing, [&](int) { ExecuteCommand(app, line, true); });
  ReportAlone(state, "allocations a line", state.counters["allocations"]);
  state.counters.erase("allocations");
}

void StripAndAssign(benchmark::State& state, const std::wstring& line) {
  ClientApp app;
  ReportStage(
      state, [&] { return line; }, [&](std::wstring& copy) { HandleVariableLine(app, copy); });
}

void Substitute(benchmark::State& state, const std::wstring& line) {
  ClientApp app;
  ReportStage(
      state, [&] { return line; }, [&](std::wstring& copy) { SubstituteVariables(app, copy); });
}

void Parse(benchmark::State& state, const std::wstring& line) {
  ReportStage(state, Nothing, [&](int) {
    CommandLine parsed;
    ParseCommandLine(parsed, line);
    benchmark::DoNotOptimize(parsed);
  });
}

void ConvertAndEncode(benchmark::State& state, const std::wstring& line) {
  ClientApp app;
  CommandLine parsed;
  std::wstring stripped = line;
  StripLine(stripped);
  ParseCommandLine(parsed, stripped);
  ReportStage(
      state, [&] { return parsed; }, [&](CommandLine& copy) { RunFromCommandTable(app, copy); });
}

// By the length of the parameter.
void LinesGrow(benchmark::State& state) {
  ClientApp app;
  RunGrowth(state, 100, [&](std::size_t length) {
    const std::wstring line = L"spell(\"" + std::wstring(length, L'x') + L"\")";
    const std::size_t times = Amount(100'000) / length + 1;
    return ProcessorSecondsOf([&] {
             for (std::size_t i = 0; i < times; ++i) ExecuteCommand(app, line, true);
           }) /
           static_cast<double>(times);
  });
}

void Register() {
  using Run = void (*)(benchmark::State&, const std::wstring&);
  const auto usual = [](const char* name, Run run) {
    for (const auto& [command, line] :
         {std::pair("spell", kSpell), std::pair("list", kSixParameters)}) {
      benchmark::RegisterBenchmark((std::string(name) + "/" + command).c_str(), run, line)
          ->UseManualTime()
          ->Iterations(Rounds(31))
          ->Unit(benchmark::kNanosecond);
    }
  };
  usual("WholeLine", WholeLine);
  usual("LineAllocations", LineAllocations);
  usual("StripAndAssign", StripAndAssign);
  usual("Substitute", Substitute);
  usual("Parse", Parse);
  usual("ConvertAndEncode", ConvertAndEncode);
  benchmark::RegisterBenchmark("LinesGrowth", LinesGrow)
      ->UseManualTime()
      ->Iterations(Rounds(31))
      ->Unit(benchmark::kNanosecond);
}

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  ventrik::Register();
  benchmark::RunSpecifiedBenchmarks();
}
