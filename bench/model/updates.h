// SPDX-License-Identifier: Apache-2.0
// Software updates and the status of the device:
//
// | Request                    | Answer                                                        |
// |----------------------------|---------------------------------------------------------------|
// | REQU_CHECK_FOR_UPDATE      | RESP_CHECK_FOR_UPDATE; what a package is like: update_package.h|
// | REQU_STORE_DEVICE_STATUS   | RESP_STORE_DEVICE_STATUS, 1 if the file was written            |
//
// A good package is installed at once if no other one is being installed: the answer's update is 1,
// its `delete` and `copy` name the files that change, and everyone gets INFO_UPDATE_PROGRESS from 0
// to 100 per cent. At 100 the package's version is the installed one. A further good package that
// comes meanwhile is found good, but update is 2, and nothing is done with it.
//
// The status file is written into the engine's folder of pictures, under the last part of the
// path, if that is a plain file name (png_file.h). Without such a folder it is refused.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr std::int32_t kUpdateStep = 10;      // per cent
inline constexpr Milliseconds kUpdateStepTime{300};  // from each step to the next

// An update that is being installed.
struct UpdateRun {
  std::string path;
  std::int32_t version = 0;
  std::int32_t percent = 0;
  TimePoint nextStep;
};

struct UpdatesState {
  std::int32_t installed = 1;  // version
  std::optional<UpdateRun> running;
};

// Goes back to the first version. An update that is being installed ends, and everyone is told that
// nothing of it is there: 0 per cent.
void RestoreUpdates(EngineState& state, Replies& out);

// What the version of the data has behind it once there has been an update, as ", update 2"; empty
// before.
std::string UpdateSuffix(const UpdatesState& updates);

HandlerRows UpdatesHandlers();
SubjectClock UpdatesClock();

}  // namespace ventrik::bench
