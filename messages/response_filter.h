// SPDX-License-Identifier: Apache-2.0
// The filter that silences messages: a list of FunctionIds, read from "response_filter.txt" in the
// working directory.
//
// A line reads `INFO_HEARTBEAT 0` or `RESP_GET_LIST 1`: a name of the catalogue, blanks, and a 0 to
// silence. Anything else behind the blanks keeps the message visible, and so does a line without a
// blank. A silenced message prints nothing, sends no automatic reply and doesn't reach the monkey,
// but it still ends a `waitresp`.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "state/client_app.h"

namespace ventrik {

// The FunctionIds that the filter file's text silences, in its order. An unknown name gives -1,
// which matches no message. Pure.
std::vector<std::int32_t> ParseResponseFilter(std::wstring_view text);

// Empties the filter and fills it from the file. A file that can't be opened leaves it empty, and
// nothing is printed. Any thread.
void LoadResponseFilter(ClientApp& app);

// Mode 1 loads the file and prints "Response Filter : ON\n"; any other empties the filter and
// prints "Response Filter : OFF\n". Any thread.
void SetResponseFilter(ClientApp& app, std::int32_t mode);

// Whether messages of that number are silenced. Any thread.
bool IsFiltered(const ClientApp& app, std::int32_t functionId);

}  // namespace ventrik
