// SPDX-License-Identifier: Apache-2.0
// What can be done with the named lists of the application (state/lists.h).
//
// Everything here expects commandLock held. List names are narrow, one byte for each character.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "state/client_app.h"

namespace ventrik {

// Adding an item at the end. The room for items grows by 10 at a time.

void AppendItem(SStringArray& list, std::string text);
void AppendItem(SRouteHandleList& list, std::int32_t handle);
void AppendItem(SRouteModeList& list, std::int32_t flags);

// Oddity: the move into the larger room takes along the first half of the elements only, 5 of 10
// and 10 of 20. The others read as elements with an empty text and no attributes from then on.
void AppendItem(SDestinationElementList& list, SDestinationElement element);

// An element as it is listed, in UTF-8: ("text",("attribute","attribute"))
std::string DestinationText(const SDestinationElement& element);

// Prints the lists of that name, of all types, with their items. Nothing for an unknown name.
void PrintLists(const ClientApp& app, const std::string& name);

// The items of one list as texts, UTF-8 and decimal. `type` is the name of a list type, as
// `item` takes it. Empty for an unknown type or name.
std::vector<std::string> ListItemsAsText(const ClientApp& app, std::wstring_view type,
                                         const std::string& name);

// Deleting. An element that has a list as its attributes goes on reading what the list held.

void DeleteListOfType(ClientApp& app, std::wstring_view type, const std::string& name);
void DeleteLists(ClientApp& app, const std::string& name);  // of all types
void ClearAllLists(ClientApp& app);                         // every name of all types

}  // namespace ventrik
