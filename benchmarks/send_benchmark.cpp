// SPDX-License-Identifier: Apache-2.0
// One message to another process, beside the least that it could cost on stream sockets. What a
// library would take for the same two round trips is in the files for each library, which are part
// of this program where the library is there.
//
// Pinned to one core the exchange itself shows. Left alone, the waking of a sleeping core costs
// more than everything else, and whether it sleeps depends on what the machine does besides.
#include "benchmarks/exchange.h"

namespace ventrik {
namespace {

void SendBesideBareSockets(benchmark::State& state) {
  RunExchange<BareExchange>(state);
}
BENCHMARK(SendBesideBareSockets)->Apply(SetExchangeShapes);

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  ventrik::ServeIfAsked(argc, argv);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const ventrik::Scratch files;
  setenv("XDG_RUNTIME_DIR", files.Path("").c_str(), 1);
  benchmark::RunSpecifiedBenchmarks();
}
