// SPDX-License-Identifier: Apache-2.0
// Searches over the world (bench/search.h):
//
// | Request                 | Answer                                                           |
// |-------------------------|------------------------------------------------------------------|
// | REQU_GET_AVAILABLE_INFO | RESP_GET_AVAILABLE_INFO                                          |
// | REQU_GET_SPELL          | RESP_GET_SPELL                                                   |
// | REQU_GET_LIST_INFO      | RESP_GET_LIST_INFO: the sort options that make a difference and  |
// |                         | the fields that add something to a row                           |
// | REQU_GET_LIST           | RESP_GET_LIST; resultCount is that of all matches                |
// | REQU_GET_DETAILS        | RESP_GET_DETAILS                                                 |
//
// Distances are from the vehicle, unless the input has a position.
#pragma once

#include "bench/model/subject.h"

namespace ventrik::bench {

HandlerRows SearchesHandlers();

}  // namespace ventrik::bench
