// SPDX-License-Identifier: Apache-2.0
// What the bench engine answers by itself.
//
// | Request             | Answer                                                          |
// |---------------------|-----------------------------------------------------------------|
// | REQU_INIT           | RESP_INIT, result 0                                             |
// | REQU_SHUTDOWN       | RESP_SHUTDOWN                                                   |
// | REQU_GET_SW_VERSION | RESP_GET_SW_VERSION: the program's name and version             |
// | REQU_GET_DB_VERSION | RESP_GET_DB_VERSION: the data's name and number of places       |
// | REQU_GET_SPELL      | RESP_GET_SPELL over the world (search.h)                        |
// | REQU_GET_LIST       | RESP_GET_LIST over the world; resultCount is that of all matches|
//
// All else has no answer. Words that mean yes or no are 1 and 2, as in the requests.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "bench/outbox.h"
#include "bench/world.h"
#include "messages/block_cursor.h"

namespace ventrik::bench {

// The most that a tester receives in one message. An answer that would be longer, because it
// repeats a long request, goes without what it repeats.
inline constexpr std::size_t kMaxAnswer = 511'999;  // bytes

// The program's name and version, as "kelmora-bench 0.1.0".
std::string ProgramVersion();

// The messages to send for a request, in order. Any bytes will do for a request; what it is too
// short for counts as 0 or empty. Pure function, any thread.
std::vector<Block> BuiltInAnswers(ReceivedBlock request, const World& world);

}  // namespace ventrik::bench
