// SPDX-License-Identifier: Apache-2.0
// Printers of the messages that tell the engine's state.
#include "messages/message_text.h"
#include "messages/printers.h"

namespace ventrik::print {

void RESP_INIT(const ReceivedBlock& block, std::string& text) {
  if (block.Word(1) == 0) {
    text += "RESP_INIT> Navigation component is initialized successfully!\n";
  } else {
    AppendFormat(text, "RESP_INIT> Initialization error! (%d)\n", block.Word(1));
  }
}

void RESP_SHUTDOWN(const ReceivedBlock&, std::string& text) {
  text += "RESP_SHUTDOWN> Shutdown process is finished.\n";
}

void RESP_GET_SW_VERSION(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendLine(text, "RESP_GET_SW_VERSION> swVersion: ", cursor.OptionalString(block.Word(1)), "\n");
}

void RESP_GET_DB_VERSION(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendLine(text, "RESP_GET_DB_VERSION> dbVersion: ", cursor.OptionalString(block.Word(1)), "\n");
}

// It only shows that the engine is alive: nothing is answered.
void INFO_HEARTBEAT(const ReceivedBlock&, std::string& text) {
  text += "INFO_HEARTBEAT> Heartbeat\n";
}

}  // namespace ventrik::print
