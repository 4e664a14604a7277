// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the communication layer: this process is the tester, servers are processes of
// their own.
#pragma once

#include <string>
#include <vector>

#include "ipc/client_communication_layer_posix.h"
#include "tests/ipc/ipc_fixture.h"

namespace ventrik::tests {

inline constexpr std::size_t kReceiveSize = 512000;  // bytes of the listener's buffer

class LayerTest : public IpcTest {
 protected:
  explicit LayerTest(const char* serverName = "navigation") { layer_.SetChannelName(serverName); }

  // A server that tells each text it gets.
  std::unique_ptr<ChildProcess> StartListeningServer(const char* name = "navigation") {
    return StartServer(name, [this](IpcServer* server) {
      for (;;) fromChild_.Put(NextText(server));
      return 0;
    });
  }

  // A server that sends each text back with its own name in front.
  std::unique_ptr<ChildProcess> StartEchoingServer(const char* name) {
    return StartServer(name, [name](IpcServer* server) {
      for (;;) {
        IpcMessage* message = AcceptMessage(server);
        IpcPeer* client = message->clientRecord;
        const std::string text = TakeText(message);
        if (client != nullptr) SendMessage(client, std::string(name) + ": " + text);
      }
      return 0;
    });
  }

  // A server that waits for a first message and then sends to its sender.
  std::unique_ptr<ChildProcess> StartSendingServer(const std::function<int(IpcPeer*)>& body) {
    return StartServer("navigation", [&body](IpcServer* server) {
      IpcMessage* message = AcceptMessage(server);
      IpcPeer* client = message->clientRecord;
      TakeText(message);
      return body(client);
    });
  }

  int Send(const std::string& text) { return layer_.Send(text.data(), text.size()); }

  // The next message's text, or the result if there is none.
  std::string Receive() {
    std::vector<char> buffer(kReceiveSize, '?');
    const int result = layer_.Receive(buffer.data(), buffer.size());
    if (result < 1) return std::to_string(result);
    if (buffer[static_cast<std::size_t>(result) - 1] != '\0') return "(not ended)";
    return std::string(buffer.data(), static_cast<std::size_t>(result) - 1);
  }

  COMMUNICATION_LAYER layer_;
};

// The same with a server of kernel calls.
class RawLayerTest : public LayerTest {
 protected:
  RawLayerTest() : LayerTest("raw") {}

  // Takes one message and answers both of its parts as a server does. Returns its payload.
  static std::string ServeMessage(const RawServer& raw) {
    const RawMessage data = TakeRaw(raw.channel0);
    MsgReply(data.id, static_cast<long>(data.bytes.size()) - 16, nullptr, 0);
    MsgReply(TakeRaw(raw.channel1).id, 0, nullptr, 0);
    return data.bytes.substr(16);
  }
};

}  // namespace ventrik::tests
