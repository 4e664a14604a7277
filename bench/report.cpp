// SPDX-License-Identifier: Apache-2.0
#include "bench/report.h"

#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cwchar>
#include <string>

#include "console/utf8.h"
#include "platform/cancellation.h"

namespace ventrik::bench {
namespace {

// Longer texts are cut. Paths and error texts are what varies in them.
constexpr std::size_t kLongestText = 8192;  // characters

// Calls `format` with a cleared errno of its own and not to be cancelled.
class Undisturbed {
 public:
  Undisturbed() = default;
  ~Undisturbed() { errno = error_; }
  Undisturbed(const Undisturbed&) = delete;
  Undisturbed& operator=(const Undisturbed&) = delete;

 private:
  const int error_ = errno;
  const platform::CancellationDisabled whole_;
};

int PrintWide(std::FILE* stream, const wchar_t* format, va_list arguments) {
  std::array<wchar_t, kLongestText> text = {};
  if (std::vswprintf(text.data(), text.size(), format, arguments) < 0) return -1;
  const std::string bytes = WideToTerminal(text.data());
  return std::fputs(bytes.c_str(), stream) < 0 ? -1 : static_cast<int>(bytes.size());
}

}  // namespace

void Report(const char* format, ...) {
  const Undisturbed undisturbed;
  std::array<char, kLongestText> text = {};
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  std::fputs(("kelmora-bench: " + std::string(text.data()) + "\n").c_str(), stderr);
}

int ErrorLogger::print(const wchar_t* format, ...) {
  const Undisturbed undisturbed;
  va_list arguments;
  va_start(arguments, format);
  const int length = PrintWide(stderr, format, arguments);
  va_end(arguments);
  return length;
}

int ErrorLogger::printTo(std::FILE* stream, const wchar_t* format, ...) {
  const Undisturbed undisturbed;
  va_list arguments;
  va_start(arguments, format);
  const int length = PrintWide(stream, format, arguments);
  va_end(arguments);
  return length;
}

}  // namespace ventrik::bench
