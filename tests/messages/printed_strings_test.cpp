// SPDX-License-Identifier: Apache-2.0
// Every string of every message, with texts of all sorts in it.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

struct StringSlot {
  std::size_t lengthWord = 0;    // 0: the string is there, whatever the words say
  std::string wordsBehind = "";  // Hex(), between this string and the next
};

// A message by its strings, in their order.
struct StringForm {
  std::string header;  // Hex(), lengths of 0
  std::vector<StringSlot> slots;
  std::string text;             // $1 stands for the first string
  std::size_t longest = 40000;  // bytes that a string is printed with in full
};

const StringSlot kAlways;

std::vector<StringForm> SearchForms() {
  return {
      {"2D010000 00000000 00000000",
       {{1}, {2}},
       "RESP_GET_AVAILABLE_INFO> inputEIS: \"$1\"\n"
       "RESP_GET_AVAILABLE_INFO> availableTypesEIS: \"$2\"\n"},
      {"2F010000 00000000 01000000 00000000 00000000 05000000 01000000",
       {{1}, {3}, {4}},
       "RESP_GET_SPELL> inputEIS: \"$1\"\n"
       "RESP_GET_SPELL> validState: valid\n"
       "RESP_GET_SPELL> nextAvailableCharacters: \"$2\"\n"
       "RESP_GET_SPELL> offeredCharacters: \"$3\"\n"
       "RESP_GET_SPELL> count: 5\n"
       "RESP_GET_SPELL> isFullMatch: on\n"},
      {"31010000 00000000 01000000 02000000 02000000 00000000",
       {{1, "01000000 04000000"}, kAlways, kAlways, {5}},
       "RESP_GET_LIST_INFO> inputEIS: \"$1\"\n"
       "RESP_GET_LIST_INFO> validState: valid\n"
       "RESP_GET_LIST_INFO> sortOptions: ascending|nearFirst\n"
       "RESP_GET_LIST_INFO> fieldOptions: \"$2\" \"$3\" \n"
       "RESP_GET_LIST_INFO> outputEIS: \"$4\"\n"},
      {"33010000 00000000 01000000 07000000 02000000 09000000 01000000 02000000 00000000 01000000",
       {{1}, kAlways, kAlways, kAlways, {8}},
       "RESP_GET_LIST> inputEIS: \"$1\"\n"
       "RESP_GET_LIST> validState: valid\n"
       "RESP_GET_LIST> startIndex: 7\n"
       "RESP_GET_LIST> resultCount: 2\n"
       "RESP_GET_LIST> fieldOptions: \"$2\" \n"
       "RESP_GET_LIST> itemList:\n"
       "   7. ($3)\n"
       "   8. ($4)\n"
       "\n"
       "RESP_GET_LIST> outputEIS: \"$5\"\n"
       "RESP_GET_LIST> completeState: on\n"},
      {"35010000 00000000 01000000 02000000 00000000",
       {{1}, kAlways, kAlways, {4}},
       "RESP_GET_DETAILS> inputEIS: \"$1\"\n"
       "RESP_GET_DETAILS> validState: valid\n"
       "RESP_GET_DETAILS> requestedFields: \"$2\" \"$3\" \n"
       "RESP_GET_DETAILS> outputEIS: \"$4\"\n"},
      {"37010000 00000000 01000000 00000000 01000000 00000000 00000000",
       {{1}, {3}, {5}, {6}},
       "RESP_RESOLVE_LOCATION> inputEIS: \"$1\"\n"
       "RESP_RESOLVE_LOCATION> validState: valid\n"
       "RESP_RESOLVE_LOCATION> outputEIS: \"$2\"\n"
       "RESP_RESOLVE_LOCATION> ambiguity: \"ambiguous\"\n"
       "RESP_RESOLVE_LOCATION> ambiguityType: \"$3\"\n"
       "RESP_RESOLVE_LOCATION> unresolvedElements: \"$4\"\n"
       "\n",
       16000},
      {"39010000 00000000 01000000",
       {{1}},
       "RESP_ADD_DATA_SRC> inputEIS: \"$1\"\nRESP_ADD_DATA_SRC> validState: valid\n"},
      {"3B010000 00000000 01000000",
       {{1}},
       "RESP_REM_DATA_SRC> inputEIS: \"$1\"\nRESP_REM_DATA_SRC> validState: valid\n"},
  };
}

