// SPDX-License-Identifier: Apache-2.0
// Printers of the search and list responses.
#include "messages/message_text.h"
#include "messages/printers.h"

namespace ventrik::print {
namespace {

const char* ValidWord(std::int32_t state) {
  return state == 1 ? "valid" : "invalid";
}
const char* OnOffWord(std::int32_t state) {
  return state == 1 ? "on" : "off";
}

// Each of `count` strings as "\"%s\" ", as far as the block reaches, and a line end.
void AppendQuoted(std::string& text, BlockCursor& cursor, std::int32_t count) {
  for (std::int32_t i = 0; i < count && !cursor.AtEnd(); ++i) {
    AppendLine(text, "\"", cursor.NextString(), "\" ");
  }
  text += '\n';
}

}  // namespace

void RESP_GET_SPELL(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 7);
  AppendLine(text, "RESP_GET_SPELL> inputEIS: \"", cursor.OptionalString(block.Word(1)), "\"\n");
  AppendFormat(text, "RESP_GET_SPELL> validState: %s\n", ValidWord(block.Word(2)));
  AppendLine(text, "RESP_GET_SPELL> nextAvailableCharacters: \"",
             cursor.OptionalString(block.Word(3)), "\"\n");
  AppendLine(text, "RESP_GET_SPELL> offeredCharacters: \"", cursor.OptionalString(block.Word(4)),
             "\"\n");
  AppendFormat(text, "RESP_GET_SPELL> count: %d\n", block.Word(5));
  AppendFormat(text, "RESP_GET_SPELL> isFullMatch: %s\n", OnOffWord(block.Word(6)));
}

void RESP_GET_LIST(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 10);
  AppendLine(text, "RESP_GET_LIST> inputEIS: \"", cursor.OptionalString(block.Word(1)), "\"\n");
  AppendFormat(text, "RESP_GET_LIST> validState: %s\n", ValidWord(block.Word(2)));
  AppendFormat(text, "RESP_GET_LIST> startIndex: %d\n", block.Word(3));
  AppendFormat(text, "RESP_GET_LIST> resultCount: %d\n", block.Word(4));
  text += "RESP_GET_LIST> fieldOptions: ";
  AppendQuoted(text, cursor, block.Word(6));
  text += "RESP_GET_LIST> itemList:\n";
  std::uint32_t number = static_cast<std::uint32_t>(block.Word(3));  // wraps as a word does
  for (std::int32_t i = 0; i < block.Word(7) && !cursor.AtEnd(); ++i, ++number) {
    AppendFormat(text, "   %d. (", static_cast<std::int32_t>(number));
    AppendLine(text, "", cursor.NextString(), ")\n");
  }
  text += '\n';
  AppendLine(text, "RESP_GET_LIST> outputEIS: \"", cursor.OptionalString(block.Word(8)), "\"\n");
  AppendFormat(text, "RESP_GET_LIST> completeState: %s\n", OnOffWord(block.Word(9)));
}

}  // namespace ventrik::print
