// SPDX-License-Identifier: Apache-2.0
// A replay's two speeds: how fast the silent pass gets through a file, beside the plain road with
// fread for the fields and fgetc for the payload; and how late each record is, beside a bare
// usleep with a send behind it.
#include <benchmark/benchmark.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdarg>
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

const std::size_t kLogSize = Amount(64'000'000);
const char* const kServerName = "benchmark";
// Ends the replay in the silent pass.
const char* const kUnreadableRecord = "0000000000000001gg\n";

const Scratch* scratch = nullptr;

std::string MakeRecords(std::size_t size) {
  std::minstd_rand random(7);
  std::string log;
  unsigned time = 0x1000;
  while (log.size() < size) {
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

// Returns where the record ends that it can't read.
long PlainScan(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  static std::uint8_t payload[8192];
  std::uint64_t sum = 0;
  bool isReadable = true;
  std::uint32_t time = 0;
  std::uint32_t length = 0;
  while (PlainField(file, time) && PlainField(file, length) && length <= sizeof payload) {
    for (std::uint32_t i = 0; i < length && isReadable; ++i) {
      const int high = HexDigit(static_cast<char>(std::fgetc(file)));
      const int low = HexDigit(static_cast<char>(std::fgetc(file)));
      isReadable = (high | low) >= 0;
      payload[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    if (!isReadable) break;
    sum += time + payload[length - 1];
    char end = 0;
    if (std::fread(&end, 1, 1, file) == 1 && end != '\n') std::fseek(file, -1, SEEK_CUR);
  }
  benchmark::DoNotOptimize(sum);
  const long end = std::ftell(file);
  std::fclose(file);
  return end;
}

// Notes the position that a replay tells when it can't read a record.
class EndNote : public SilentLogger {
 public:
  int print(const wchar_t* format, ...) override {
    if (std::wcsncmp(format, L"Error, can't read", 17) != 0) return 0;
    va_list arguments;
    va_start(arguments, format);
    va_arg(arguments, unsigned);  // the length
    end = va_arg(arguments, unsigned);
    va_end(arguments);
    return 0;
  }

  unsigned end = 0;
};

void ScanBesideFgetc(benchmark::State& state) {
  const std::string log = scratch->Write("records", MakeRecords(kLogSize));
  static ClientApp app;
  EndNote note;
  Logger* const before = std::exchange(logger, &note);
  long end = 0;
  const Comparison seconds = Compare(
      state, [&] { return ProcessorSecondsOf([&] { end = PlainScan(log.c_str()); }); },
      [&] {
        note.end = 0;
        return ProcessorSecondsOf([&] { RunBatchlog(app, log.c_str(), 1.0, 0); });
      });
  logger = before;
  if (end < static_cast<long>(kLogSize) || note.end != static_cast<unsigned long>(end)) {
    return state.SkipWithError("the two end at different records");
  }
  ReportSpeed(state, static_cast<double>(kLogSize), seconds);
}
BENCHMARK(ScanBesideFgetc)->UseManualTime()->Iterations(Rounds(7))->Unit(benchmark::kMillisecond);

// A kilobyte of a log of that many.
void ScanGrowth(benchmark::State& state) {
  constexpr std::size_t kLeast = 500;
  static ClientApp app;
  for (const std::size_t times : {1, 10, 100}) {
    scratch->Write(std::to_string(times * kLeast), MakeRecords(times * kLeast * 1000));
  }
  RunGrowth(state, kLeast, [](std::size_t pieces) {
    const std::string log = scratch->Path(std::to_string(pieces));
    return ProcessorSecondsOf([&] { RunBatchlog(app, log.c_str(), 1.0, 0); });
  });
}
BENCHMARK(ScanGrowth)->UseManualTime()->Iterations(Rounds(15))->Unit(benchmark::kMillisecond);

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

// How late each record is, the first one apart.
std::vector<double> LatenessOfReplay(ClientApp& app, const std::string& log, double wanted) {
  RecordClock clock;
  Logger* const before = std::exchange(logger, &clock);
  RunBatchlog(app, log.c_str(), 1.0, 0);
  logger = before;
  std::vector<double> late;
  for (std::size_t i = 1; i < clock.shown.size(); ++i) {
    const std::chrono::duration<double> between = clock.shown[i] - clock.shown[i - 1];
    late.push_back(between.count() - wanted);
  }
  return late;
}

void PaceBesideUsleepAndSend(benchmark::State& state) {
  const auto milliseconds = static_cast<unsigned>(state.range(0));
  const int records = Quick() ? 3 : std::max(5, static_cast<int>(500 / milliseconds));
  const std::string log = scratch->Write("paced", MakePacedLog(milliseconds, records));
  static ClientApp app;
  const TakingServer server;
  COMMUNICATION_LAYER layer;
  layer.SetChannelName(kServerName);
  communicationLayer = &layer;
  const double wanted = milliseconds / 1000.0;
  bool complete = true;
  const Comparison late = Compare(
      state,
      [&] {
        std::vector<double> each;
        for (int i = 1; i < records; ++i) {
          each.push_back(SecondsOf([&] {
                           usleep(milliseconds * 1000);
                           layer.Send("\x84\x03\0\0", 4);
                         }) -
                         wanted);
        }
        return Median(each);
      },
      [&] {
        const std::vector<double> each = LatenessOfReplay(app, log, wanted);
        complete &= each.size() + 1 == static_cast<std::size_t>(records);
        return Median(each);
      });
  communicationLayer = nullptr;
  if (!complete) return state.SkipWithError("records are missing");
  ReportCost(state, "us late", 1e-6, 1, late);
}
BENCHMARK(PaceBesideUsleepAndSend)
    ->ArgName("ms")
    ->Arg(10)
    ->Arg(50)
    ->UseManualTime()
    ->Iterations(Rounds(7))
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
