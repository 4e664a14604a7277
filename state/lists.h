// SPDX-License-Identifier: Apache-2.0
// The named lists that commands build up and requests carry.
//
// A command line has no syntax for a list, so the tester keeps four maps of named lists; one name
// may stand in several of them. A destination element shares its attributes with the list that it
// was given: items added to that list later show up in the element, and the element goes on reading
// the list after its name was deleted.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ventrik {

struct SStringArray {
  std::vector<std::string> items;  // UTF-8
};

struct SRouteHandleList {
  std::vector<std::int32_t> items;
};

struct SDestinationElement {
  std::string text;                                // the destination's tagged text, UTF-8
  std::shared_ptr<const SStringArray> attributes;  // never null
};

struct SDestinationElementList {
  std::vector<SDestinationElement> items;
};

struct SRouteModeList {
  std::vector<std::int32_t> items;  // RouteMode flag words
};

// Keys are list names, one byte for each character; they sort by byte value and then by length.
template <class List>
using NamedLists = std::map<std::string, std::shared_ptr<List>>;

// The list of that name, created empty if there is none. The pointer keeps the list when its name
// is deleted.
template <class List>
const std::shared_ptr<List>& FindOrCreateSharedList(NamedLists<List>& lists,
                                                    const std::string& name) {
  std::shared_ptr<List>& found = lists[name];
  if (!found) found = std::make_shared<List>();
  return found;
}

// The same, valid until its name is deleted.
template <class List>
List& FindOrCreateList(NamedLists<List>& lists, const std::string& name) {
  return *FindOrCreateSharedList(lists, name);
}

// The list of that name, or null.
template <class List>
const List* FindList(const NamedLists<List>& lists, const std::string& name) {
  const auto found = lists.find(name);
  return found == lists.end() ? nullptr : found->second.get();
}

}  // namespace ventrik
