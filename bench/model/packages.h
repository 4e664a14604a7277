// SPDX-License-Identifier: Apache-2.0
// Packages that a tester plays from a log: a beginning, pieces, an end. What is in them is counted
// and not looked at; what matters is the report that the engine has loaded one.
//
// | Message           | Effect                                                        |
// |-------------------|---------------------------------------------------------------|
// | CMD_STATE_PACKAGE | A package begins; a begun one is forgotten.                   |
// | CMD_PACKAGE_PIECE | One piece more; the first one begins a package if need be.    |
// | CMD_PACKAGE_END   | The package is complete. Without a package nothing happens.   |
//
// CMD_PACKAGE_LOADED goes to everyone a moment after the end. A replay doesn't send the end, so a
// package for which nothing has come for a second counts as complete as well.
#pragma once

#include <cstdint>
#include <optional>

#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr Milliseconds kPackageLoadTime{200};  // since the end
inline constexpr Milliseconds kPackageSilence{1000};  // since what came last

struct PackagesState {
  std::optional<TimePoint> loadedAt;  // of the package under way; none if there is none
  std::uint64_t pieces = 0;           // of the package under way, or of the last one
  std::uint64_t bytes = 0;            // of its pieces
  std::uint64_t loaded = 0;           // packages
};

HandlerRows PackagesHandlers();
SubjectClock PackagesClock();

}  // namespace ventrik::bench
