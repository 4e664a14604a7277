// SPDX-License-Identifier: Apache-2.0
// What benchmarks that stand beside an anchor share: a console that says nothing, files of their
// own, and medians.
#pragma once

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
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
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

template <class Work>
double SecondsOf(Work work) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// The processor's time of this thread, in which other work on the machine hardly shows.
inline double ProcessorSeconds() {
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template <class Work>
double ProcessorSecondsOf(Work work) {
  const double start = ProcessorSeconds();
  work();
  return ProcessorSeconds() - start;
}

// Runs anchor and ours in turn and counts, for `bytes` of input, MB/s of both and how many times
// ours is as fast, taken round by round. Both are one thread's work without waits.
template <class Anchor, class Ours>
void RunBeside(benchmark::State& state, double bytes, Anchor anchor, Ours ours) {
  std::vector<double> anchorSeconds;
  std::vector<double> ourSeconds;
  std::vector<double> ratios;
  for (auto _ : state) {
    anchorSeconds.push_back(ProcessorSecondsOf(anchor));
    ourSeconds.push_back(ProcessorSecondsOf(ours));
    ratios.push_back(anchorSeconds.back() / ourSeconds.back());
    state.SetIterationTime(ourSeconds.back());
  }
  state.counters["anchor_MBs"] = bytes / Median(anchorSeconds) / 1e6;
  state.counters["ours_MBs"] = bytes / Median(ourSeconds) / 1e6;
  state.counters["times"] = Median(ratios);
}

}  // namespace ventrik
