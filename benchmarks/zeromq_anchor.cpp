// SPDX-License-Identifier: Apache-2.0
// The same two round trips by ZeroMQ: a pair of REQ and REP sockets for data parts, one for end
// markers.
#include <unistd.h>
#include <zmq.h>

#include "benchmarks/exchange.h"

namespace ventrik {
namespace {

void ServeZeroMq(const std::string& address, void (*ready)()) {
  void* const context = zmq_ctx_new();
  void* sockets[2];
  for (int i = 0; i < 2; ++i) {
    sockets[i] = zmq_socket(context, ZMQ_REP);
    if (zmq_bind(sockets[i], LibraryAddress(address, i).c_str()) != 0) Die("zmq_bind");
  }
  ready();
  static char inbox[kLargestPayload];
  for (;;) {
    ExchangeHeader header;
    zmq_recv(sockets[0], &header, sizeof header, 0);
    zmq_recv(sockets[0], inbox, sizeof inbox, 0);
    zmq_send(sockets[0], &header.length, sizeof header.length, 0);
    zmq_recv(sockets[1], &header, sizeof header, 0);
    zmq_send(sockets[1], &header.length, sizeof header.length, 0);
  }
}
const Service zeroMqService("zeromq", ServeZeroMq);

class ZeroMqExchange {
 public:
  ZeroMqExchange() : server_("zeromq", files_.Path("socket")), context_(zmq_ctx_new()) {
    for (int i = 0; i < 2; ++i) {
      sockets_[i] = zmq_socket(context_, ZMQ_REQ);
      const int noWait = 0;
      zmq_setsockopt(sockets_[i], ZMQ_LINGER, &noWait, sizeof noWait);
      const std::string address = LibraryAddress(files_.Path("socket"), i);
      if (zmq_connect(sockets_[i], address.c_str()) != 0) Die("zmq_connect");
    }
  }
  ~ZeroMqExchange() {
    for (void* socket : sockets_) zmq_close(socket);
    zmq_ctx_term(context_);
  }
  ZeroMqExchange(const ZeroMqExchange&) = delete;
  ZeroMqExchange& operator=(const ZeroMqExchange&) = delete;

  void Send(const void* data, std::size_t length) {
    ExchangeHeader header;
    header.length = static_cast<std::uint32_t>(length);
    std::uint32_t answer = 0;
    zmq_send(sockets_[0], &header, sizeof header, ZMQ_SNDMORE);
    zmq_send(sockets_[0], data, length, 0);
    if (zmq_recv(sockets_[0], &answer, sizeof answer, 0) != sizeof answer) Die("zmq_recv");
    if (answer != length) Die("other length");
    header.length = 0;
    zmq_send(sockets_[1], &header, sizeof header, 0);
    if (zmq_recv(sockets_[1], &answer, sizeof answer, 0) != sizeof answer) Die("zmq_recv");
  }

 private:
  Scratch files_;
  TakingProcess server_;
  void* context_;
  void* sockets_[2];
};

void SendBesideZeroMq(benchmark::State& state) {
  RunExchange<ZeroMqExchange>(state);
}
BENCHMARK(SendBesideZeroMq)->Apply(SetExchangeShapes);

}  // namespace
}  // namespace ventrik
