// SPDX-License-Identifier: Apache-2.0
// Batch files among the monkey's commands.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "monkey/monkey.h"

namespace ventrik {

// The lines of a file of 16-bit little-endian units behind its first unit, without their line
// feeds; carriage returns stay. The end of the file ends a line, too, so a file that ends in a line
// feed gives one more, empty. An odd last byte is dropped. Pure.
std::deque<std::wstring> MonkeyBatchLines(std::string_view file);

// Queues the lines of the file that `name`, a section's name like batch("file"), holds; or says why
// not. Monkey's thread.
void LoadMonkeyBatch(Monkey& monkey, std::wstring_view name);

}  // namespace ventrik
