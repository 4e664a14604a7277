// SPDX-License-Identifier: Apache-2.0
#include "tests/support/recorded_console.h"

#include <chrono>
#include <cstdarg>
#include <cwchar>
#include <utility>

#include "platform/cancellation.h"
#include "state/process_state.h"

namespace ventrik::tests {
namespace {

constexpr std::size_t kLongest = 1u << 22;  // characters
constexpr std::chrono::seconds kHang(60);

std::wstring Format(const wchar_t* format, va_list arguments) {
  std::wstring text;
  for (std::size_t room = 1024; room <= kLongest; room *= 4) {
    text.resize(room);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vswprintf(text.data(), room, format, again);
    va_end(again);
    if (length < 0) continue;
    text.resize(static_cast<std::size_t>(length));
    return text;
  }
  return L"(a text that can't be formatted)";
}

}  // namespace

RecordedConsole::RecordedConsole() : before_(std::exchange(logger, this)) {}

RecordedConsole::~RecordedConsole() {
  logger = before_;
}

int RecordedConsole::print(const wchar_t* format, ...) {
  std::wstring text;
  {
    const platform::CancellationDisabled whole;
    va_list arguments;
    va_start(arguments, format);
    text = Format(format, arguments);
    va_end(arguments);
  }
  if (onPrint) onPrint(text);
  const platform::CancellationDisabled whole;
  const std::lock_guard<std::mutex> hold(lock_);
  whole_ += text;
  texts_.push_back(std::move(text));
  grown_.notify_all();
  return static_cast<int>(texts_.back().size());
}

int RecordedConsole::printTo(std::FILE* stream, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int count = std::vfwprintf(stream, format, arguments);
  va_end(arguments);
  return count;
}

std::vector<std::wstring> RecordedConsole::TakeTexts() {
  const std::lock_guard<std::mutex> hold(lock_);
  whole_.clear();
  return std::exchange(texts_, {});
}

std::wstring RecordedConsole::TakeText() {
  const std::lock_guard<std::mutex> hold(lock_);
  texts_.clear();
  return std::exchange(whole_, {});
}

bool RecordedConsole::WaitFor(const std::wstring& part) {
  std::unique_lock<std::mutex> hold(lock_);
  return grown_.wait_for(hold, kHang, [&] { return whole_.find(part) != whole_.npos; });
}

}  // namespace ventrik::tests
