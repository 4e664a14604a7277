// SPDX-License-Identifier: Apache-2.0
// Screen shots: a map as it is, in a file.
#pragma once

#include <functional>
#include <string>

#include "bench/model/replies.h"

namespace ventrik::bench {

struct EngineState;

// A screen shot of the map as it is at `now`, still to be drawn and written to `fileName` in the
// state's folder for pictures: the result does that and tells whether it was written, for which it
// needs the state no more. Empty if there is no such folder, the map isn't there or is hidden, or
// the name is no plain one (png_file.h). A failure to write is reported as well.
std::function<bool()> ScreenShotOf(const EngineState& state, const std::string& mapId,
                                   const std::string& fileName, TimePoint now);

}  // namespace ventrik::bench
