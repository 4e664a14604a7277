// SPDX-License-Identifier: Apache-2.0
#include "tests/ipc/raw_end.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace ventrik::tests {
namespace {

int AttachTo(std::uint32_t pid, std::uint32_t chid) {
  return ConnectAttach(0, static_cast<pid_t>(pid), static_cast<int>(chid), _NTO_SIDE_CHANNEL,
                       _NTO_COF_CLOEXEC);
}

}  // namespace

std::string Record(std::uint32_t kind, std::uint32_t first, std::uint32_t second,
                   std::uint32_t third) {
  std::string bytes;
  for (const std::uint32_t word : {kind, first, second, third}) {
    for (int shift = 0; shift < 32; shift += 8) {
      bytes += static_cast<char>(static_cast<unsigned char>(word >> shift));
    }
  }
  return bytes;
}

std::string Record(std::uint32_t kind, int first, int second, int third) {
  return Record(kind, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(second),
                static_cast<std::uint32_t>(third));
}

std::uint32_t WordOf(const std::string& record, std::size_t index) {
  std::uint32_t word = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const auto byte = static_cast<unsigned char>(record.at(index * 4 + i));
    word |= static_cast<std::uint32_t>(byte) << (8 * i);
  }
  return word;
}

RawMessage TakeRaw(int chid) {
  RawMessage message;
  _msg_info info = {};
  std::array<char, 16> head = {};
  do {
    message.id = MsgReceive(chid, head.data(), head.size(), &info);
  } while (message.id == 0);
  if (message.id < 0) return message;
  message.answerRoom = info.dstmsglen;
  message.bytes.assign(head.data(), info.msglen);
  message.bytes.resize(info.srcmsglen);
  MsgRead(message.id, message.bytes.data() + info.msglen, info.srcmsglen - info.msglen,
          info.msglen);
  return message;
}

std::string SendRaw(int coid, const std::string& bytes) {
  const long status = MsgSend(coid, bytes.data(), bytes.size(), nullptr, 0);
  return status == -1 ? "error " + std::to_string(errno) : std::to_string(status);
}

std::string SendRawWithin(int milliseconds, int coid, const std::string& bytes) {
  const std::uint64_t limit = static_cast<std::uint64_t>(milliseconds) * 1'000'000;
  struct sigevent unblock = {};
  unblock.sigev_notify = SIGEV_UNBLOCK;
  TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_SEND | _NTO_TIMEOUT_REPLY, &unblock, &limit, nullptr);
  return SendRaw(coid, bytes);
}

RawServer OpenRawServer(const char* name) {
  for (int i = 0; i < 20; ++i) ChannelDestroy(ChannelCreate(0));
  RawServer server = {};
  server.attach = name_attach(dispatch_create_channel(ChannelCreate(0x4b), 0), name, 0);
  server.channel0 = server.attach == nullptr ? -1 : server.attach->chid;
  server.channel1 = ChannelCreate(3);
  return server;
}

RawClient ShakeHands(const RawServer& server) {
  const RawMessage request = TakeRaw(server.channel0);
  const std::uint32_t pid = WordOf(request.bytes, 3);
  const RawClient client = {request.bytes, request.answerRoom,
                            AttachTo(pid, WordOf(request.bytes, 1)),
                            AttachTo(pid, WordOf(request.bytes, 2))};
  const std::string reply = Record(512, server.channel0, server.channel1, getpid());
  MsgReply(request.id, 0, reply.data(), reply.size());
  return client;
}

RawConnection ConnectRaw(const char* name) {
  RawConnection connection = {{ChannelCreate(3), ChannelCreate(3)}, name_open(name, 0), -1, {}};
  const std::string request = Record(512, connection.channels[0], connection.channels[1], getpid());
  connection.reply.resize(16);
  if (MsgSend(connection.toChannel0, request.data(), request.size(), connection.reply.data(),
              connection.reply.size()) == 0) {
    connection.toChannel1 = AttachTo(WordOf(connection.reply, 3), WordOf(connection.reply, 2));
  }
  return connection;
}

}  // namespace ventrik::tests
