// SPDX-License-Identifier: Apache-2.0
// Screen shots: a map as it is, in a file.
#pragma once

#include <string>

#include "bench/model/replies.h"

namespace ventrik::bench {

struct EngineState;

// Writes a picture of the map as it is at `now` to `fileName` in the state's folder for pictures.
// Returns false, with nothing written, if there is no such folder, the map isn't there or is
// hidden, or the name is no plain one (png_file.h). A failure to write is reported as well.
bool TakeScreenShot(const EngineState& state, const std::string& mapId, const std::string& fileName,
                    TimePoint now);

}  // namespace ventrik::bench
