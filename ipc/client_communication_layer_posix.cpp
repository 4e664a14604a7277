// SPDX-License-Identifier: Apache-2.0
#include "ipc/client_communication_layer_posix.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "console/utf8.h"
#include "state/assertion.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr const char* kSourceName = "client_communication_layer_posix";
constexpr const char* kServerLink = "/QXpersistence/kelmora_dul_channel";
constexpr const char* kDefaultServer = "navigation";
constexpr std::size_t kLongestName = 50;   // bytes read from the link
constexpr int kListenerCancelled = EINTR;  // what the sender of an abandoned message is told

}  // namespace

// The connection, shared with the threads that use it at the moment. Without a peer if there is
// nobody to connect to.
struct COMMUNICATION_LAYER::Client {
  explicit Client(const std::string& server) : peer(ipc_open(server.c_str())) {}
  ~Client() {
    if (peer != nullptr) ipc_close(peer);
  }
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;

  IpcPeer* const peer;
};

COMMUNICATION_LAYER::COMMUNICATION_LAYER() = default;

COMMUNICATION_LAYER::~COMMUNICATION_LAYER() {
  Disconnect();
  if (message_ != nullptr) FailAssertion(kSourceName, 18, "~COMMUNICATION_LAYER");
  if (client_.Copy()) FailAssertion(kSourceName, 19, "~COMMUNICATION_LAYER");
}

void COMMUNICATION_LAYER::SetChannelName(std::string name) {
  channelName_.Store(std::move(name));
}

bool COMMUNICATION_LAYER::Connect() {
  const std::lock_guard<std::mutex> hold(connecting_);
  while (!client_.Copy()) {
    const std::string name = channelName_.Copy();
    ipc_init();
    auto client = std::make_shared<Client>(name);
    if (client->peer == nullptr) return false;
    // A server switched away from during the handshake is not the one to talk to.
    if (channelName_.Copy() == name) client_.Store(std::move(client));
  }
  return true;
}

int COMMUNICATION_LAYER::BeginSend() {
  std::unique_lock<std::mutex> hold(mutex_);
  sending_ = client_.Copy();
  if (!sending_ && Connect()) sending_ = client_.Copy();
  if (sending_) message_ = ipc_connect(sending_->peer);
  if (message_ == nullptr) {
    sending_.reset();
    hold.unlock();
    std::fputs("ipc_connect() failed\n", stderr);
    return -1;
  }
  hold.release();
  return 1;
}

int COMMUNICATION_LAYER::EndSend() {
  const std::unique_lock<std::mutex> hold(mutex_, std::adopt_lock);
  const std::shared_ptr<Client> client = std::move(sending_);
  IpcMessage* message = message_;
  message_ = nullptr;
  if (message != nullptr) ipc_disconnect(message);
  return 0;
}

int COMMUNICATION_LAYER::Send(const void* data, std::size_t length) {
  struct Unwinding {
    COMMUNICATION_LAYER& layer;
    bool cancelled = true;
    ~Unwinding() {
      if (cancelled) layer.EndSend();
    }
  };
  const int begun = BeginSend();
  if (begun < 1) return begun;
  Unwinding unwinding{*this};
  ipc_write(message_, data, length);
  unwinding.cancelled = false;
  return EndSend();
}

int COMMUNICATION_LAYER::Receive(void* buffer, std::size_t size) {
  // Answers and gives back a message that a cancelled listener has in hand.
  struct InHand {
    IpcMessage* message;
    ~InHand() {
      if (message != nullptr) ipc_finish(message, kListenerCancelled);
    }
  };
  std::shared_ptr<Client> client = client_.Copy();
  if (!client && Connect()) client = client_.Copy();
  if (!client) return -1;
  IpcMessage* message = ipc_accept(client->peer);
  if (message == nullptr) return -1;
  if (ipc_length(message) >= size) {
    leftUnread_.With([message](auto& left) { left.push_back(message); });
    return -2;
  }
  const std::size_t length = ipc_length(message) + std::size_t{1};
  InHand inHand{message};
  ipc_read(message, buffer, length);
  inHand.message = nullptr;
  ipc_finish(message, 0);
  return static_cast<int>(length);
}

int COMMUNICATION_LAYER::Disconnect() {
  const std::shared_ptr<Client> client =
      client_.With([](auto& held) { return std::exchange(held, nullptr); });
  if (client) ipc_hang_up(client->peer);
  const std::vector<IpcMessage*> left =
      leftUnread_.With([](auto& held) { return std::exchange(held, {}); });
  for (IpcMessage* message : left) ipc_finish(message, kListenerCancelled);
  return ipc_cleanup();
}

const char* GetChannelName() {
  static std::array<char, kLongestName + 1> name = {};
  if (readlink(kServerLink, name.data(), kLongestName) < 0) {
    std::strcpy(name.data(), kDefaultServer);
  }
  if (logger != nullptr) {
    logger->print(L"get_kelmora_dul_channel:%ls\n", Utf8ToWide(name.data()).c_str());
  }
  return name.data();
}

}  // namespace ventrik
