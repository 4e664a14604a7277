// SPDX-License-Identifier: Apache-2.0
// What the engine receives and sends, for a person or a program to read while it happens.
//
// One line a message, in one of two forms:
//   text     12.345 <- 4711 REQU_GET_SPELL inputEIS='<GEOC>Ger<*>'
//   json   {"ms":12345,"from":4711,"message":"REQU_GET_SPELL","fields":{"inputEIS":"<GEOC>Ger<*>"}}
// "<-" and "from" are what a client sent, "->" and "to" what it was sent. A message that is in no
// catalogue has its number and its bytes in hexadecimal instead.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

#include "messages/block_cursor.h"

namespace ventrik::bench {

enum class LogFormat { text, json };
enum class Direction { received, sent };

struct LoggedMessage {
  std::chrono::milliseconds sinceStart;
  Direction direction;
  std::uint32_t process;  // the client
  ReceivedBlock block;
};

// The line, with its line feed. Control characters of texts are written as \xNN, and in JSON as
// JSON has them; bytes that are no UTF-8 become U+FFFD there. Pure.
std::string LogLine(const LoggedMessage& message, LogFormat format);

class MessageLog {
 public:
  MessageLog() = default;
  ~MessageLog();
  MessageLog(const MessageLog&) = delete;
  MessageLog& operator=(const MessageLog&) = delete;

  // Creates the file, or empties it; "-" is standard output. On failure returns false with the
  // reason in `error`. Before any thread writes.
  bool Open(const std::string& path, LogFormat format, std::string& error);

  // Adds a line, at once. Does nothing while no log is open. After the first failure, which is
  // reported on standard error, nothing is written any more. Any thread.
  void Write(const LoggedMessage& message);

 private:
  std::mutex lock_;
  std::FILE* file_ = nullptr;
  LogFormat format_ = LogFormat::text;
};

}  // namespace ventrik::bench
