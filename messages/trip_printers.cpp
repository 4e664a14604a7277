// SPDX-License-Identifier: Apache-2.0
// Printers of trips and of the guidance along them.
#include <string_view>

#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"
#include "messages/word_printers.h"

namespace ventrik::print {
namespace {

// A destination and its items: 1. ("home",("x","yy"))
void AppendDestination(std::string& text, int number, std::string_view destination,
                       std::int32_t itemCount, BlockCursor& cursor) {
  AppendFormat(text, "%d. (", number);
  AppendLine(text, "\"", destination, "\"");
  if (itemCount > 0) {
    text += ",(";
    const char* before = "\"";
    for (const std::string_view item : NextStrings(cursor, itemCount)) {
      AppendLine(text, before, item, "\"");
      before = ",\"";
    }
    text += ')';
  }
  text += ")\n";
}

// Oddity: `count` counts the destinations and their items together.
void AppendDestinations(std::string& text, BlockCursor& cursor, std::int32_t count) {
  std::uint32_t sum = 0;  // wraps as a word does
  for (int number = 1; static_cast<std::int32_t>(sum) < count && !cursor.AtEnd(); ++number) {
    const std::string_view destination = cursor.NextString();
    const std::int32_t itemCount = cursor.NextWord();
    AppendDestination(text, number, destination, itemCount, cursor);
    sum += 1 + static_cast<std::uint32_t>(itemCount);
  }
}

}  // namespace

void RESP_BLOCK_ROUTE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 4);
  AppendFormat(text, "RESP_BLOCK_ROUTE> validState: %s\n", ValidWord(block.Word(3)));
  AppendQuotedList(text, "RESP_BLOCK_ROUTE> blockedItems: ", NextStrings(cursor, block.Word(2)));
}

void RESP_NEW_TRIP(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  text += "RESP_NEW_TRIP> destinations: ";
  AppendDestinations(text, cursor, block.Word(1));
  text += '\n';
  AppendRouteModes(text, "RESP_NEW_TRIP> routeModes: ", cursor, block.Word(2));
  AppendFormat(text, "RESP_NEW_TRIP> validState: %s\n", ValidWord(block.Word(3)));
  AppendNumbers(text, "RESP_NEW_TRIP> handles: ", NextWords(cursor, block.Word(4)));
}

void RESP_NEW_TRIP_FILE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  AppendQuotedLine(text, "RESP_NEW_TRIP_FILE> pathEIS: ", cursor.OptionalString(block.Word(1)));
  AppendRouteModes(text, "RESP_NEW_TRIP_FILE> routeModes: ", cursor, block.Word(2));
  AppendFormat(text, "RESP_NEW_TRIP_FILE> validState: %s\n", ValidWord(block.Word(3)));
  AppendNumbers(text, "RESP_NEW_TRIP_FILE> handles: ", NextWords(cursor, block.Word(4)));
}

void RESP_KILL_TRIP(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendNumbers(text, "RESP_KILL_TRIP> handles: ", NextWords(cursor, block.Word(1)));
}

void INFO_DEMO_MODE_STATE(const ReceivedBlock& block, std::string& text) {
  AppendEnabledLine(text, "INFO_DEMO_MODE_STATE", block.Word(1));
}

void INFO_GET_INCIDENTS_ON_ROUTE(const ReceivedBlock&, std::string& text) {
  AppendNotImplemented(text, "INFO_GET_INCIDENTS_ON_ROUTE");
}

void INFO_ACTIVE_ROUTE_DESC(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_ACTIVE_ROUTE_DESC> routeDesc: (%d,%d,%d)\n", block.Word(1),
               block.Word(2), block.Word(3));
}

void INFO_NEXT_MAN_INFO(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_NEXT_MAN_INFO> timeDist: (%d, %d)\n", block.Word(1), block.Word(2));
  AppendFormat(text, "INFO_NEXT_MAN_INFO> nextManInfo: (%s, %d, %d)\n",
               TrueFalseWord(block.Byte(12)), block.Word(4), block.Word(5));
}

void INFO_NEXT_DEST_INFO(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_NEXT_DEST_INFO> nextDestInfo: (%d, %d)\n", block.Word(1), block.Word(2));
}

void INFO_CALC_STATE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_CALC_STATE> routeHandle: %d\n", block.Word(1));
  AppendFormat(text, "INFO_CALC_STATE> calcState: %s\n", RouteCalcStateText(block.Word(2)));
  AppendFormat(text, "INFO_CALC_STATE> calcPercent: %d\n", block.Word(3));
}

void RESP_ROUTE_START_RECORDING(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "RESP_ROUTE_START_RECORDING> validState: %s\n", ValidWord(block.Word(1)));
}

void INFO_ROUTE_RECORDING_ACTIVE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_ROUTE_RECORDING_ACTIVE> routeRecordingActive: %s\n",
               TrueFalseWord(block.Word(1)));
}

void INFO_ROUTE_RECORDING_COMPLETE(const ReceivedBlock& block, std::string& text) {
  AppendQuotedLine(text, "INFO_ROUTE_RECORDING_COMPLETE> detailsEIS: ", OneString(block));
}

void INFO_DESTINATION_REACHED(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 4);
  AppendLine(text, "INFO_DESTINATION_REACHED> Dest: ", cursor.OptionalString(block.Word(1)), "\n");
  AppendFormat(text, "INFO_DESTINATION_REACHED> Element: %d   Total: %d\n", block.Word(2),
               block.Word(3));
}

void INFO_LANE_INFORMATION(const ReceivedBlock& block, std::string& text) {
  AppendQuotedLine(text, "INFO_LANE_INFORMATION> detailsEIS: ", OneString(block));
}

}  // namespace ventrik::print
