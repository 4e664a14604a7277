// SPDX-License-Identifier: Apache-2.0
// Printers of traffic messages.
#include <cstddef>

#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"

namespace ventrik::print {
namespace {

constexpr const char* kTmcRouteModes[] = {"off", "automatic", "manual", "<invalid>", "delay"};
constexpr std::size_t kTmcRouteModeCount = sizeof kTmcRouteModes / sizeof kTmcRouteModes[0];

const char* TmcRouteModeWord(std::int32_t mode) {
  const auto index = static_cast<std::uint32_t>(mode);
  return index < kTmcRouteModeCount ? kTmcRouteModes[index] : "<invalid>";
}

}  // namespace

void INFO_TMC_MODE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_TMC_MODE> %s\n", OnOffWord(block.Word(1)));
}

void INFO_TMC_ROUTE_MODE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_TMC_ROUTE_MODE> mode: %s\n", TmcRouteModeWord(block.Word(1)));
  AppendFormat(text, "INFO_TMC_ROUTE_MODE> delayThreshold: %d\n", block.Word(2));
}

void INFO_TMC_ROUTES_AVAILABLE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  AppendNumbers(text,
                "INFO_TMC_ROUTES_AVAILABLE> routeHandles: ", NextWords(cursor, block.Word(1)));
  AppendEvents(text, "INFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:", cursor, block.Word(2));
  text += '\n';
  AppendEvents(text, "INFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:", cursor, block.Word(3));
  text += '\n';
}

void INFO_TMC_ROUTE_ACCEPTED(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 5);
  AppendNumbers(text, "INFO_TMC_ROUTE_ACCEPTED> routeHandle: ", {block.Word(4)});
  AppendEvents(text, "INFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:", cursor, block.Word(2));
  text += '\n';
  AppendEvents(text, "INFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:", cursor, block.Word(3));
  text += '\n';
}

void INFO_TMC_ROUTES_DELETED(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendNumbers(text, "INFO_TMC_ROUTES_DELETED> routeHandles: ", NextWords(cursor, block.Word(1)));
}

void INFO_TMC_AVOIDS_CHANGED(const ReceivedBlock&, std::string& text) {
  AppendNotImplemented(text, "INFO_TMC_AVOIDS_CHANGED");
}

void INFO_TMC_INFO_CHANGED(const ReceivedBlock& block, std::string& text) {
  AppendNumbers(text, "INFO_TMC_INFO_CHANGED> tmcInfoChanged: ", {block.Word(1)});
}

// No line end behind the events of these two, so without events the label stands open.

void INFO_TMC_NEW_EVENTS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendEvents(text, "INFO_TMC_NEW_EVENTS> tmcEvents:", cursor, block.Word(1));
}

void INFO_TMC_DEL_EVENTS(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 2);
  AppendEvents(text, "INFO_TMC_DEL_EVENTS> tmcEvents:", cursor, block.Word(1));
}

void INFO_TMC_TUNING_MODE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  AppendFormat(text, "INFO_TMC_TUNING_MODE> tmcTuningMode: %s\n",
               block.Word(1) == 1 ? "tmcTuningAutomatic" : "tmcTuningManual");
  AppendQuotedLine(
      text, "INFO_TMC_TUNING_MODE> tuningParameters: ", cursor.OptionalString(block.Word(2)));
}

}  // namespace ventrik::print
