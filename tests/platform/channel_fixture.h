// SPDX-License-Identifier: Apache-2.0
// Verbs for tests of the message passing: a receiver in a process of its own, and what to send it.
#pragma once

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/neutrino.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {

inline constexpr std::uint64_t kMillisecond = 1'000'000;  // nanoseconds

class ChannelTest : public testing::Test {
 protected:
  // A process that makes a channel with `flags` and runs `body` on it. Returns a connection to it.
  int ConnectToReceiver(unsigned flags, const std::function<int(int chid)>& body) {
    receiver_ = std::make_unique<ChildProcess>([this, flags, &body] {
      const int chid = ChannelCreate(flags);
      ready_.Notify(chid);
      return chid < 0 ? 99 : body(chid);
    });
    receiverChannel_ = ready_.Await();
    return ConnectAttach(0, receiver_->pid(), receiverChannel_, _NTO_SIDE_CHANNEL,
                         _NTO_COF_CLOEXEC);
  }

  // Answers every message with its own length until the channel is gone.
  static int AnswerLengths(int chid) {
    for (;;) {
      char first[16];
      _msg_info info = {};
      const int id = MsgReceive(chid, first, sizeof first, &info);
      if (id < 0) return 1;
      if (id > 0) MsgReply(id, static_cast<long>(info.srcmsglen), nullptr, 0);
    }
  }

  static long SendText(int coid, const std::string& text) {
    return MsgSend(coid, text.data(), text.size(), nullptr, 0);
  }

  static void LimitNextCall(std::uint64_t nanoseconds) {
    struct sigevent unblock = {};
    unblock.sigev_notify = SIGEV_UNBLOCK;
    TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_SEND | _NTO_TIMEOUT_REPLY | _NTO_TIMEOUT_RECEIVE,
                 &unblock, &nanoseconds, nullptr);
  }

  TemporaryRuntimeDirectory directory_;
  Signal ready_;
  Signal step_;
  Signal done_;
  std::unique_ptr<ChildProcess> receiver_;
  int receiverChannel_ = -1;
};

}  // namespace ventrik::tests
