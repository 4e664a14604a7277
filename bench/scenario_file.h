// SPDX-License-Identifier: Apache-2.0
// A scenario from its file.
#pragma once

#include <optional>
#include <string>

#include "bench/scenario.h"

namespace ventrik::bench {

// Reads the file at `path` and the scenario in it. On failure nothing, with the reason in `error`:
// that of ParseScenario (scenario.h), or "PATH: No such file or directory" and the like.
std::optional<Scenario> LoadScenario(const std::string& path, std::string& error);

}  // namespace ventrik::bench
