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
#include <string_view>

#include "console/utf8.h"
#include "platform/cancellation.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kUsualLength = 512;       // characters; nearly every text fits
constexpr std::size_t kLongestText = 1u << 24;  // characters; nothing the tester prints is near it

// What this thread's prints are gathered in; null if they are written at once.
thread_local std::string* gathered = nullptr;

// A text as wprintf formats it.
class FormattedText {
 public:
  // False if the arguments can't be formatted.
  bool Format(const wchar_t* format, va_list arguments) {
    std::size_t room = kUsualLength;
    characters_ = usual_;
    while (!TryIn(room, format, arguments)) {
      if (errno == EILSEQ || room == kLongestText) return false;
      room = std::min(room * 8, kLongestText);
      longer_.resize(room);
      characters_ = longer_.data();
    }
    return true;
  }

  std::wstring_view text() const { return {characters_, length_}; }

 private:
  // False with errno set if there is no room, or EILSEQ.
  bool TryIn(std::size_t room, const wchar_t* format, va_list arguments) {
    va_list again;
    va_copy(again, arguments);
    errno = 0;
    const int length = std::vswprintf(characters_, room, format, again);
    va_end(again);
    length_ = static_cast<std::size_t>(std::max(length, 0));
    return length >= 0;
  }

  wchar_t usual_[kUsualLength];
  std::wstring longer_;
  wchar_t* characters_ = usual_;
  std::size_t length_ = 0;
};

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
  FormattedText formatted;
  va_list arguments;
  va_start(arguments, format);
  const bool done = formatted.Format(format, arguments);
  va_end(arguments);
  if (!done) return -1;
  const std::wstring_view text = formatted.text();
  if (gathered != nullptr) {
    AppendForTerminal(text, *gathered);
  } else if (!WriteAll(STDOUT_FILENO, WideToTerminal(text))) {
    return -1;
  }
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

PrintedTogether::PrintedTogether() {
  gathered = &bytes_;
}

PrintedTogether::~PrintedTogether() {
  gathered = nullptr;
  WriteAll(STDOUT_FILENO, bytes_);
}

}  // namespace ventrik
