// SPDX-License-Identifier: Apache-2.0
#include "benchmarks/exchange.h"

#include <dirent.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "ipc/ipc.h"

namespace ventrik {
namespace {

const char* const kServeOption = "--serve";
const char* const kServerName = "benchmark";
constexpr int kReadyDescriptor = 3;

std::map<std::string, Serve>& Services() {
  static std::map<std::string, Serve> services;
  return services;
}

cpu_set_t AllCores() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  for (long i = 0; i < sysconf(_SC_NPROCESSORS_CONF); ++i)
    CPU_SET(static_cast<std::size_t>(i), &cores);
  return cores;
}

void MoveAllThreads(const cpu_set_t& cores) {
  DIR* const threads = opendir("/proc/self/task");
  if (threads == nullptr) Die("/proc/self/task");
  while (const dirent* thread = readdir(threads)) {
    const pid_t id = std::atoi(thread->d_name);
    if (id > 0) sched_setaffinity(id, sizeof cores, &cores);
  }
  closedir(threads);
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

void SayReady() {
  if (write(kReadyDescriptor, "", 1) != 1) _exit(1);
  close(kReadyDescriptor);
}

void ServeLayer(const std::string&, void (*ready)()) {
  IpcServer* server = ipc_server_create(kServerName);
  if (server == nullptr) Die("ipc_server_create");
  ready();
  static char inbox[kLargestPayload + 1];
  for (;;) {
    IpcMessage* message = ipc_server_accept(server);
    if (message == nullptr) continue;
    ipc_read(message, inbox, ipc_length(message) + std::size_t{1});
    ipc_finish(message, 0);
  }
}
const Service layerService("layer", ServeLayer);

}  // namespace

void Die(const char* what) {
  std::perror(what);
  std::abort();
}

Cores::Cores(bool pinned) {
  if (!pinned) return;
  cpu_set_t first;
  CPU_ZERO(&first);
  CPU_SET(0, &first);
  MoveAllThreads(first);
}

Cores::~Cores() {
  MoveAllThreads(AllCores());
}

Service::Service(const char* name, Serve serve) {
  Services()[name] = serve;
}

void ServeIfAsked(int argc, char** argv) {
  if (argc != 4 || std::strcmp(argv[1], kServeOption) != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const auto service = Services().find(argv[2]);
  if (service == Services().end()) std::exit(2);
  service->second(argv[3], SayReady);
  std::exit(0);
}

TakingProcess::TakingProcess(const char* service, const std::string& address) {
  int ready[2];
  if (pipe(ready) != 0) Die("pipe");
  process_ = fork();
  if (process_ == 0) {
    close(ready[0]);
    if (ready[1] != kReadyDescriptor) dup2(ready[1], kReadyDescriptor);
    execl("/proc/self/exe", "benchmark", kServeOption, service, address.c_str(), nullptr);
    _exit(1);
  }
  close(ready[1]);
  char byte = 0;
  if (read(ready[0], &byte, 1) != 1) Die(service);
  close(ready[0]);
}

TakingProcess::~TakingProcess() {
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
}

std::string LibraryAddress(const std::string& base, int which) {
  return "ipc://" + base + std::to_string(which);
}

BareExchange::BareExchange() {
  for (auto& pair : pairs_) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) != 0) Die("socketpair");
  }
  process_ = fork();
  if (process_ == 0) Serve();
  for (const auto& pair : pairs_) close(pair[1]);
}

BareExchange::~BareExchange() {
  for (const auto& pair : pairs_) close(pair[0]);
  waitpid(process_, nullptr, 0);
}

void BareExchange::Send(const void* data, std::size_t length) {
  ExchangeHeader header;
  header.length = static_cast<std::uint32_t>(length);
  iovec parts[2] = {{&header, sizeof header}, {const_cast<void*>(data), length}};
  const ssize_t put = writev(pairs_[0][0], parts, 2);
  if (put < static_cast<ssize_t>(sizeof header)) Die("writev");
  const std::size_t sent = static_cast<std::size_t>(put) - sizeof header;
  WriteFully(pairs_[0][0], static_cast<const char*>(data) + sent, length - sent);
  std::uint32_t answer = 0;
  ReadFully(pairs_[0][0], &answer, sizeof answer);
  header.length = 0;
  WriteFully(pairs_[1][0], &header, sizeof header);
  ReadFully(pairs_[1][0], &answer, sizeof answer);
}

void BareExchange::Serve() {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  for (const auto& pair : pairs_) close(pair[0]);
  static char inbox[kLargestPayload];
  for (;;) {
    ExchangeHeader header;
    ReadFully(pairs_[0][1], &header, sizeof header);
    ReadFully(pairs_[0][1], inbox, header.length);
    WriteFully(pairs_[0][1], &header.length, sizeof header.length);
    ReadFully(pairs_[1][1], &header, sizeof header);
    WriteFully(pairs_[1][1], &header.length, sizeof header.length);
  }
}

LayerExchange::LayerExchange() : server_("layer", "") {
  layer_.SetChannelName(kServerName);
}

LayerExchange::~LayerExchange() {
  layer_.Disconnect();
}

void LayerExchange::Send(const void* data, std::size_t length) {
  if (layer_.Send(data, length) != 0) Die("send");
}

void SetExchangeShapes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"bytes", "pinned"})->UseManualTime()->Iterations(Rounds(301));
  for (const int pinned : {1, 0}) {
    for (const int bytes : {64, 1024, 16384, 500000}) benchmark->Args({bytes, pinned});
  }
}

}  // namespace ventrik
