// SPDX-License-Identifier: Apache-2.0
// Every list of every message, without entries and with many.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

enum class EntryKind { Text, Number };

// A message by one of its lists, the others empty. In the texts, $ stands for the entries and for
// an entry's value, # for its number.
struct ListForm {
  std::string header;  // Hex(), a count of 0
  std::size_t countWord;
  EntryKind kind;
  int firstNumber;
  std::string text;
  std::string entry;
};

const std::vector<ListForm> kForms = {
    {"31010000 00000000 01000000 00000000 00000000 00000000", 4, EntryKind::Text, 0,
     "RESP_GET_LIST_INFO> inputEIS: \"\"\n"
     "RESP_GET_LIST_INFO> validState: valid\n"
     "RESP_GET_LIST_INFO> sortOptions: \n"
     "RESP_GET_LIST_INFO> fieldOptions: $\n"
     "RESP_GET_LIST_INFO> outputEIS: \"\"\n",
     "\"$\" "},
    {"33010000 00000000 01000000 01000000 00000000 00000000 00000000 00000000 00000000 00000000", 6,
     EntryKind::Text, 0,
     "RESP_GET_LIST> inputEIS: \"\"\n"
     "RESP_GET_LIST> validState: valid\n"
     "RESP_GET_LIST> startIndex: 1\n"
     "RESP_GET_LIST> resultCount: 0\n"
     "RESP_GET_LIST> fieldOptions: $\n"
     "RESP_GET_LIST> itemList:\n"
     "\n"
     "RESP_GET_LIST> outputEIS: \"\"\n"
     "RESP_GET_LIST> completeState: off\n",
     "\"$\" "},
    {"33010000 00000000 01000000 64000000 00000000 00000000 00000000 00000000 00000000 00000000", 7,
     EntryKind::Text, 100,
     "RESP_GET_LIST> inputEIS: \"\"\n"
     "RESP_GET_LIST> validState: valid\n"
     "RESP_GET_LIST> startIndex: 100\n"
     "RESP_GET_LIST> resultCount: 0\n"
     "RESP_GET_LIST> fieldOptions: \n"
     "RESP_GET_LIST> itemList:\n"
     "$\n"
     "RESP_GET_LIST> outputEIS: \"\"\n"
     "RESP_GET_LIST> completeState: off\n",
     "   #. ($)\n"},
    {"35010000 00000000 01000000 00000000 00000000", 3, EntryKind::Text, 0,
     "RESP_GET_DETAILS> inputEIS: \"\"\n"
     "RESP_GET_DETAILS> validState: valid\n"
     "RESP_GET_DETAILS> requestedFields: $\n"
     "RESP_GET_DETAILS> outputEIS: \"\"\n",
     "\"$\" "},
    {"75000000 00000000 01000000 00000000 00000000", 4, EntryKind::Text, 0,
     "RESP_SET_WORLD_PROPERTIES> inputEIS: \"\"\n"
     "RESP_SET_WORLD_PROPERTIES> validState: valid\n"
     "RESP_SET_WORLD_PROPERTIES> worldElements: \n"
     "RESP_SET_WORLD_PROPERTIES> itemList: $\n",
     "\"$\" "},
    {"BD020000 00000000 00000000 00000000 00000000 00000000 00000000 00000000 00000000 00000000 "
     "00000000 00000000",
     10, EntryKind::Text, 0,
     "RESP_PICK_INFO> mapEIS: \n"
     "RESP_PICK_INFO> xCoordinate: 0\n"
     "RESP_PICK_INFO> yCoordinate: 0\n"
     "RESP_PICK_INFO> xWorldCoordinate: 0.000000\n"
     "RESP_PICK_INFO> yWorldCoordinate: 0.000000\n"
     "RESP_PICK_INFO> worldElements: 0 \n"
     "RESP_PICK_INFO> radius: 0\n"
     "RESP_PICK_INFO> pickInfo:$\n",
     "   #. ($)\n"},
    {"93010000 00000000 00000000 01000000", 2, EntryKind::Text, 0,
     "RESP_BLOCK_ROUTE> validState: valid\nRESP_BLOCK_ROUTE> blockedItems: $\n", "\"$\" "},
    {"95010000 00000000 00000000 01000000 00000000", 4, EntryKind::Number, 0,
     "RESP_NEW_TRIP> destinations: \n"
     "RESP_NEW_TRIP> routeModes: \n"
     "RESP_NEW_TRIP> validState: valid\n"
     "RESP_NEW_TRIP> handles: $\n",
     "$ "},
    {"97010000 00000000", 1, EntryKind::Number, 0, "RESP_KILL_TRIP> handles: $\n", "$ "},
    {"24030000 00000000 00000000 00000000 00000000", 1, EntryKind::Number, 0,
     "INFO_TMC_ROUTES_AVAILABLE> routeHandles: $\n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:\n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:\n",
     "$ "},
    {"24030000 00000000 00000000 00000000 00000000", 2, EntryKind::Text, 1,
     "INFO_TMC_ROUTES_AVAILABLE> routeHandles: \n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:$\n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:\n",
     "   #. ($)\n"},
    {"24030000 00000000 00000000 00000000 00000000", 3, EntryKind::Text, 1,
     "INFO_TMC_ROUTES_AVAILABLE> routeHandles: \n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:\n"
     "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:$\n",
     "   #. ($)\n"},
    {"25030000 00000000 00000000 00000000 05000000", 2, EntryKind::Text, 1,
     "INFO_TMC_ROUTE_ACCEPTED> routeHandle: 5 \n"
     "INFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:$\n"
     "INFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:\n",
     "   #. ($)\n"},
    {"25030000 00000000 00000000 00000000 05000000", 3, EntryKind::Text, 1,
     "INFO_TMC_ROUTE_ACCEPTED> routeHandle: 5 \n"
     "INFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:\n"
     "INFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:$\n",
     "   #. ($)\n"},
    {"26030000 00000000", 1, EntryKind::Number, 0, "INFO_TMC_ROUTES_DELETED> routeHandles: $\n",
     "$ "},
    {"2C030000 00000000", 1, EntryKind::Text, 1, "INFO_TMC_NEW_EVENTS> tmcEvents:$", "   #. ($)\n"},
    {"2D030000 00000000", 1, EntryKind::Text, 1, "INFO_TMC_DEL_EVENTS> tmcEvents:$", "   #. ($)\n"},
    {"E9030000 00000000 01000000 00000000 00000000 00000000 00000000", 4, EntryKind::Text, 0,
     "RESP_CHECK_FOR_UPDATE> Path: \"\" r: updInvalidPackage(1), u: off\n$", "delete: \"$\"\n"},
    {"E9030000 00000000 01000000 00000000 00000000 00000000 00000000", 5, EntryKind::Text, 0,
     "RESP_CHECK_FOR_UPDATE> Path: \"\" r: updInvalidPackage(1), u: off\n$", "copy: \"$\"\n"},
};

