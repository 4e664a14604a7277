// SPDX-License-Identifier: Apache-2.0
// The fields of RESP_GET_LIST, which is more than printed: its rows can be assigned to variables.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "messages/block_cursor.h"
#include "state/client_app.h"

namespace ventrik {

// Views of the block. An absent text is empty; a list ends where the block ends, whatever its
// count says.
struct ListResponse {
  std::string_view inputEis;
  std::int32_t validState;
  std::int32_t startIndex;  // number of the first row
  std::int32_t resultCount;
  std::vector<std::string_view> fieldOptions;
  std::vector<std::string_view> items;  // the rows' texts
  std::string_view outputEis;
  std::int32_t completeState;
};

// Any thread.
ListResponse ReadListResponse(const ReceivedBlock& block);

// Gives each variable that waits for a row of a list response its row's text, and empties the
// queue. Returns the lines to print, UTF-8: one for each variable, an error for a row that is not
// there. Row numbers count the rows of this response from 1, whatever its startIndex. Any thread.
std::string UseListAssignments(ClientApp& app, const ListResponse& response);

}  // namespace ventrik
