// SPDX-License-Identifier: Apache-2.0
#include "console/logger_posix.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cwchar>
#include <string>

#include "console/utf8.h"
#include "platform/cancellation.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kFirstTry = 512;          // characters; nearly every text fits
constexpr std::size_t kLongestText = 1u << 24;  // characters; nothing the tester prints is near it

// Formats into `text`. Returns false if the arguments can't be formatted.
bool FormatText(std::wstring& text, const wchar_t* format, va_list arguments) {
  for (std::size_t room = kFirstTry;; room = std::min(room * 4, kLongestText)) {
    text.resize(room);
    va_list again;
    va_copy(again, arguments);
    errno = 0;
    const int length = std::vswprintf(text.data(), room, format, again);
    const bool undecodable = length < 0 && errno == EILSEQ;
    va_end(again);
    if (length >= 0) {
      text.resize(static_cast<std::size_t>(length));
      return true;
    }
    if (undecodable || room == kLongestText) return false;
  }
}

// Whether a failed write may go on. One that a signal interrupts does, and so does one to a
// terminal that somebody made non-blocking, once it takes more; but not when the program is ending:
// then a terminal that takes no more output must not hold it up.
bool MayWriteOn(int descriptor) {
  if (!mainLoopRunning) return false;
  if (errno == EAGAIN) {
    pollfd wait = {descriptor, POLLOUT, 0};
    return poll(&wait, 1, -1) == 1 || errno == EINTR;
  }
  return errno == EINTR;
}

bool WriteAll(int descriptor, const std::string& bytes) {
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written < 0 && !MayWriteOn(descriptor)) return false;
    if (written > 0) done += static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

int Logger_posix::print(const wchar_t* format, ...) {
  const platform::CancellationDisabled whole;
  std::wstring text;
  va_list arguments;
  va_start(arguments, format);
  const bool formatted = FormatText(text, format, arguments);
  va_end(arguments);
  if (!formatted || !WriteAll(STDOUT_FILENO, WideToTerminal(text))) return -1;
  return static_cast<int>(text.size());
}

int Logger_posix::printTo(std::FILE* stream, const wchar_t* format, ...) {
  const platform::CancellationDisabled whole;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vfwprintf(stream, format, arguments);
  va_end(arguments);
  return length;
}

}  // namespace ventrik
