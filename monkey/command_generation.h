// SPDX-License-Identifier: Apache-2.0
// From one draw to one command line. Some commands first run others, so that the lists they name
// exist. Monkey's thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "monkey/monkey.h"
#include "state/client_app.h"

namespace ventrik {

// Draws a command and its parameters, and logs the line, also an invalid one (commandValid). Blocks
// that come with the command are set before it is sent. Returns the line; empty without records,
// which is said.
std::wstring GenerateCommand(ClientApp& app, Monkey& monkey);

// Appends the parameters of the command of that name to the line, which holds the name already. A
// name that has none goes out as it stands.
void GenerateParameters(ClientApp& app, Monkey& monkey, std::wstring_view name);

// Each makes an `item` line in place of the present one and runs it.

// An item of that type, with a random name if it is empty. Route handles that were drawn are added
// to `handles`.
void SendItemCommand(ClientApp& app, Monkey& monkey, std::wstring_view type, std::wstring_view name,
                     std::vector<std::int32_t>& handles);
void SendDestinationItem(ClientApp& app, Monkey& monkey, std::wstring_view listName,
                         std::wstring_view eis);
void SendRandomStringItem(ClientApp& app, Monkey& monkey);  // a random tag for the list of `det`
void SendAllTagItem(ClientApp& app, Monkey& monkey);        // the tag for all fields

}  // namespace ventrik
