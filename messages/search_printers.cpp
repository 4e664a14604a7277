// SPDX-License-Identifier: Apache-2.0
// Printers of searches, lists and data sources.
#include <string_view>

#include "messages/list_response.h"
#include "messages/message_buffer.h"
#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"
#include "messages/word_printers.h"

namespace ventrik::print {
namespace {

constexpr std::size_t kLongestResolvedLine = 16383;  // bytes

// A line that is cut where it gets too long, its closing quote and line end included.
void AppendBoundedLine(std::string& text, std::string_view label, std::string_view value) {
  std::string line;
  AppendQuotedLine(line, label, value);
  text.append(line, 0, kLongestResolvedLine);
}

}  // namespace

void RESP_GET_AVAILABLE_INFO(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendQuotedLine(text,
                   "RESP_GET_AVAILABLE_INFO> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendQuotedLine(
      text, "RESP_GET_AVAILABLE_INFO> availableTypesEIS: ", cursor.OptionalString(block.Word(2)));
}

void RESP_GET_SPELL(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 7);
  AppendQuotedLine(text, "RESP_GET_SPELL> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_GET_SPELL> validState: %s\n", ValidWord(block.Word(2)));
  AppendQuotedLine(
      text, "RESP_GET_SPELL> nextAvailableCharacters: ", cursor.OptionalString(block.Word(3)));
  AppendQuotedLine(text,
                   "RESP_GET_SPELL> offeredCharacters: ", cursor.OptionalString(block.Word(4)));
  AppendFormat(text, "RESP_GET_SPELL> count: %d\n", block.Word(5));
  AppendFormat(text, "RESP_GET_SPELL> isFullMatch: %s\n", OnOffWord(block.Word(6)));
}

void RESP_GET_LIST_INFO(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 6);
  AppendQuotedLine(text, "RESP_GET_LIST_INFO> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_GET_LIST_INFO> validState: %s\n", ValidWord(block.Word(2)));
  text += "RESP_GET_LIST_INFO> sortOptions: ";
  for (std::int32_t i = 0; i < block.Word(3) && cursor.Remaining() >= kWordSize; ++i) {
    AppendLine(text, i == 0 ? "" : "|", NextSortOption(cursor), "");
  }
  text += '\n';
  AppendQuotedList(text, "RESP_GET_LIST_INFO> fieldOptions: ", NextStrings(cursor, block.Word(4)));
  AppendQuotedLine(text, "RESP_GET_LIST_INFO> outputEIS: ", cursor.OptionalString(block.Word(5)));
}

void RESP_GET_LIST(const ReceivedBlock& block, std::string& text) {
  const ListResponse response = ReadListResponse(block);
  AppendQuotedLine(text, "RESP_GET_LIST> inputEIS: ", response.inputEis);
  AppendFormat(text, "RESP_GET_LIST> validState: %s\n", ValidWord(response.validState));
  AppendFormat(text, "RESP_GET_LIST> startIndex: %d\n", response.startIndex);
  AppendFormat(text, "RESP_GET_LIST> resultCount: %d\n", response.resultCount);
  AppendQuotedList(text, "RESP_GET_LIST> fieldOptions: ", response.fieldOptions);
  text += "RESP_GET_LIST> itemList:\n";
  auto number = static_cast<std::uint32_t>(response.startIndex);  // wraps as a word does
  for (const std::string_view item : response.items) {
    AppendNumbered(text, static_cast<std::int32_t>(number++), item);
  }
  text += '\n';
  AppendQuotedLine(text, "RESP_GET_LIST> outputEIS: ", response.outputEis);
  AppendFormat(text, "RESP_GET_LIST> completeState: %s\n", OnOffWord(response.completeState));
}

void RESP_GET_DETAILS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  AppendQuotedLine(text, "RESP_GET_DETAILS> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_GET_DETAILS> validState: %s\n", ValidWord(block.Word(2)));
  AppendQuotedList(text, "RESP_GET_DETAILS> requestedFields: ", NextStrings(cursor, block.Word(3)));
  AppendQuotedLine(text, "RESP_GET_DETAILS> outputEIS: ", cursor.OptionalString(block.Word(4)));
}

void RESP_RESOLVE_LOCATION(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 7);
  AppendBoundedLine(text,
                    "RESP_RESOLVE_LOCATION> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_RESOLVE_LOCATION> validState: %s\n", ValidWord(block.Word(2)));
  AppendBoundedLine(text,
                    "RESP_RESOLVE_LOCATION> outputEIS: ", cursor.OptionalString(block.Word(3)));
  AppendQuotedLine(
      text, "RESP_RESOLVE_LOCATION> ambiguity: ", block.Word(4) == 1 ? "ambiguous" : "unambiguous");
  AppendQuotedLine(text,
                   "RESP_RESOLVE_LOCATION> ambiguityType: ", cursor.OptionalString(block.Word(5)));
  AppendQuotedLine(
      text, "RESP_RESOLVE_LOCATION> unresolvedElements: ", cursor.OptionalString(block.Word(6)));
  text += '\n';
}

void RESP_ADD_DATA_SRC(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendQuotedLine(text, "RESP_ADD_DATA_SRC> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_ADD_DATA_SRC> validState: %s\n", ValidWord(block.Word(2)));
}

void RESP_REM_DATA_SRC(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendQuotedLine(text, "RESP_REM_DATA_SRC> inputEIS: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "RESP_REM_DATA_SRC> validState: %s\n", ValidWord(block.Word(2)));
}

}  // namespace ventrik::print
