// SPDX-License-Identifier: Apache-2.0
// Any bytes may come in at a channel's socket, in pieces, and a message of somebody else's is
// answered all the same. The first byte says where the input is cut.
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

#include "platform/linux/runtime_directory.h"
#include "platform/linux/socket.h"
#include "platform/neutrino.h"

namespace {

int channel = -1;
int connection = -1;

// Reads each message in two pieces and answers with its length.
void Serve() {
  std::array<char, 16> start = {};
  std::array<char, 256> rest = {};
  while (true) {
    _msg_info info = {};
    const int id = MsgReceive(channel, start.data(), start.size(), &info);
    if (id < 0) std::abort();
    if (id == 0) continue;
    MsgRead(id, rest.data(), rest.size(), info.msglen);
    MsgReply(id, static_cast<int>(info.srcmsglen), start.data(), start.size());
  }
}

void Send(int descriptor, const std::uint8_t* data, std::size_t size) {
  send(descriptor, data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  static std::string folder = "/tmp/ventrik-fuzz-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) std::abort();
  setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
  channel = ChannelCreate(_NTO_CHF_UNBLOCK | _NTO_CHF_DISCONNECT);
  std::thread(Serve).detach();
  connection = ConnectAttach(0, getpid(), channel, _NTO_SIDE_CHANNEL, 0);
  if (connection == -1) std::abort();
  std::atexit([] {
    ConnectDetach(connection);
    const std::string command = "rm -rf " + folder;
    if (std::system(command.c_str()) != 0) std::abort();
  });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto path = platform::ChannelPath(getpid(), channel, false);
  if (!path) std::abort();
  {
    const platform::UniqueFd stranger = platform::Dial(*path);
    if (!stranger) std::abort();
    const std::size_t cut = std::min<std::size_t>(data[0], size - 1);
    Send(stranger.get(), data + 1, cut);
    Send(stranger.get(), data + 1 + cut, size - 1 - cut);
    // It hangs up now: a receiver waits for a sender that has promised more and is still there.
  }
  // Sent behind those bytes, so that they have been looked at when this is answered.
  constexpr char kMessage[] = "a well-formed message";
  long answer = -1;
  do {
    answer = MsgSend(connection, kMessage, sizeof kMessage, nullptr, 0);
  } while (answer == -1 && errno == EINTR);  // the fuzzer's own alarm
  if (answer != sizeof kMessage) std::abort();
  return 0;
}
