// SPDX-License-Identifier: Apache-2.0
// One printer for each message of the server, named after it: a received block in, the lines of its
// text out.
//
// Printers have no effects: replies, variables and feedback are the dispatch's business. Every read
// is bounded by the block (messages/block_cursor.h), so any bytes give some text.
#pragma once

#include <string>

#include "messages/block_cursor.h"

namespace ventrik::print {

void RESP_INIT(const ReceivedBlock& block, std::string& text);
void RESP_SHUTDOWN(const ReceivedBlock& block, std::string& text);
void RESP_GET_SPELL(const ReceivedBlock& block, std::string& text);
void RESP_GET_LIST(const ReceivedBlock& block, std::string& text);
void RESP_GET_SW_VERSION(const ReceivedBlock& block, std::string& text);
void RESP_GET_DB_VERSION(const ReceivedBlock& block, std::string& text);
void INFO_HEARTBEAT(const ReceivedBlock& block, std::string& text);

}  // namespace ventrik::print
