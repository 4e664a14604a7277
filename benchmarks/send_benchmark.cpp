// SPDX-License-Identifier: Apache-2.0
// One message to another process, beside the least that it could cost on stream sockets.
//
// The anchor does the same two blocking round trips over bare socket pairs: header and payload
// answered by a word, then an end marker answered by a word. Both processes of a pair run on one
// core, because waking a sleeping core costs more than everything that is measured here. The two
// are measured in turn, a batch each, and the ratio is taken batch by batch.
#include <benchmark/benchmark.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ipc/client_communication_layer_posix.h"
#include "ipc/ipc.h"

namespace ventrik {
namespace {

constexpr std::size_t kLargest = 511999;  // bytes of payload
constexpr int kBatch = 50;                // messages
const char* const kServerName = "benchmark";

[[noreturn]] void Die(const char* what) {
  std::perror(what);
  std::abort();
}

void PinToOneCore() {
  cpu_set_t core;
  CPU_ZERO(&core);
  CPU_SET(0, &core);
  sched_setaffinity(0, sizeof core, &core);
}

void ReadFully(int descriptor, void* data, std::size_t size) {
  char* to = static_cast<char*>(data);
  while (size > 0) {
    const ssize_t got = read(descriptor, to, size);
    if (got <= 0) _exit(0);  // the other process is gone
    to += got;
    size -= static_cast<std::size_t>(got);
  }
}

void WriteFully(int descriptor, const void* data, std::size_t size) {
  const char* from = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t put = write(descriptor, from, size);
    if (put <= 0) Die("write");
    from += put;
    size -= static_cast<std::size_t>(put);
  }
}

// The bare exchange: one socket pair for the data part, one for the end marker.
class BareExchange {
 public:
  BareExchange() {
    for (auto& pair : pairs_) {
      if (socketpair(AF_UNIX, SOCK_STREAM, 0, pair) != 0) Die("socketpair");
    }
    child_ = fork();
    if (child_ == 0) Serve();
    for (const auto& pair : pairs_) close(pair[1]);
  }
  ~BareExchange() {
    for (const auto& pair : pairs_) close(pair[0]);
    waitpid(child_, nullptr, 0);
  }
  BareExchange(const BareExchange&) = delete;
  BareExchange& operator=(const BareExchange&) = delete;

  void Send(const void* data, std::size_t length) {
    IpcControlRecord header = {IPC_DATA, {0, static_cast<std::uint32_t>(length), 0}};
    iovec parts[2] = {{&header, sizeof header}, {const_cast<void*>(data), length}};
    const ssize_t put = writev(pairs_[0][0], parts, 2);
    if (put < static_cast<ssize_t>(sizeof header)) Die("writev");
    const std::size_t sent = static_cast<std::size_t>(put) - sizeof header;
    WriteFully(pairs_[0][0], static_cast<const char*>(data) + sent, length - sent);
    std::uint32_t answer = 0;
    ReadFully(pairs_[0][0], &answer, sizeof answer);
    header.words[1] = 0;
    WriteFully(pairs_[1][0], &header, sizeof header);
    ReadFully(pairs_[1][0], &answer, sizeof answer);
  }

 private:
  [[noreturn]] void Serve() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    for (const auto& pair : pairs_) close(pair[0]);
    static char inbox[kLargest];
    for (;;) {
      IpcControlRecord record;
      ReadFully(pairs_[0][1], &record, sizeof record);
      ReadFully(pairs_[0][1], inbox, record.words[1]);
      WriteFully(pairs_[0][1], &record.words[1], sizeof record.words[1]);
      ReadFully(pairs_[1][1], &record, sizeof record);
      WriteFully(pairs_[1][1], &record.words[1], sizeof record.words[1]);
    }
  }

  int pairs_[2][2];
  pid_t child_ = 0;
};

// The real thing: the communication layer and a server process that reads every message.
class LayerExchange {
 public:
  LayerExchange() {
    int ready[2];
    if (pipe(ready) != 0) Die("pipe");
    child_ = fork();
    if (child_ == 0) Serve(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1) Die("server");
    close(ready[0]);
    close(ready[1]);
    layer_.SetChannelName(kServerName);
  }
  ~LayerExchange() {
    layer_.Disconnect();
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  LayerExchange(const LayerExchange&) = delete;
  LayerExchange& operator=(const LayerExchange&) = delete;

  void Send(const void* data, std::size_t length) {
    if (layer_.Send(data, length) != 0) Die("send");
  }

 private:
  [[noreturn]] static void Serve(int ready) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    IpcServer* server = ipc_server_create(kServerName);
    if (server == nullptr || write(ready, "", 1) != 1) _exit(1);
    static char inbox[kLargest + 1];
    for (;;) {
      IpcMessage* message = ipc_server_accept(server);
      if (message == nullptr) continue;
      ipc_read(message, inbox, ipc_length(message) + std::size_t{1});
      ipc_finish(message, 0);
    }
  }

  COMMUNICATION_LAYER layer_;
  pid_t child_ = 0;
};

template <class Exchange>
double SecondsPerMessage(Exchange& exchange, const std::string& payload) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  for (int i = 0; i < kBatch; ++i) exchange.Send(payload.data(), payload.size());
  return std::chrono::duration<double>(Clock::now() - start).count() / kBatch;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

void SendBesideBareExchange(benchmark::State& state) {
  const std::string payload(static_cast<std::size_t>(state.range(0)), 'x');
  BareExchange bare;
  LayerExchange layer;
  std::vector<double> ours;
  std::vector<double> anchor;
  std::vector<double> ratios;
  for (auto _ : state) {
    anchor.push_back(SecondsPerMessage(bare, payload));
    ours.push_back(SecondsPerMessage(layer, payload));
    ratios.push_back(ours.back() / anchor.back());
    state.SetIterationTime(ours.back());
  }
  state.counters["ours_us"] = Median(ours) * 1e6;
  state.counters["bare_us"] = Median(anchor) * 1e6;
  state.counters["ratio"] = Median(ratios);
}
BENCHMARK(SendBesideBareExchange)->Arg(64)->Arg(1024)->Arg(16384)->Arg(500000)->UseManualTime();

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  char directory[] = "/tmp/ventrik-benchmark-XXXXXX";
  if (mkdtemp(directory) == nullptr) ventrik::Die("mkdtemp");
  setenv("XDG_RUNTIME_DIR", directory, 1);
  ventrik::PinToOneCore();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  const std::string remove = std::string("rm -rf ") + directory;
  return std::system(remove.c_str()) == 0 ? 0 : 1;
}
