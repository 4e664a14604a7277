// SPDX-License-Identifier: Apache-2.0
// A connection to a channel: where it is, and the sockets to it that are free for the next message.
//
// An exchange takes a socket out, has it to itself and puts it back only if it ended cleanly, so a
// send that timed out, broke or was cancelled leaves nothing behind that the next one could trip
// over: that one dials anew. No lock is held while anything waits.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/linux/timeout.h"
#include "platform/neutrino.h"
#include "platform/unique_fd.h"

namespace platform {

class Connection {
 public:
  // A connection to the channel whose socket is at `path`, verified by dialling it once. Null with
  // errno set if nobody is there.
  static std::shared_ptr<Connection> To(std::string path);

  // MsgSendv, with `deadline` already taken.
  long Send(const iov_t* siov, std::size_t sparts, const iov_t* riov, std::size_t rparts,
            const Deadline& deadline);

 private:
  explicit Connection(std::string path) : path_(std::move(path)) {}
  UniqueFd TakeIdle();
  void PutIdle(UniqueFd descriptor);

  const std::string path_;
  std::mutex lock_;
  std::vector<UniqueFd> idle_;
};

// Enters a connection into the process's table. Returns its id, with `index`'s side-channel bit.
int AddConnection(std::shared_ptr<Connection> connection, unsigned index);

}  // namespace platform
