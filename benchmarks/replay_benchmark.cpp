// SPDX-License-Identifier: Apache-2.0
// A replay's two speeds: how fast the silent pass gets through a file, beside the plain road with
// fread for the fields and fgetc for the payload; and how late each record is, beside a bare
// usleep with a send behind it.
#include <benchmark/benchmark.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <cwchar>
#include <random>
#include <utility>

#include "benchmarks/beside.h"
#include "ipc/client_communication_layer_posix.h"
#include "ipc/ipc.h"
#include "replay/batchlog.h"
#include "replay/hex_digits.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kLogSize = 64'000'000;
constexpr int kRounds = 7;
const char* const kServerName = "benchmark";
// Ends the replay in the silent pass.
const char* const kUnreadableRecord = "0000000000000001gg\n";

const Scratch* scratch = nullptr;

std::string MakeRecords() {
  std::minstd_rand random(7);
  std::string log;
  unsigned time = 0x1000;
  while (log.size() < kLogSize) {
    const auto length = static_cast<unsigned>(16 + random() % 385);
    char head[17];
    std::snprintf(head, sizeof head, "%08X%08X", time += static_cast<unsigned>(random() % 200),
                  length);
    log += head;
    for (unsigned i = 0; i < 2 * length; ++i) log += "0123456789ABCDEF"[random() & 15];
    log += '\n';
  }
  return log + kUnreadableRecord;
}

bool PlainField(std::FILE* file, std::uint32_t& value) {
  char text[8];
  if (std::fread(text, 1, sizeof text, file) != sizeof text) return false;
  value = 0;
  for (const char character : text) {
    const int digit = HexDigit(character);
    if (digit < 0) return false;
    value = value << 4 | static_cast<std::uint32_t>(digit);
  }
  return true;
}

std::uint64_t PlainScan(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  static std::uint8_t payload[8192];
  std::uint64_t sum = 0;
  std::uint32_t time = 0;
  std::uint32_t length = 0;
  while (PlainField(file, time) && PlainField(file, length) && length <= sizeof payload) {
    for (std::uint32_t i = 0; i < length; ++i) {
      const int high = std::fgetc(file);
      const int low = std::fgetc(file);
      if (high == EOF || low == EOF) break;
      payload[i] = static_cast<std::uint8_t>(HexDigit(static_cast<char>(high)) << 4 |
                                             HexDigit(static_cast<char>(low)));
    }
    sum += time + payload[length - 1];
    char end = 0;
    if (std::fread(&end, 1, 1, file) == 1 && end != '\n') std::fseek(file, -1, SEEK_CUR);
  }
  std::fclose(file);
  return sum;
}

void ScanBesideFgetc(benchmark::State& state) {
  const std::string log = scratch->Write("records", MakeRecords());
  static ClientApp app;
  RunBeside(
      state, kLogSize, [&] { benchmark::DoNotOptimize(PlainScan(log.c_str())); },
      [&] { RunBatchlog(app, log.c_str(), 1.0, 0); });
}
BENCHMARK(ScanBesideFgetc)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);

// Notes when each record of the live pass is shown.
class RecordClock : public Logger {
 public:
  int print(const wchar_t* format, ...) override {
    if (std::wcscmp(format, L"%ls\n") == 0) shown.push_back(Clock::now());
    return 0;
  }
  int printTo(std::FILE*, const wchar_t*, ...) override { return 0; }

  std::vector<Clock::time_point> shown;
};

// A process that takes every message.
class TakingServer {
 public:
  TakingServer() {
    int ready[2];
    if (pipe(ready) != 0) std::abort();
    child_ = fork();
    if (child_ == 0) Serve(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1) std::abort();
    close(ready[0]);
    close(ready[1]);
  }
  ~TakingServer() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  TakingServer(const TakingServer&) = delete;
  TakingServer& operator=(const TakingServer&) = delete;

 private:
  [[noreturn]] static void Serve(int ready) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    IpcServer* server = ipc_server_create(kServerName);
    if (server == nullptr || write(ready, "", 1) != 1) _exit(1);
    static char inbox[512000];
    for (;;) {
      IpcMessage* message = ipc_server_accept(server);
      if (message == nullptr) continue;
      ipc_read(message, inbox, sizeof inbox);
      ipc_finish(message, 0);
    }
  }

  pid_t child_ = 0;
};

std::string MakePacedLog(unsigned milliseconds, int records) {
  std::string log;
  for (int i = 0; i < records; ++i) {
    char record[32];
    std::snprintf(record, sizeof record, "%08X0000000484030000\n",
                  static_cast<unsigned>(i) * milliseconds);
    log += record;
  }
  return log;
}

void PaceBesideUsleepAndSend(benchmark::State& state) {
  const auto milliseconds = static_cast<unsigned>(state.range(0));
  const int records = static_cast<int>(1000 / milliseconds);
  const std::string log = scratch->Write("paced", MakePacedLog(milliseconds, records));
  static ClientApp app;
  const TakingServer server;
  COMMUNICATION_LAYER layer;
  layer.SetChannelName(kServerName);
  communicationLayer = &layer;
  RecordClock clock;
  Logger* const before = std::exchange(logger, &clock);
  const double wanted = milliseconds / 1000.0;
  std::vector<double> late;
  std::vector<double> anchorLate;
  for (auto _ : state) {
    clock.shown.clear();
    state.SetIterationTime(SecondsOf([&] { RunBatchlog(app, log.c_str(), 1.0, 0); }));
    for (std::size_t i = 1; i < clock.shown.size(); ++i) {
      const std::chrono::duration<double> between = clock.shown[i] - clock.shown[i - 1];
      late.push_back(between.count() - wanted);
    }
    for (int i = 1; i < records; ++i) {
      const double seconds = SecondsOf([&] {
        usleep(milliseconds * 1000);
        layer.Send("\x84\x03\0\0", 4);
      });
      anchorLate.push_back(seconds - wanted);
    }
  }
  logger = before;
  communicationLayer = nullptr;
  if (late.size() != anchorLate.size()) return state.SkipWithError("records are missing");
  state.counters["late_us"] = Median(late) * 1e6;
  state.counters["anchor_us"] = Median(anchorLate) * 1e6;
  state.counters["ratio"] = Median(late) / Median(anchorLate);
}
BENCHMARK(PaceBesideUsleepAndSend)
    ->Arg(10)
    ->Arg(50)
    ->Arg(200)
    ->UseManualTime()
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  ventrik::scratch = &files;
  setenv("XDG_RUNTIME_DIR", files.Path("").c_str(), 1);
  benchmark::RunSpecifiedBenchmarks();
}
