// SPDX-License-Identifier: Apache-2.0
#include "replay/raw_log.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "replay/byte_search.h"

namespace ventrik {

RawLog::RawLog(ByteSource source, std::size_t window)
    : source_(std::move(source)),
      size_(std::max(window, kSmallestWindow)),
      bytes_(new (std::nothrow) char[size_]),
      isSourceEmpty_(bytes_ == nullptr) {}

void RawLog::SkipTo(int byte) {
  while (!IsAtEnd()) {
    const std::size_t found = Window().find(static_cast<char>(byte));
    if (found != std::string_view::npos) return Advance(found);
    next_ = end_;
  }
}

void RawLog::SkipToEither(int one, int other) {
  while (!IsAtEnd()) {
    next_ += FindEither(Window(), 0, static_cast<char>(one), static_cast<char>(other));
    if (next_ < end_) return;
  }
}

void RawLog::SkipToStretchMark(int digit) {
  SkipTo(kStretchMark);
  while (!IsAtEnd() && Peek(1) != digit) {
    Advance(1);
    SkipTo(kStretchMark);
  }
}

std::string_view RawLog::Run() {
  if (IsAtEnd()) return {};
  const std::size_t end =
      FindEither(Window(), 1, static_cast<char>(kChannelMark), static_cast<char>(kStretchMark));
  return Window().substr(0, end);
}

// Moves what is left to the window's beginning and fills the rest, as far as the log goes.
void RawLog::Fill() {
  if (isSourceEmpty_) return;
  windowPosition_ += next_;
  end_ -= next_;
  std::memmove(bytes_.get(), bytes_.get() + next_, end_);
  next_ = 0;
  while (!isSourceEmpty_ && end_ < size_) {
    const std::size_t count = source_(bytes_.get() + end_, size_ - end_);
    isSourceEmpty_ = count == 0;
    end_ += count;
  }
}

}  // namespace ventrik
