// SPDX-License-Identifier: Apache-2.0
// What the engine receives and sends, and which faults strike, for a person or a program to read
// while it happens.
//
// One line a message or a strike, in one of two forms:
//   text     12.345 <- 4711 REQU_GET_SPELL inputEIS='<GEOC>Ger<*>'
//   json   {"ms":12345,"from":4711,"message":"REQU_GET_SPELL","fields":{"inputEIS":"<GEOC>Ger<*>"}}
// "<-" and "from" are what a client sent, "->" and "to" what it was sent. A message that is in no
// catalogue has its number and its bytes in hexadecimal instead. A fault that strikes comes before
// the message that it struck, if that is passed on at all:
//   text     12.345 !! 4711 unread REQU_GET_SPELL         12.345 !! - refuse
//   json   {"ms":12345,"fault":"unread","client":4711,"message":"REQU_GET_SPELL"}
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <mutex>
#include <string>

#include "bench/fault.h"
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

struct LoggedStrike {
  std::chrono::milliseconds sinceStart;
  Strike strike;
};

// The same for a fault that has struck. Pure.
std::string LogLine(const LoggedStrike& strike, LogFormat format);

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
  void Write(const LoggedMessage& message) { WriteLine(message); }
  void Write(const LoggedStrike& strike) { WriteLine(strike); }

 private:
  template <class Logged>
  void WriteLine(const Logged& logged) {
    if (isOpen_) Write(LogLine(logged, format_));
  }
  void Write(const std::string& line);

  bool isOpen_ = false;
  std::mutex lock_;  // keeps lines apart; of the file alone
  std::FILE* file_ = nullptr;
  LogFormat format_ = LogFormat::text;
};

}  // namespace ventrik::bench