std::vector<StringForm> MapForms() {
  return {
      {"75000000 00000000 01000000 01000000 02000000",
       {{1}, kAlways, kAlways},
       "RESP_SET_WORLD_PROPERTIES> inputEIS: \"$1\"\n"
       "RESP_SET_WORLD_PROPERTIES> validState: valid\n"
       "RESP_SET_WORLD_PROPERTIES> worldElements: zoom \n"
       "RESP_SET_WORLD_PROPERTIES> itemList: \"$2\" \"$3\" \n"},
      {"77000000 00000000 01000000 00000000",
       {kAlways, kAlways},
       "RESP_SCREEN_SHOT> validState: valid, map: $1, filename: $2\n"},
      {"BD020000 00000000 01000000 02000000 00000000 00000000 00000000 00000000 04000000 03000000 "
       "02000000 00000000",
       {{1}, kAlways, kAlways},
       "RESP_PICK_INFO> mapEIS: $1\n"
       "RESP_PICK_INFO> xCoordinate: 1\n"
       "RESP_PICK_INFO> yCoordinate: 2\n"
       "RESP_PICK_INFO> xWorldCoordinate: 0.000000\n"
       "RESP_PICK_INFO> yWorldCoordinate: 0.000000\n"
       "RESP_PICK_INFO> worldElements: 4 poiData \n"
       "RESP_PICK_INFO> radius: 3\n"
       "RESP_PICK_INFO> pickInfo:   0. ($2)\n"
       "   1. ($3)\n"
       "\n",
       16000},
      {"BF020000 00000000 01000000",
       {{1}},
       "RESP_MAP_CONTROLS> mapControls: \"$1\"\nRESP_MAP_CONTROLS> validState: valid\n"},
      {"CB000000 00000000", {{1}}, "INFO_VEH_LOC_INFO_DETAILS> posInfo: \"$1\"\n"},
      {"7C000000 00000000", {{1}}, "INFO_MAP_OVERLAY_AREA> \"$1\"\n"},
      {"7E000000 00000000", {{1}}, "INFO_MAP_OVERLAY_SURFACE_INVALID> \"$1\"\n"},
  };
}

std::vector<StringForm> TripAndStatusForms() {
  return {
      {"93010000 00000000 02000000 01000000",
       {kAlways, kAlways},
       "RESP_BLOCK_ROUTE> validState: valid\nRESP_BLOCK_ROUTE> blockedItems: \"$1\" \"$2\" \n"},
      {"95010000 04000000 01000000 01000000 01000000",
       {{0, "02000000"}, kAlways, kAlways, {0, "00000000 01000000 1F000000"}},
       "RESP_NEW_TRIP> destinations: 1. (\"$1\",(\"$2\",\"$3\"))\n"
       "2. (\"$4\")\n"
       "\n"
       "RESP_NEW_TRIP> routeModes: \"fastest\" \n"
       "RESP_NEW_TRIP> validState: valid\n"
       "RESP_NEW_TRIP> handles: 31 \n"},
      {"9F010000 00000000 01000000 01000000 01000000",
       {{1, "01000000 1F000000"}},
       "RESP_NEW_TRIP_FILE> pathEIS: \"$1\"\n"
       "RESP_NEW_TRIP_FILE> routeModes: \"fastest\" \n"
       "RESP_NEW_TRIP_FILE> validState: valid\n"
       "RESP_NEW_TRIP_FILE> handles: 31 \n"},
      {"A4010000 00000000", {{1}}, "INFO_ROUTE_RECORDING_COMPLETE> detailsEIS: \"$1\"\n"},
      {"A5010000 00000000 01000000 02000000",
       {{1}},
       "INFO_DESTINATION_REACHED> Dest: $1\nINFO_DESTINATION_REACHED> Element: 1   Total: 2\n"},
      {"AF010000 00000000", {{1}}, "INFO_LANE_INFORMATION> detailsEIS: \"$1\"\n"},
      {"63020000 00000000", {{1}}, "INFO_REQU_SET_VOLUME_LEVEL> $1\n"},
      {"77020000 00000000 03000000",
       {{1}},
       "INFO_SAFETY_CAMERA_AUDIO_MODE> inputEIS: \"$1\"\n"
       "INFO_SAFETY_CAMERA_AUDIO_MODE> inputEIS: \"$1\"\n"},
  };
}

