// SPDX-License-Identifier: Apache-2.0
#include "messages/message_text.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>

namespace ventrik {

void AppendFormat(std::string& text, const char* format, ...) {
  char usual[256];  // nearly every line fits
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(usual, sizeof usual, format, arguments);
  va_end(arguments);
  const auto size = static_cast<std::size_t>(std::max(length, 0));
  if (size < sizeof usual) {
    text.append(usual, size);
  } else {
    const std::size_t before = text.size();
    text.resize(before + size + 1);
    std::vsnprintf(text.data() + before, size + 1, format, again);
    text.pop_back();  // the terminator
  }
  va_end(again);
}

void AppendLine(std::string& text, std::string_view before, std::string_view value,
                std::string_view after) {
  text.append(before).append(value).append(after);
}

}  // namespace ventrik
