// SPDX-License-Identifier: Apache-2.0
// Sessions, versions and the state as a whole:
//
// | Request              | Answer                                                     |
// |----------------------|------------------------------------------------------------|
// | REQU_INIT            | RESP_INIT, result 0                                        |
// | REQU_SHUTDOWN        | RESP_SHUTDOWN; what the requester alone was told is over   |
// | REQU_RESTORE_FACTORY | RESP_RESTORE_FACTORY, then to everyone the INFO_ message   |
// |                      | of each setting that this changed; what the engine was     |
// |                      | doing is over, and sessions go on                          |
// | REQU_GET_SW_VERSION  | RESP_GET_SW_VERSION: the program's name and version        |
// | REQU_GET_DB_VERSION  | RESP_GET_DB_VERSION: the data's name, number of places and |
// |                      | version, if it was updated                                 |
#pragma once

#include <string>

#include "bench/model/subject.h"

namespace ventrik::bench {

// The program's name and version, as "kelmora-bench 0.1.0".
std::string ProgramVersion();

// Ends what a client has asked to be told of from then on.
void ForgetClient(EngineState& state, ClientNumber client);

HandlerRows SystemHandlers();

}  // namespace ventrik::bench