std::vector<StringForm> TrafficAndUpdateForms() {
  return {
      {"24030000 01000000 01000000 02000000 00000000 1F000000",
       {kAlways, kAlways, kAlways},
       "INFO_TMC_ROUTES_AVAILABLE> routeHandles: 31 \n"
       "INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:   1. ($1)\n"
       "\n"
       "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:   1. ($2)\n"
       "   2. ($3)\n"
       "\n"},
      {"25030000 00000000 02000000 01000000 1F000000",
       {kAlways, kAlways, kAlways},
       "INFO_TMC_ROUTE_ACCEPTED> routeHandle: 31 \n"
       "INFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:   1. ($1)\n"
       "   2. ($2)\n"
       "\n"
       "INFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:   1. ($3)\n"
       "\n"},
      {"2C030000 02000000",
       {kAlways, kAlways},
       "INFO_TMC_NEW_EVENTS> tmcEvents:   1. ($1)\n   2. ($2)\n"},
      {"2D030000 02000000",
       {kAlways, kAlways},
       "INFO_TMC_DEL_EVENTS> tmcEvents:   1. ($1)\n   2. ($2)\n"},
      {"2E030000 01000000 00000000",
       {{2}},
       "INFO_TMC_TUNING_MODE> tmcTuningMode: tmcTuningAutomatic\n"
       "INFO_TMC_TUNING_MODE> tuningParameters: \"$1\"\n"},
      {"86030000 00000000", {{1}}, "RESP_GET_SW_VERSION> swVersion: $1\n"},
      {"87030000 00000000", {{1}}, "RESP_GET_DB_VERSION> dbVersion: $1\n"},
      {"E9030000 00000000 00000000 01000000 01000000 02000000",
       {kAlways, kAlways, kAlways, kAlways},
       "RESP_CHECK_FOR_UPDATE> Path: \"$1\" r: updSuccess(0), u: on\n"
       "delete: \"$2\"\n"
       "copy: \"$3\"\n"
       "copy: \"$4\"\n"},
      {"EA030000 00000000 4B000000",
       {{1}},
       "INFO_UPDATE_PROGRESS> updatePath: \"$1\"\nINFO_UPDATE_PROGRESS> percent: 75\n"},
      {"EC030000 00000000 01000000",
       {kAlways},
       "RESP_DEVICE_STATUS> Path: \"$1\", result: valid\n"},
  };
}

std::vector<StringForm> AllForms() {
  std::vector<StringForm> forms;
  for (auto* part : {SearchForms, MapForms, TripAndStatusForms, TrafficAndUpdateForms}) {
    for (StringForm& form : part()) forms.push_back(std::move(form));
  }
  return forms;
}

// What a message has in its slots; a string that is left out is absent.
struct SlotText {
  std::string text;
  bool present = true;
};
using SlotTexts = std::vector<SlotText>;

SlotTexts SameInAll(const StringForm& form, const std::string& text) {
  return SlotTexts(form.slots.size(), SlotText{text});
}

// Texts that can't be taken for each other.
SlotTexts Distinct(const StringForm& form, std::size_t length) {
  SlotTexts texts;
  for (std::size_t i = 0; i < form.slots.size(); ++i) {
    texts.push_back({std::string(length, static_cast<char>('a' + i))});
  }
  return texts;
}

// `lie` stands for every length that isn't 0; 0 means the true lengths.
Bytes MessageOf(const StringForm& form, const SlotTexts& texts, std::int32_t lie = 0) {
  Bytes message = Hex(form.header);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const StringSlot& slot = form.slots[i];
    if (texts[i].present) {
      // An empty string that is there has its terminator counted.
      const std::size_t length = texts[i].text.empty() ? 1 : texts[i].text.size();
      if (slot.lengthWord != 0) {
        SetWord(message, slot.lengthWord, lie != 0 ? lie : static_cast<std::int32_t>(length));
      }
      message = std::move(message) + Packed(texts[i].text);
    }
    message = std::move(message) + Hex(slot.wordsBehind);
  }
  return message;
}

