// SPDX-License-Identifier: Apache-2.0
// Building the text of a message, in UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace ventrik {

// Appends as printf formats, at any length. Texts from a message are string_views, which may hold
// anything but a 0: give them to AppendLine instead of %s.
[[gnu::format(printf, 2, 3)]] void AppendFormat(std::string& text, const char* format, ...);

// Appends `before`, `value` and `after`: the usual line of one string.
void AppendLine(std::string& text, std::string_view before, std::string_view value,
                std::string_view after);

}  // namespace ventrik
