// SPDX-License-Identifier: Apache-2.0
#include "messages/automatic_replies.h"

#include <cstdlib>
#include <optional>
#include <string_view>

#include "console/response_printer.h"
#include "messages/builders.h"
#include "messages/function_ids.h"
#include "messages/printer_pieces.h"
#include "messages/tagged_text.h"
#include "state/lists.h"
#include "state/process_state.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

constexpr const char* kHighwayModeList = "<IFT>HWM<*><EXT><*>";
constexpr std::int32_t kHighwayModeRows = 3;
constexpr std::int32_t kListOff = 2;  // the request's last word, as `list` sends it for "off"

// Sends under commandLock. A cancelled thread releases it on its way out.
template <class Send>
void Reply(const platform::CancellationDisabled& whole, Send send) {
  const platform::CancellationAllowed sending(whole);
  const CommandLockHolder hold;
  send();
}

// The number in "<JVA>number<*>"; none if any of it is missing.
std::optional<std::int32_t> JunctionView(std::string_view posInfo) {
  const std::string value(TagValue(posInfo, "<JVA>").value_or(""));
  char* end = nullptr;
  const long long number = std::strtoll(value.c_str(), &end, 10);
  if (end == value.c_str() || *end != '\0') return std::nullopt;
  return Saturate(number);
}

void ReplyToPromptReady(const ReceivedBlock& block, std::string& text,
                        const platform::CancellationDisabled& whole) {
  if (!autoPromptReady) return;
  text += "INFO_PROMPT_READY> requestPromptReady sent\n";
  Reply(whole, [&] { send::REQU_PROMPT_READY(block.Word(1)); });
}

void ReplyToHighwayMode(const ReceivedBlock& block, const platform::CancellationDisabled& whole) {
  if (block.Word(1) != 1 || !autoPromptReady) return;
  SStringArray fieldNames;
  fieldNames.items = {"Default"};
  Reply(whole, [&] {
    send::REQU_GET_LIST(kHighwayModeList, 1, kHighwayModeRows, 0, fieldNames, kListOff);
  });
}

void ReplyToPosition(ResponsePrinter& printer, const ReceivedBlock& block,
                     const platform::CancellationDisabled& whole) {
  const auto junctionView = JunctionView(OneString(block));
  const std::string mapId = printer.mapId.Copy();
  if (!junctionView || mapId.empty()) return;
  const std::string controls = "<MID>" + mapId + "<*><SJV>" + std::to_string(*junctionView) + "<*>";
  Reply(whole, [&] { send::REQU_MAP_CONTROLS(controls); });
}

}  // namespace

void SendAutomaticReply(ResponsePrinter& printer, const ReceivedBlock& block, std::string& text,
                        const platform::CancellationDisabled& whole) {
  switch (block.Word(0)) {
    case INFO_PROMPT_READY:
      return ReplyToPromptReady(block, text, whole);
    case INFO_HIGHWAYMODE_UPDATE:
      return ReplyToHighwayMode(block, whole);
    case INFO_VEH_LOC_INFO_DETAILS:
      return ReplyToPosition(printer, block, whole);
    default:
      return;
  }
}

}  // namespace ventrik
