// SPDX-License-Identifier: Apache-2.0
// The tester's own configuration file, "qconfig.txt" in the working directory: two switches.
#pragma once

#include <string_view>

#include "state/client_app.h"

namespace ventrik {

// Applies the text of a configuration file: lines of the form `key=1` or `key = 1`, where "=" has a
// blank on both sides or on none. Any other key, value or spacing has no effect. A line whose
// second byte is ";" is a comment. Pure but for the two fields that it may set.
void ApplyConfiguration(ClientApp& app, std::string_view text);

// Applies the file. One that can't be opened changes nothing, and nothing is ever printed.
void LoadConfiguration(ClientApp& app);

}  // namespace ventrik
