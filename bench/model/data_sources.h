// SPDX-License-Identifier: Apache-2.0
// Data sources that a tester adds and removes:
//
// | Request           | Answer                                                         |
// |-------------------|----------------------------------------------------------------|
// | REQU_ADD_DATA_SRC | RESP_ADD_DATA_SRC; valid if the source was read and is new     |
// | REQU_REM_DATA_SRC | RESP_REM_DATA_SRC; valid if the source was there and is gone   |
//
// A source is whatever tagged text says of it. The engine has no data but its world, so sources are
// only remembered; searches go on as before.
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "bench/model/subject.h"

namespace ventrik::bench {

inline constexpr std::size_t kMaxDataSources = 64;
inline constexpr std::size_t kMaxDataSource = 4096;  // bytes; a longer one is invalid

// Each source by its pairs, without what stood around them.
using DataSourcesState = std::set<std::string>;

HandlerRows DataSourcesHandlers();

}  // namespace ventrik::bench
