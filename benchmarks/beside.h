// SPDX-License-Identifier: Apache-2.0
// What benchmarks that stand beside an anchor share: a console that says nothing, files of their
// own, and rounds in turn with medians. Each reports its row by counters of the same names, from
// which tools/bench_table.py makes the table of ./benchmark.
#pragma once

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "state/logger.h"

namespace ventrik {

class SilentLogger : public Logger {
 public:
  int print(const wchar_t*, ...) override { return 0; }
  int printTo(std::FILE*, const wchar_t*, ...) override { return 0; }
};

// A directory that is gone at the end. Files that were just written to it are read from memory.
class Scratch {
 public:
  Scratch() {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
  }
  ~Scratch() {
    if (std::system(("rm -rf " + path_).c_str()) != 0) std::abort();
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string Path(const std::string& name) const { return path_ + "/" + name; }

  // Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
  }

 private:
  std::string path_ = "/tmp/ventrik-benchmark-XXXXXX";
};

inline std::string ReadBack(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// A moment of everything, to see that it runs: few rounds and little input, by this variable of the
// environment.
inline bool Quick() {
  return std::getenv("VENTRIK_BENCH_QUICK") != nullptr;
}
inline int Rounds(int usual) {
  return Quick() ? std::min(usual, 2) : usual;
}
inline std::size_t Amount(std::size_t usual) {
  return Quick() ? usual / 16 : usual;
}

// The value that the given part of all values lies below.
inline double Quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  const auto at = static_cast<std::size_t>(part * static_cast<double>(values.size()));
  return values.empty() ? 0 : values[std::min(at, values.size() - 1)];
}

inline double Median(std::vector<double> values) {
  return Quantile(std::move(values), 0.5);
}

template <class Work>
double SecondsOf(Work work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

inline double ReadClock(clockid_t clock) {
  timespec now = {};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// The processor's time of this thread, in which other work on the machine hardly shows.
template <class Work>
double ProcessorSecondsOf(Work work) {
  const double start = ReadClock(CLOCK_THREAD_CPUTIME_ID);
  work();
  return ReadClock(CLOCK_THREAD_CPUTIME_ID) - start;
}

// The same of all threads of the process.
template <class Work>
double ProcessSecondsOf(Work work) {
  const double start = ReadClock(CLOCK_PROCESS_CPUTIME_ID);
  work();
  return ReadClock(CLOCK_PROCESS_CPUTIME_ID) - start;
}

// What each round took, in seconds.
struct Comparison {
  std::vector<double> anchor;
  std::vector<double> ours;
};

// Runs the two in turn, one round for each iteration, and another one first each time. Both return
// the seconds that count.
template <class Anchor, class Ours>
Comparison Compare(benchmark::State& state, Anchor anchor, Ours ours) {
  Comparison seconds;
  for (auto _ : state) {
    const bool oursFirst = seconds.ours.size() % 2 != 0;
    if (oursFirst) seconds.ours.push_back(ours());
    seconds.anchor.push_back(anchor());
    if (!oursFirst) seconds.ours.push_back(ours());
    state.SetIterationTime(seconds.ours.back());
  }
  return seconds;
}

// A row of the table: "ours" and "anchor" in the unit of the label, and "ratio", ours to anchor,
// taken round by round, with the two that half of all rounds lie between.
inline void Report(benchmark::State& state, const char* unit, const std::vector<double>& anchor,
                   const std::vector<double>& ours) {
  std::vector<double> ratios;
  for (std::size_t i = 0; i < ours.size(); ++i) ratios.push_back(ours[i] / anchor[i]);
  state.counters["ours"] = Median(ours);
  state.counters["anchor"] = Median(anchor);
  state.counters["ratio"] = Median(ratios);
  state.counters["ratio_low"] = Quantile(ratios, 0.25);
  state.counters["ratio_high"] = Quantile(ratios, 0.75);
  state.SetLabel(unit);
}

// What one of `pieces` costs, in units of `seconds` each; less is better.
inline void ReportCost(benchmark::State& state, const char* unit, double seconds, double pieces,
                       Comparison comparison) {
  for (double& each : comparison.anchor) each /= pieces * seconds;
  for (double& each : comparison.ours) each /= pieces * seconds;
  Report(state, unit, comparison.anchor, comparison.ours);
}

// How many of `bytes` are done with in a second; more is better.
inline void ReportSpeed(benchmark::State& state, double bytes, Comparison comparison) {
  for (double& each : comparison.anchor) each = bytes / each / 1e6;
  for (double& each : comparison.ours) each = bytes / each / 1e6;
  Report(state, "MB/s", comparison.anchor, comparison.ours);
}

// A row with nothing to stand beside.
inline void ReportAlone(benchmark::State& state, const char* unit, double ours) {
  state.counters["ours"] = ours;
  state.SetLabel(unit);
}

// How fast anchor and ours get through `bytes` of input. Both are one thread's work without waits.
template <class Anchor, class Ours>
void RunBeside(benchmark::State& state, double bytes, Anchor anchor, Ours ours) {
  ReportSpeed(state, bytes,
              Compare(
                  state, [&] { return ProcessorSecondsOf(anchor); },
                  [&] { return ProcessorSecondsOf(ours); }));
}

// Growth: what a piece of input costs in a hundred times as much of it, beside the same in
// `pieces` of it. work(n) handles n pieces and returns the seconds that count. The counter
// "tenfold" is that of ten times as much.
template <class Work>
void RunGrowth(benchmark::State& state, std::size_t pieces, Work work) {
  std::vector<double> small;
  std::vector<double> medium;
  std::vector<double> large;
  const auto costOfEach = [&](std::size_t amount) {
    return work(amount) / static_cast<double>(amount) * 1e9;
  };
  for (auto _ : state) {
    // More than once, because a short time varies more.
    double sum = 0;
    for (int i = 0; i < 10; ++i) sum += costOfEach(pieces);
    small.push_back(sum / 10);
    medium.push_back(costOfEach(10 * pieces));
    large.push_back(costOfEach(100 * pieces));
    state.SetIterationTime(large.back() * static_cast<double>(pieces) * 1e-7);
  }
  Report(state, "ns each", small, large);
  state.counters["tenfold"] = Median(medium);
}

}  // namespace ventrik
