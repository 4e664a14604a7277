// SPDX-License-Identifier: Apache-2.0
#include "command/list_store.h"

#include <cstddef>
#include <utility>

#include "console/utf8.h"
#include "messages/word_printers.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kGrowth = 10;  // items

// Whether a list of so many items has to grow for one more.
bool NeedsRoom(std::size_t count) {
  return count % kGrowth == 0;
}

template <class List, class Item>
void AppendWithRoom(List& list, Item item) {
  if (NeedsRoom(list.items.size())) list.items.reserve(list.items.size() + kGrowth);
  list.items.push_back(std::move(item));
}

SDestinationElement EmptyElement() {
  return {"", std::make_shared<SStringArray>()};
}

// Calls `visit` with the name and the lists of each type, in the order in which they are listed.
template <class App, class Visit>
void ForEachType(App& app, Visit visit) {
  visit(L"SStringArray", app.stringArrayLists);
  visit(L"SRouteHandleList", app.routeHandleLists);
  visit(L"SDestinationElementList", app.destinationElementLists);
  visit(L"SRouteModeList", app.routeModeLists);
}

std::string ItemText(const std::string& text) {
  return text;
}
std::string ItemText(std::int32_t number) {
  return std::to_string(number);
}
std::string ItemText(const SDestinationElement& element) {
  return DestinationText(element);
}

template <class List>
std::vector<std::string> ItemTexts(const List& list) {
  std::vector<std::string> texts;
  texts.reserve(list.items.size());
  for (const auto& item : list.items) texts.push_back(ItemText(item));
  return texts;
}

void PrintItemText(const wchar_t* format, int index, const std::string& text) {
  logger->print(format, index, Utf8ToWide(text).c_str());
}

// How each type shows its items; handles and modes are numbers of the same type, so the list
// decides.
void PrintItem(int index, const SStringArray&, const std::string& text) {
  PrintItemText(L"Item[%d]='%ls'\n", index, text);
}
void PrintItem(int index, const SRouteHandleList&, std::int32_t handle) {
  logger->print(L"Item[%d]=%d\n", index, handle);
}
void PrintItem(int index, const SDestinationElementList&, const SDestinationElement& element) {
  PrintItemText(L"Item[%d]=%ls\n", index, DestinationText(element));
}
void PrintItem(int index, const SRouteModeList&, std::int32_t flags) {
  PrintItemText(L"Item[%d]=%ls\n", index, RouteModeText(flags));
}

template <class List>
void PrintList(const wchar_t* type, const List& list) {
  logger->print(L"Type: %ls\n", type);
  int index = 0;
  for (const auto& item : list.items) PrintItem(index++, list, item);
}

}  // namespace

void AppendItem(SStringArray& list, std::string text) {
  AppendWithRoom(list, std::move(text));
}

void AppendItem(SRouteHandleList& list, std::int32_t handle) {
  AppendWithRoom(list, handle);
}

void AppendItem(SRouteModeList& list, std::int32_t flags) {
  AppendWithRoom(list, flags);
}

void AppendItem(SDestinationElementList& list, SDestinationElement element) {
  const std::size_t count = list.items.size();
  if (NeedsRoom(count)) {
    list.items.erase(list.items.begin() + static_cast<std::ptrdiff_t>(count / 2), list.items.end());
    list.items.reserve(count + kGrowth);
    while (list.items.size() < count) list.items.push_back(EmptyElement());
  }
  list.items.push_back(std::move(element));
}

std::string DestinationText(const SDestinationElement& element) {
  std::string text = "(\"" + element.text + "\",(";
  const char* separator = "\"";
  for (const std::string& attribute : element.attributes->items) {
    text += separator + attribute + '"';
    separator = ",\"";
  }
  return text + "))";
}

void PrintLists(const ClientApp& app, const std::string& name) {
  ForEachType(app, [&](const wchar_t* type, const auto& lists) {
    if (const auto* list = FindList(lists, name)) PrintList(type, *list);
  });
}

std::vector<std::string> ListItemsAsText(const ClientApp& app, std::wstring_view type,
                                         const std::string& name) {
  std::vector<std::string> texts;
  ForEachType(app, [&](std::wstring_view listType, const auto& lists) {
    const auto* list = FindList(lists, name);
    if (listType == type && list != nullptr) texts = ItemTexts(*list);
  });
  return texts;
}

void DeleteListOfType(ClientApp& app, std::wstring_view type, const std::string& name) {
  ForEachType(app, [&](std::wstring_view listType, auto& lists) {
    if (listType == type) lists.erase(name);
  });
}

void DeleteLists(ClientApp& app, const std::string& name) {
  ForEachType(app, [&](std::wstring_view, auto& lists) { lists.erase(name); });
}

void ClearAllLists(ClientApp& app) {
  ForEachType(app, [](std::wstring_view, auto& lists) { lists.clear(); });
}

}  // namespace ventrik
