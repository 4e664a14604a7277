// SPDX-License-Identifier: Apache-2.0
// Printers of the map, what is picked on it, and its overlays.
#include <string_view>

#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"
#include "messages/word_printers.h"

namespace ventrik::print {
namespace {

constexpr std::size_t kTooLongToPrint = 16384;  // bytes

}  // namespace

void RESP_SET_WORLD_PROPERTIES(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  AppendQuotedLine(text,
                   "RESP_SET_WORLD_PROPERTIES> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_SET_WORLD_PROPERTIES> validState: %s\n", ValidWord(block.Word(2)));
  // Oddity: labelled elements, printed as properties.
  AppendLine(text, "RESP_SET_WORLD_PROPERTIES> worldElements: ", WorldPropertyText(block.Word(3)),
             "\n");
  AppendQuotedList(text,
                   "RESP_SET_WORLD_PROPERTIES> itemList: ", NextStrings(cursor, block.Word(4)));
}

void RESP_SCREEN_SHOT(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 4);
  AppendFormat(text, "RESP_SCREEN_SHOT> validState: %s", ValidWord(block.Word(2)));
  AppendLine(text, ", map: ", cursor.NextString(), "");
  AppendLine(text, ", filename: ", cursor.NextString(), "\n");
}

void RESP_PICK_INFO(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 12);
  AppendLine(text, "RESP_PICK_INFO> mapEIS: ", cursor.OptionalString(block.Word(1)), "\n");
  AppendFormat(text, "RESP_PICK_INFO> xCoordinate: %i\n", block.Word(2));
  AppendFormat(text, "RESP_PICK_INFO> yCoordinate: %i\n", block.Word(3));
  AppendFormat(text, "RESP_PICK_INFO> xWorldCoordinate: %f\n", block.Double(16));
  AppendFormat(text, "RESP_PICK_INFO> yWorldCoordinate: %f\n", block.Double(24));
  AppendFormat(text, "RESP_PICK_INFO> worldElements: %d ", block.Word(8));
  AppendLine(text, "", WorldElementText(block.Word(8)), "\n");
  AppendFormat(text, "RESP_PICK_INFO> radius: %d\n", block.Word(9));
  text += "RESP_PICK_INFO> pickInfo:";
  int number = 0;
  for (const std::string_view item : NextStrings(cursor, block.Word(10))) {
    if (item.size() < kTooLongToPrint) {
      AppendNumbered(text, number, item);
    } else {
      AppendFormat(text, "   %d. BUFFER OVERFLOW", number);
    }
    ++number;
  }
  text += '\n';
}

void RESP_MAP_CONTROLS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendQuotedLine(text, "RESP_MAP_CONTROLS> mapControls: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_MAP_CONTROLS> validState: %s\n", ValidWord(block.Word(2)));
}

void INFO_VEH_LOC_INFO_DETAILS(const ReceivedBlock& block, std::string& text) {
  AppendQuotedLine(text, "INFO_VEH_LOC_INFO_DETAILS> posInfo: ", OneString(block));
}

void INFO_MAP_OVERLAY_AREA(const ReceivedBlock& block, std::string& text) {
  AppendQuotedLine(text, "INFO_MAP_OVERLAY_AREA> ", OneString(block));
}

void INFO_MAP_OVERLAY_SURFACE_INVALID(const ReceivedBlock& block, std::string& text) {
  AppendQuotedLine(text, "INFO_MAP_OVERLAY_SURFACE_INVALID> ", OneString(block));
}

}  // namespace ventrik::print
