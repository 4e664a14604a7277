// SPDX-License-Identifier: Apache-2.0
// What the bench engine receives, as a batch log that can be played back.
//
// One line a message: timestamp(8) length(8) payload(2 * length) line feed, all in upper-case
// hexadecimal digits, the most significant first. The timestamp is in milliseconds since the engine
// started, modulo 2^32; the payload is the whole message as it came.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "messages/block_cursor.h"

namespace ventrik::bench {

inline constexpr std::size_t kMaxRecordedPayload = 8192;  // bytes; more is no batch log

// One record.
//   31, {2E 01 00 00} => "0000001F000000042E010000\n"    0, {} => "0000000000000000\n"
std::string FormatRecord(std::uint32_t milliseconds, ReceivedBlock payload);

// Writes to a file, each record at once, so that what was received is there whatever comes next.
// Receiving thread.
class Recorder {
 public:
  // Creates the file, or empties it. On failure returns false with the reason in `error`.
  bool Open(const std::string& path, std::string& error);

  // Adds a message. One that is too long for the format, and the first failure to write, after
  // which nothing is written any more, is reported on standard error.
  void Record(std::chrono::milliseconds sinceStart, ReceivedBlock payload);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Closer> file_;  // null: nothing is recorded
};

}  // namespace ventrik::bench
