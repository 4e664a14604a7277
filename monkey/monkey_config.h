// SPDX-License-Identifier: Apache-2.0
// The monkey's configuration, "monkey_config.txt": which commands may be drawn, how often, and how
// the weights shift. docs/file-formats.md has the grammar.
#pragma once

#include <string_view>
#include <vector>

#include "monkey/monkey.h"

namespace ventrik {

// The records of the file, in order. Changes `region` only where a [config] section names one. Any
// bytes will do: malformed lines end as comments, as influences nobody uses, or as zero weights.
// Pure.
std::vector<MonkeyCommandRecord> ParseMonkeyConfig(std::string_view file, MonkeyRegion& region);

// Empties the log, forgets the records and reads the file of the working directory, which lets the
// monkey run; or says that there is none. Monkey's thread.
void LoadMonkeyConfig(Monkey& monkey);

}  // namespace ventrik
