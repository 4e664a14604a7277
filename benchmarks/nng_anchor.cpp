// SPDX-License-Identifier: Apache-2.0
// The same two round trips by nng: a req and a rep socket for data parts, and two for end markers.
#include <nng/nng.h>
#include <nng/protocol/reqrep0/rep.h>
#include <nng/protocol/reqrep0/req.h>

#include <cstring>

#include "benchmarks/exchange.h"

namespace ventrik {
namespace {

void Check(int result, const char* what) {
  if (result != 0) Die(what);
}

// Takes a message, of which `into` is to hold the beginning.
void Take(nng_socket socket, void* into, std::size_t size) {
  Check(nng_recv(socket, into, &size, 0), "nng_recv");
}

void ServeNng(const std::string& address, void (*ready)()) {
  nng_socket sockets[2];
  for (int i = 0; i < 2; ++i) {
    Check(nng_rep0_open(&sockets[i]), "nng_rep0_open");
    Check(nng_setopt_size(sockets[i], NNG_OPT_RECVMAXSZ, 0), "nng_setopt_size");
    Check(nng_listen(sockets[i], LibraryAddress(address, i).c_str(), nullptr, 0), "nng_listen");
  }
  ready();
  static char inbox[kLargestPayload];
  for (;;) {
    nng_msg* message = nullptr;
    Check(nng_recvmsg(sockets[0], &message, 0), "nng_recvmsg");
    ExchangeHeader header;
    const char* const body = static_cast<const char*>(nng_msg_body(message));
    std::memcpy(&header, body, sizeof header);
    std::memcpy(inbox, body + sizeof header, header.length);
    nng_msg_free(message);
    Check(nng_send(sockets[0], &header.length, sizeof header.length, 0), "nng_send");
    Take(sockets[1], &header, sizeof header);
    Check(nng_send(sockets[1], &header.length, sizeof header.length, 0), "nng_send");
  }
}
const Service nngService("nng", ServeNng);

class NngExchange {
 public:
  NngExchange() : server_("nng", files_.Path("socket")) {
    for (int i = 0; i < 2; ++i) {
      const std::string address = LibraryAddress(files_.Path("socket"), i);
      Check(nng_req0_open(&sockets_[i]), "nng_req0_open");
      Check(nng_dial(sockets_[i], address.c_str(), nullptr, 0), "nng_dial");
    }
  }
  ~NngExchange() {
    for (const nng_socket& socket : sockets_) nng_close(socket);
  }
  NngExchange(const NngExchange&) = delete;
  NngExchange& operator=(const NngExchange&) = delete;

  void Send(const void* data, std::size_t length) {
    ExchangeHeader header;
    header.length = static_cast<std::uint32_t>(length);
    nng_msg* message = nullptr;
    Check(nng_msg_alloc(&message, sizeof header + length), "nng_msg_alloc");
    char* const body = static_cast<char*>(nng_msg_body(message));
    std::memcpy(body, &header, sizeof header);
    std::memcpy(body + sizeof header, data, length);
    Check(nng_sendmsg(sockets_[0], message, 0), "nng_sendmsg");
    std::uint32_t answer = 0;
    Take(sockets_[0], &answer, sizeof answer);
    if (answer != length) Die("other length");
    header.length = 0;
    Check(nng_send(sockets_[1], &header, sizeof header, 0), "nng_send");
    Take(sockets_[1], &answer, sizeof answer);
  }

 private:
  Scratch files_;
  TakingProcess server_;
  nng_socket sockets_[2];
};

void SendBesideNng(benchmark::State& state) {
  RunExchange<NngExchange>(state);
}
BENCHMARK(SendBesideNng)->Apply(SetExchangeShapes);

}  // namespace
}  // namespace ventrik