std::string ExpectedText(const StringForm& form, const SlotTexts& texts) {
  std::string text;
  for (std::size_t at = 0; at < form.text.size(); ++at) {
    if (form.text[at] != '$') {
      text += form.text[at];
      continue;
    }
    const SlotText& slot = texts.at(static_cast<std::size_t>(form.text[++at] - '1'));
    if (slot.present) text += slot.text;
  }
  return text;
}

void ExpectShown(const StringForm& form, const SlotTexts& texts) {
  EXPECT_EQ(TextOf(MessageOf(form, texts)), ExpectedText(form, texts));
}

TEST(PrintedStrings, TextsOfEveryPaddingAreShown) {
  for (const StringForm& form : AllForms()) {
    SCOPED_TRACE(form.header);
    for (std::size_t length = 0; length <= 9; ++length) ExpectShown(form, Distinct(form, length));
  }
}

TEST(PrintedStrings, AbsentOnesAreEmptyAndTakeNoRoom) {
  for (const StringForm& form : AllForms()) {
    SCOPED_TRACE(form.header);
    SlotTexts withoutAny = Distinct(form, 5);
    for (std::size_t i = 0; i < form.slots.size(); ++i) {
      if (form.slots[i].lengthWord == 0) continue;
      SlotTexts withoutOne = Distinct(form, 5);
      withoutOne[i].present = false;
      ExpectShown(form, withoutOne);
      withoutAny[i].present = false;
    }
    ExpectShown(form, withoutAny);
  }
}

TEST(PrintedStrings, LengthTellsOnlyThatTheyAreThere) {
  for (const StringForm& form : AllForms()) {
    SCOPED_TRACE(form.header);
    for (const std::int32_t lie : {1, 2, 1000, 0x7FFFFFFF, -1, -0x7FFFFFFF - 1}) {
      const SlotTexts texts = Distinct(form, 6);
      EXPECT_EQ(TextOf(MessageOf(form, texts, lie)), ExpectedText(form, texts)) << lie;
    }
  }
}

TEST(PrintedStrings, LongTextsAreShownWhole) {
  for (const StringForm& form : AllForms()) {
    for (std::size_t length = form.longest - 4; length <= form.longest; ++length) {
      const SlotTexts texts = Distinct(form, length);
      EXPECT_TRUE(TextOf(MessageOf(form, texts)) == ExpectedText(form, texts))
          << form.header << ", " << length << " bytes";
    }
  }
}

TEST(PrintedStrings, BytesAreShownAsTheyCome) {
  const std::string odd[] = {
      "Stra\xC3\x9F"
      "e \xE6\x9D\xB1\xE4\xBA\xAC \xF0\x9F\x9A\x97",  // two, three and four bytes each
      "\xC3",
      "\xFF\xFE",
      "\xED\xA0\x80 half a pair",
      "\xF0\x9F\x9A",
      "\x80\xBF tails only",
      "%s%n%d%%",
      "\"(),\" \\",
      "\001\t\r\n\033[1;31m\177",
  };
  for (const StringForm& form : AllForms()) {
    SCOPED_TRACE(form.header);
    for (const std::string& text : odd) ExpectShown(form, SameInAll(form, text));
  }
}

TEST(PrintedStrings, LastOneWithoutATerminatorEndsWithTheBlock) {
  for (const StringForm& form : AllForms()) {
    if (!form.slots.back().wordsBehind.empty()) continue;
    SCOPED_TRACE(form.header);
    for (std::size_t length = 1; length <= 9; ++length) {
      const SlotTexts texts = Distinct(form, length);
      Bytes message = MessageOf(form, texts);
      while (message.value.back() == 0) message.value.pop_back();
      EXPECT_EQ(TextOf(message), ExpectedText(form, texts));
    }
  }
}

TEST(PrintedStrings, LongLastOneWithoutATerminatorIsShownWhole) {
  for (const StringForm& form : AllForms()) {
    if (!form.slots.back().wordsBehind.empty()) continue;
    SlotTexts texts = Distinct(form, 3);
    texts.back().text = std::string(form.longest, '\xFF');
    Bytes message = MessageOf(form, texts);
    while (message.value.back() == 0) message.value.pop_back();
    EXPECT_TRUE(TextOf(message) == ExpectedText(form, texts)) << form.header;
  }
}

}  // namespace
}  // namespace ventrik::tests
