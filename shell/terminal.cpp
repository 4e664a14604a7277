// SPDX-License-Identifier: Apache-2.0
#include "shell/terminal.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// The pause of a reader that goes on reading behind the end of its input, or that can't read.
constexpr useconds_t kEndOfInputPause = 50000;  // microseconds

// Raw mode for a scope. What is no terminal is read as it is. The change doesn't wait for output to
// drain: it concerns input alone, and a terminal that takes no output must not hold up the end.
class RawMode {
 public:
  RawMode() : terminal_(tcgetattr(STDIN_FILENO, &saved_) == 0) {
    if (!terminal_) return;
    termios raw = saved_;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  }
  ~RawMode() {
    if (!terminal_) return;
    tcsetattr(STDIN_FILENO, TCSANOW, &saved_);
  }
  RawMode(const RawMode&) = delete;
  RawMode& operator=(const RawMode&) = delete;

 private:
  termios saved_ = {};
  const bool terminal_;
};

std::optional<int> ReadByte() {
  for (;;) {
    if (!mainLoopRunning) return std::nullopt;
    unsigned char byte = 0;
    const ssize_t got = read(STDIN_FILENO, &byte, 1);
    if (got == 1) return byte;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 && errno == EAGAIN) {  // somebody made the terminal non-blocking
      pollfd wait = {STDIN_FILENO, POLLIN, 0};
      poll(&wait, 1, -1);
      continue;
    }
    usleep(kEndOfInputPause);
    return -1;
  }
}

}  // namespace

std::optional<int> ReadRawByte() {
  const RawMode raw;
  return ReadByte();
}

std::optional<std::uint32_t> ReadKey() {
  const RawMode raw;
  return DecodeKey(ReadByte, [](std::uint32_t byte) { logger->print(L"%u ", byte); });
}

}  // namespace ventrik
