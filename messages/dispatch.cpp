// SPDX-License-Identifier: Apache-2.0
#include "messages/dispatch.h"

#include <algorithm>
#include <cstdlib>

#include "console/response_printer.h"
#include "messages/function_ids.h"
#include "messages/message_buffer.h"
#include "messages/message_text.h"
#include "messages/milli_clock.h"
#include "messages/printers.h"
#include "messages/response_filter.h"
#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

struct DispatchRow {
  std::int32_t functionId;
  void (*print)(const ReceivedBlock& block, std::string& text);
};

constexpr DispatchRow kRows[] = {
    {RESP_INIT, print::RESP_INIT},
    {RESP_SHUTDOWN, print::RESP_SHUTDOWN},
    {RESP_GET_SPELL, print::RESP_GET_SPELL},
    {RESP_GET_LIST, print::RESP_GET_LIST},
    {INFO_HEARTBEAT, print::INFO_HEARTBEAT},
    {RESP_GET_SW_VERSION, print::RESP_GET_SW_VERSION},
    {RESP_GET_DB_VERSION, print::RESP_GET_DB_VERSION},
};

// Oddity: the block itself is taken as text, so what shows is its number's bytes and not a name.
void PrintUnhandled(const ReceivedBlock& block, std::string& text) {
  const char* bytes = reinterpret_cast<const char*>(block.data);
  text += ColourRed;
  AppendLine(text, "Error: Unhandled response or info (",
             WireText(std::string_view(bytes, block.size)), ")!\n");
  text += ColourReset;
}

}  // namespace

std::string MessageText(const ReceivedBlock& block) {
  std::string text;
  const std::int32_t functionId = block.Word(0);
  const auto* row =
      std::find_if(std::begin(kRows), std::end(kRows),
                   [functionId](const DispatchRow& r) { return r.functionId == functionId; });
  if (row != std::end(kRows)) {
    row->print(block, text);
  } else {
    PrintUnhandled(block, text);
  }
  return text;
}

void HandleServerMessage(ClientApp& app, ResponsePrinter& printer, const void* message,
                         std::size_t size) {
  if (message == nullptr) return;
  const platform::CancellationDisabled whole;
  std::srand(MilliClock());  // each message reseeds the generator that the monkey draws from
  const ReceivedBlock block = {static_cast<const std::uint8_t*>(message), size};
  const std::int32_t functionId = block.Word(0);
  // Before the filter, so that a silenced response still ends a wait.
  if (functionId == waitResponseId) waitResponseId = 0;
  if (IsFiltered(app, functionId)) return;
  QueueResponseText(printer, MessageText(block));
}

}  // namespace ventrik
