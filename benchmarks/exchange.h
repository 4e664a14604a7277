// SPDX-License-Identifier: Apache-2.0
// Two processes and the messages between them, and what the benchmarks of several kinds of exchange
// share: pinning, the process that takes the messages, and rounds of a batch each.
#pragma once

#include <benchmark/benchmark.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "benchmarks/beside.h"
#include "ipc/client_communication_layer_posix.h"

namespace ventrik {

constexpr std::size_t kLargestPayload = 511999;  // bytes
constexpr int kBatch = 10;                       // messages in a round: shorter than a time slice

[[noreturn]] void Die(const char* what);

// Keeps this process and what it starts on one core for a scope, or lets it run anywhere, with all
// threads that it has. A library's own threads live longer than one benchmark.
class Cores {
 public:
  explicit Cores(bool pinned);
  ~Cores();
  Cores(const Cores&) = delete;
  Cores& operator=(const Cores&) = delete;
};

// What a taking process is called with: where its socket may be. It calls Ready() once it serves.
using Serve = void (*)(const std::string& address, void (*ready)());

// Makes a way of taking messages known under a name, before main.
struct Service {
  Service(const char* name, Serve serve);
};

// If this process was started to take messages, does that and never returns. First thing in main.
void ServeIfAsked(int argc, char** argv);

// A process that takes messages until it is destroyed. It is this program started anew: a library
// that has threads can't be used behind a bare fork.
class TakingProcess {
 public:
  // Returns once the process serves.
  TakingProcess(const char* service, const std::string& address);
  ~TakingProcess();
  TakingProcess(const TakingProcess&) = delete;
  TakingProcess& operator=(const TakingProcess&) = delete;

 private:
  pid_t process_ = 0;
};

// The header of a data part, as the bare exchanges send it.
struct ExchangeHeader {
  std::uint32_t kind = 1;
  std::uint32_t sender = 0;
  std::uint32_t length = 0;  // bytes of payload
  std::uint32_t extra = 0;
};

// Where a library's two sockets of an exchange are: one for data parts, one for end markers.
std::string LibraryAddress(const std::string& base, int which);

// The least: bare stream sockets. Header and payload answered by a word, then an end marker
// answered by a word, each on a socket pair of its own.
class BareExchange {
 public:
  BareExchange();
  ~BareExchange();
  BareExchange(const BareExchange&) = delete;
  BareExchange& operator=(const BareExchange&) = delete;

  void Send(const void* data, std::size_t length);

 private:
  [[noreturn]] void Serve();

  int pairs_[2][2];
  pid_t process_ = 0;
};

// The real thing: the communication layer and a server process that reads every message.
class LayerExchange {
 public:
  LayerExchange();
  ~LayerExchange();
  LayerExchange(const LayerExchange&) = delete;
  LayerExchange& operator=(const LayerExchange&) = delete;

  void Send(const void* data, std::size_t length);

 private:
  TakingProcess server_;
  COMMUNICATION_LAYER layer_;
};

void SetExchangeShapes(benchmark::internal::Benchmark* benchmark);

// Seconds for a batch of messages.
template <class Exchange>
double SecondsOfBatch(Exchange& exchange, const std::string& payload) {
  return SecondsOf([&] {
    for (int i = 0; i < kBatch; ++i) exchange.Send(payload.data(), payload.size());
  });
}

// A benchmark that sends payloads of range(0) bytes, with both processes on one core if range(1) is
// set.
template <class Anchor>
void RunExchange(benchmark::State& state) {
  const Cores cores(state.range(1) != 0);
  const std::string payload(static_cast<std::size_t>(state.range(0)), 'x');
  Anchor anchor;
  LayerExchange layer;
  anchor.Send(payload.data(), payload.size());
  layer.Send(payload.data(), payload.size());
  ReportCost(state, "us a message", 1e-6, kBatch,
             Compare(
                 state, [&] { return SecondsOfBatch(anchor, payload); },
                 [&] { return SecondsOfBatch(layer, payload); }));
}

}  // namespace ventrik