std::string Replaced(std::string text, char mark, const std::string& value) {
  const std::size_t at = text.find(mark);
  return at == std::string::npos ? text : text.replace(at, 1, value);
}

void ExpectEntries(const ListForm& form, int count) {
  Bytes message = Hex(form.header);
  SetWord(message, form.countWord, count);
  std::string entries;
  for (int i = 0; i < count; ++i) {
    const std::string number = std::to_string(7 * i);
    const std::string value = form.kind == EntryKind::Text ? "entry" + number : number;
    message = std::move(message) + (form.kind == EntryKind::Text ? Packed(value) : Word(7 * i));
    entries +=
        Replaced(Replaced(form.entry, '#', std::to_string(form.firstNumber + i)), '$', value);
  }
  EXPECT_TRUE(TextOf(message) == Replaced(form.text, '$', entries))
      << count << " entries:\n"
      << TextOf(message).substr(0, 500);
}

TEST(PrintedLists, ShowAllTheirEntries) {
  for (const ListForm& form : kForms) {
    SCOPED_TRACE(form.header + ", count in word " + std::to_string(form.countWord));
    for (const int count : {0, 1, 2, 9, 10, 20000}) ExpectEntries(form, count);
  }
}

TEST(PrintedLists, EntriesBeyondTheCountAreNotShown) {
  for (const ListForm& form : kForms) {
    SCOPED_TRACE(form.header + ", count in word " + std::to_string(form.countWord));
    const std::string empty = Replaced(form.text, '$', "");
    for (const int count : {0, -1, -0x7FFFFFFF - 1}) {
      Bytes message = Hex(form.header);
      SetWord(message, form.countWord, count);
      EXPECT_EQ(TextOf(message + Packed("more") + Packed("more")), empty) << count;
    }
  }
}

}  // namespace
}  // namespace ventrik::tests
