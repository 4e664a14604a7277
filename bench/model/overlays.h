// SPDX-License-Identifier: Apache-2.0
// A subject of the model: weather surfaces that a tester offers for a map's area.
//
// A surface is taken when it is offered: it is read and, if there is a folder for that, saved as
// SID.png. It is used for kSurfaceLife or until its map moves or is hidden; then its memory object
// is removed, and everybody is told that it is not needed any more. One that can't be taken is
// reported, and its sender is told at once; if only its number was too much, its object is removed
// as well.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr Milliseconds kSurfaceLife{5000};
inline constexpr std::size_t kMostSurfaces = 64;  // at a time; more are refused

struct Surface {
  std::string sid;
  std::string mapId;
  TimePoint end;
};

struct OverlaysState {
  std::vector<Surface> surfaces;  // in use, in the order of their ends
};

// The SIDs of the surfaces in use on a map.
std::vector<std::string> SurfacesOf(const EngineState& state, const std::string& mapId);

// Ends the surfaces of a map whose area is another one now, or none.
void EndSurfacesOf(EngineState& state, const std::string& mapId, Replies& out);

// Removes the memory objects of all surfaces in use; nobody is told.
void RemoveSurfaces(const EngineState& state);

HandlerRows OverlaysHandlers();
SubjectClock OverlaysClock();

}  // namespace ventrik::bench
