// SPDX-License-Identifier: Apache-2.0
// Counts what passes through the engine, for the summary at its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "messages/block_cursor.h"

namespace ventrik::bench {

class Tally {
 public:
  // One message more. Any thread.
  void Received(ReceivedBlock block);
  void Sent(ReceivedBlock block);

  std::uint64_t received() const;
  std::uint64_t sent() const;

  // A line for each kind of message, its count and its bytes both ways:
  //   "    302 REQU_GET_SPELL                 received      12       480 bytes"
  // Messages without a number share a line, and so do unknown numbers once there are too many of
  // them. Empty if nothing has passed.
  std::string Table() const;

 private:
  struct Count {
    std::uint64_t messages = 0;
    std::uint64_t bytes = 0;
  };
  struct Row {
    Count received;
    Count sent;
  };
  // Expects lock_ held.
  Row& RowOf(ReceivedBlock block);
  static std::string RowText(std::int64_t key, const char* way, const Count& count);

  mutable std::mutex lock_;
  std::map<std::int64_t, Row> rows_;  // by number; the shared lines have keys above all numbers
};

}  // namespace ventrik::bench
