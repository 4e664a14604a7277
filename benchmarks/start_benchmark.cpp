// SPDX-License-Identifier: Apache-2.0
// What the program costs before it has anything to do, beside an empty program that is linked with
// the same libraries: the time to the banner, the memory while it waits for a key, and its size.
#include <elf.h>
#include <fcntl.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <sstream>

#include "benchmarks/beside.h"

namespace ventrik {
namespace {

// A program in a terminal of its own, from its start until it waits for a key.
class Started {
 public:
  Started(const char* program, const char* lastWords) {
    seconds_ = SecondsOf([&] {
      process_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
      if (process_ == 0) {
        execl(program, program, nullptr);
        _exit(1);
      }
      std::string said;
      char part[1024];
      while (said.find(lastWords) == std::string::npos) {
        const ssize_t got = read(terminal_, part, sizeof part);
        if (got <= 0) std::abort();
        said.append(part, static_cast<std::size_t>(got));
      }
    });
  }
  ~Started() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    close(terminal_);
  }
  Started(const Started&) = delete;
  Started& operator=(const Started&) = delete;

  double seconds() const { return seconds_; }

  // Kilobytes of memory that no other process has.
  double OwnMemory() const {
    usleep(50'000);  // until it has come to its wait
    std::istringstream lines(ReadBack("/proc/" + std::to_string(process_) + "/smaps_rollup"));
    double sum = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.rfind("Private_", 0) == 0) sum += std::atof(line.c_str() + line.find(':') + 1);
    }
    return sum;
  }

 private:
  pid_t process_ = 0;
  int terminal_ = -1;
  double seconds_ = 0;
};

Started StartOurs() {
  return {VENTRIK_PROGRAM, "(for eg. help)."};
}

Started StartEmpty() {
  return {EMPTY_PROGRAM, "ready"};
}

void StartToBanner(benchmark::State& state) {
  ReportCost(
      state, "ms a start", 1e-3, 1,
      Compare(
          state, [] { return StartEmpty().seconds(); }, [] { return StartOurs().seconds(); }));
}
BENCHMARK(StartToBanner)->UseManualTime()->Iterations(Rounds(31))->Unit(benchmark::kMillisecond);

void IdleMemory(benchmark::State& state) {
  const Comparison memory = Compare(
      state, [] { return StartEmpty().OwnMemory(); }, [] { return StartOurs().OwnMemory(); });
  Report(state, "kB", memory.anchor, memory.ours);
}
BENCHMARK(IdleMemory)->UseManualTime()->Iterations(Rounds(5))->Unit(benchmark::kMillisecond);

// Kilobytes of a program's file that are for its run: without what is there for debuggers.
double LoadedSize(const char* program) {
  const std::string file = ReadBack(program);
  Elf64_Ehdr head;
  if (file.size() < sizeof head) return 0;
  std::memcpy(&head, file.data(), sizeof head);
  double sum = 0;
  for (int i = 0; head.e_ident[EI_CLASS] == ELFCLASS64 && i < head.e_phnum; ++i) {
    Elf64_Phdr part;
    std::memcpy(&part, file.data() + head.e_phoff + sizeof part * static_cast<std::size_t>(i),
                sizeof part);
    if (part.p_type == PT_LOAD) sum += static_cast<double>(part.p_filesz);
  }
  return sum / 1000;
}

void BinarySize(benchmark::State& state) {
  const Comparison size = Compare(
      state, [] { return LoadedSize(EMPTY_PROGRAM); }, [] { return LoadedSize(VENTRIK_PROGRAM); });
  Report(state, "kB", size.anchor, size.ours);
}
BENCHMARK(BinarySize)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const ventrik::Scratch files;
  if (chdir(files.Path("").c_str()) != 0) return 1;  // where there is no history
  benchmark::RunSpecifiedBenchmarks();
}
