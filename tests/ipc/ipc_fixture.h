// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the transport: the other end in a process of its own, and words with it.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "ipc/ipc.h"
#include "tests/ipc/raw_end.h"
#include "tests/support/child_process.h"
#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {

// Texts from one process to another, beside the channels under test. Made before the fork.
class Mailbox {
 public:
  Mailbox() {
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends_.data()) != 0) std::abort();
  }
  ~Mailbox() {
    for (const int end : ends_) close(end);
  }
  Mailbox(const Mailbox&) = delete;
  Mailbox& operator=(const Mailbox&) = delete;

  void Put(const std::string& text) const {
    if (send(ends_[1], text.data(), text.size(), 0) < 0) std::abort();
  }

  // Waits for the next text; a test that hangs gets "(nothing)" instead.
  std::string Take() const {
    pollfd wait = {ends_[0], POLLIN, 0};
    if (poll(&wait, 1, 60'000) <= 0) return "(nothing)";
    std::array<char, 4096> text = {};
    const ssize_t length = recv(ends_[0], text.data(), text.size(), 0);
    return std::string(text.data(), static_cast<std::size_t>(length < 0 ? 0 : length));
  }

  bool IsEmpty() const {
    pollfd wait = {ends_[0], POLLIN, 0};
    return poll(&wait, 1, 0) == 0;
  }

 private:
  std::array<int, 2> ends_;
};

// Starts a message with `text` as its data part and ends it.
inline void SendMessage(IpcPeer* to, const std::string& text) {
  IpcMessage* message = ipc_connect(to);
  ipc_write(message, text.data(), text.size());
  ipc_disconnect(message);
}

// Waits for the next message of any client, passing over pulses.
inline IpcMessage* AcceptMessage(IpcServer* server) {
  IpcMessage* message = nullptr;
  while (message == nullptr) message = ipc_server_accept(server);
  return message;
}

// Takes the rest of a message up to its end marker, if it comes, and gives the object back.
inline std::string TakeText(IpcMessage* message) {
  std::string text(ipc_length(message) + 1, '?');
  const int count = ipc_read(message, text.data(), text.size());
  ipc_finish(message, 0);
  if (count < 0) return "(given up)";
  text.resize(static_cast<std::size_t>(count));
  return text;
}

inline std::string NextText(IpcServer* server) {
  return TakeText(AcceptMessage(server));
}

class IpcTest : public testing::Test {
 protected:
  using ServerBody = std::function<int(IpcServer*)>;
  using RawServerBody = std::function<int(RawServer&)>;

  // A process that serves under `name` until `body` returns.
  std::unique_ptr<ChildProcess> StartServer(const char* name, const ServerBody& body) {
    auto process = std::make_unique<ChildProcess>([this, name, &body] {
      IpcServer* server = ipc_server_create(name);
      fromChild_.Put(server == nullptr ? "failed" : "serves");
      return server == nullptr ? 99 : body(server);
    });
    EXPECT_EQ(fromChild_.Take(), "serves");
    return process;
  }

  // The same with a server of kernel calls, named "raw".
  std::unique_ptr<ChildProcess> StartRawServer(const RawServerBody& body) {
    auto process = std::make_unique<ChildProcess>([this, &body] {
      RawServer server = OpenRawServer("raw");
      fromChild_.Put(server.attach == nullptr ? "failed" : "serves");
      return server.attach == nullptr ? 99 : body(server);
    });
    EXPECT_EQ(fromChild_.Take(), "serves");
    return process;
  }

  // A process that runs `body` once this one has put "go" into its mailbox.
  std::unique_ptr<ChildProcess> StartClient(const std::function<int()>& body) {
    return std::make_unique<ChildProcess>([this, &body] {
      toChild_.Take();
      return body();
    });
  }

  TemporaryRuntimeDirectory directory_;
  RecordedConsole console_;
  Mailbox fromChild_;
  Mailbox toChild_;
};

}  // namespace ventrik::tests
