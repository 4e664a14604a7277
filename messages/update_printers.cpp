// SPDX-License-Identifier: Apache-2.0
// Printers of versions, software updates and packages.
#include <string_view>

#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"
#include "messages/word_printers.h"

namespace ventrik::print {
namespace {

const char* StoreResultWord(std::int32_t result) {
  if (result == 1) return "valid";
  return result == 2 ? "invalid" : "unknown";
}

void AppendQuotedLines(std::string& text, std::string_view label, BlockCursor& cursor,
                       std::int32_t count) {
  for (const std::string_view path : NextStrings(cursor, count)) {
    AppendQuotedLine(text, label, path);
  }
}

}  // namespace

void RESP_GET_SW_VERSION(const ReceivedBlock& block, std::string& text) {
  AppendLine(text, "RESP_GET_SW_VERSION> swVersion: ", OneString(block), "\n");
}

void RESP_GET_DB_VERSION(const ReceivedBlock& block, std::string& text) {
  AppendLine(text, "RESP_GET_DB_VERSION> dbVersion: ", OneString(block), "\n");
}

void RESP_CHECK_FOR_UPDATE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 6);
  AppendLine(text, "RESP_CHECK_FOR_UPDATE> Path: \"", cursor.NextString(), "\" r: ");
  AppendLine(text, UpdateResultText(block.Word(2)), ", u: ", OnOffWord(block.Word(3)));
  text += '\n';
  AppendQuotedLines(text, "delete: ", cursor, block.Word(4));
  AppendQuotedLines(text, "copy: ", cursor, block.Word(5));
}

void INFO_UPDATE_PROGRESS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendQuotedLine(text,
                   "INFO_UPDATE_PROGRESS> updatePath: ", cursor.OptionalString(block.Word(1)));
  AppendFormat(text, "INFO_UPDATE_PROGRESS> percent: %d\n", block.Word(2));
}

// Oddity: the line's name is shorter than the message's.
void RESP_STORE_DEVICE_STATUS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendLine(text, "RESP_DEVICE_STATUS> Path: \"", cursor.NextString(), "\", result: ");
  AppendFormat(text, "%s\n", StoreResultWord(block.Word(2)));
}

void CMD_PACKAGE_LOADED(const ReceivedBlock&, std::string& text) {
  text += "Package loaded!\n";
}

}  // namespace ventrik::print
