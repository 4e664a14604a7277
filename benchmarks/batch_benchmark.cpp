// SPDX-License-Identifier: Apache-2.0
// Reading a batch file line by line, beside nothing but its bytes by twos out of an unlocked
// stream.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "benchmarks/beside.h"
#include "command/batch_files.h"
#include "state/client_app.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kLines = 100'000;

const Scratch* scratch = nullptr;

// Lines as long as those of the examples are, a third of them comments.
std::string MakeBatch(std::size_t lines) {
  std::string bytes = "\xFF\xFE";
  for (std::size_t i = 0; i < lines; ++i) {
    const std::string number = std::to_string(i);
    const std::string line = i % 3 == 0 ? "# What is known of it, with number " + number + "\n"
                                        : "spell(\"<CTR>Deutschland<*><CTY>B" + number + "<*>\")\n";
    for (const char character : line) {
      bytes += character;
      bytes += '\0';
    }
  }
  return bytes;
}

// Each gives the next unit, or a negative value where there is none.

int UnitByRead(std::FILE* file) {
  unsigned char bytes[2];
  if (fread_unlocked(bytes, 1, sizeof bytes, file) != sizeof bytes) return -1;
  return bytes[0] + 256 * bytes[1];
}

int UnitByBytes(std::FILE* file) {
  const int low = getc_unlocked(file);
  const int high = getc_unlocked(file);
  return high == EOF ? -1 : low + 256 * high;
}

template <int (*nextUnit)(std::FILE*)>
std::size_t CountUnits(const std::string& path) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) std::abort();
  std::size_t units = 0;
  for (int unit = 0; (unit = nextUnit(file)) >= 0; ++units) benchmark::DoNotOptimize(unit);
  std::fclose(file);
  return units;
}

// Returns how many characters the lines that are commands have.
std::size_t ReadLines(ClientApp& app, const std::string& path) {
  OpenBatchFile(app, path.c_str());
  std::size_t characters = 0;
  std::wstring line;
  while (ReadBatchLine(app, line) == 1) characters += line.size();
  return characters;
}

template <int (*nextUnit)(std::FILE*)>
void LinesBeside(benchmark::State& state) {
  const std::string batch = MakeBatch(Amount(kLines));
  const std::string path = scratch->Write("batch", batch);
  ClientApp app;
  std::size_t units = 0;
  std::size_t characters = 0;
  const Comparison seconds = Compare(
      state, [&] { return ProcessorSecondsOf([&] { units = CountUnits<nextUnit>(path); }); },
      [&] { return ProcessorSecondsOf([&] { characters = ReadLines(app, path); }); });
  if (units != batch.size() / 2 || characters == 0) return state.SkipWithError("not all was read");
  ReportCost(state, "ns a line", 1e-9, static_cast<double>(Amount(kLines)), seconds);
}

void LinesGrow(benchmark::State& state) {
  ClientApp app;
  RunGrowth(state, Amount(1000), [&](std::size_t lines) {
    const std::string path = scratch->Write("batch", MakeBatch(lines));
    return ProcessorSecondsOf([&] { benchmark::DoNotOptimize(ReadLines(app, path)); });
  });
}

void Register() {
  const auto usual = [](const char* name, void (*run)(benchmark::State&), int rounds) {
    benchmark::RegisterBenchmark(name, run)
        ->UseManualTime()
        ->Iterations(Rounds(rounds))
        ->Unit(benchmark::kMillisecond);
  };
  usual("LinesBesideReadsOfTwo", LinesBeside<UnitByRead>, 31);
  usual("LinesBesideSingleBytes", LinesBeside<UnitByBytes>, 31);
  usual("LinesGrowth", LinesGrow, 15);
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
  std::thread([] {}).join();  // streams have locks once there was a second thread, as in the tester
  ventrik::Register();
  benchmark::RunSpecifiedBenchmarks();
}
