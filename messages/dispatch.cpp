// SPDX-License-Identifier: Apache-2.0
#include "messages/dispatch.h"

#include <algorithm>
#include <cstdlib>

#include "console/response_printer.h"
#include "messages/automatic_replies.h"
#include "messages/function_ids.h"
#include "messages/list_response.h"
#include "messages/message_buffer.h"
#include "messages/message_text.h"
#include "messages/milli_clock.h"
#include "messages/overlay_messages.h"
#include "messages/printers.h"
#include "messages/response_filter.h"
#include "platform/cancellation.h"
#include "state/logger.h"
#include "state/out_of_memory.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

struct DispatchRow {
  std::int32_t functionId;
  void (*print)(const ReceivedBlock& block, std::string& text);
};

constexpr DispatchRow kRows[] = {
    // Searches and lists.
    {RESP_GET_AVAILABLE_INFO, print::RESP_GET_AVAILABLE_INFO},
    {RESP_GET_SPELL, print::RESP_GET_SPELL},
    {RESP_GET_LIST_INFO, print::RESP_GET_LIST_INFO},
    {RESP_GET_LIST, print::RESP_GET_LIST},
    {RESP_GET_DETAILS, print::RESP_GET_DETAILS},
    {RESP_RESOLVE_LOCATION, print::RESP_RESOLVE_LOCATION},
    {RESP_ADD_DATA_SRC, print::RESP_ADD_DATA_SRC},
    {RESP_REM_DATA_SRC, print::RESP_REM_DATA_SRC},
    // Maps.
    {RESP_SET_WORLD_PROPERTIES, print::RESP_SET_WORLD_PROPERTIES},
    {RESP_SCREEN_SHOT, print::RESP_SCREEN_SHOT},
    {RESP_PICK_INFO, print::RESP_PICK_INFO},
    {RESP_MAP_CONTROLS, print::RESP_MAP_CONTROLS},
    {INFO_VEH_LOC_INFO_DETAILS, print::INFO_VEH_LOC_INFO_DETAILS},
    {INFO_MAP_OVERLAY_AREA, print::INFO_MAP_OVERLAY_AREA},
    {INFO_MAP_OVERLAY_SURFACE_INVALID, print::INFO_MAP_OVERLAY_SURFACE_INVALID},
    // Trips and guidance.
    {RESP_BLOCK_ROUTE, print::RESP_BLOCK_ROUTE},
    {RESP_NEW_TRIP, print::RESP_NEW_TRIP},
    {RESP_NEW_TRIP_FILE, print::RESP_NEW_TRIP_FILE},
    {RESP_KILL_TRIP, print::RESP_KILL_TRIP},
    {INFO_DEMO_MODE_STATE, print::INFO_DEMO_MODE_STATE},
    {INFO_GET_INCIDENTS_ON_ROUTE, print::INFO_GET_INCIDENTS_ON_ROUTE},
    {INFO_ACTIVE_ROUTE_DESC, print::INFO_ACTIVE_ROUTE_DESC},
    {INFO_NEXT_MAN_INFO, print::INFO_NEXT_MAN_INFO},
    {INFO_NEXT_DEST_INFO, print::INFO_NEXT_DEST_INFO},
    {INFO_CALC_STATE, print::INFO_CALC_STATE},
    {RESP_ROUTE_START_RECORDING, print::RESP_ROUTE_START_RECORDING},
    {INFO_ROUTE_RECORDING_ACTIVE, print::INFO_ROUTE_RECORDING_ACTIVE},
    {INFO_ROUTE_RECORDING_COMPLETE, print::INFO_ROUTE_RECORDING_COMPLETE},
    {INFO_DESTINATION_REACHED, print::INFO_DESTINATION_REACHED},
    {INFO_LANE_INFORMATION, print::INFO_LANE_INFORMATION},
    // State, settings and audio.
    {RESP_INIT, print::RESP_INIT},
    {RESP_SHUTDOWN, print::RESP_SHUTDOWN},
    {RESP_RESTORE_FACTORY, print::RESP_RESTORE_FACTORY},
    {INFO_HEARTBEAT, print::INFO_HEARTBEAT},
    {INFO_MEASUREMENT_SYSTEM, print::INFO_MEASUREMENT_SYSTEM},
    {INFO_APPEARANCE_STYLE, print::INFO_APPEARANCE_STYLE},
    {INFO_LANGUAGE_INFO, print::INFO_LANGUAGE_INFO},
    {INFO_HIGHWAYMODE_UPDATE, print::INFO_HIGHWAYMODE_UPDATE},
    {INFO_VEH_SPEED_MODE, print::INFO_VEH_SPEED_MODE},
    {INFO_SAFETY_CAMERA_MODE, print::INFO_SAFETY_CAMERA_MODE},
    {INFO_SAFETY_CAMERA_AUDIO_MODE, print::INFO_SAFETY_CAMERA_AUDIO_MODE},
    {INFO_REQU_SET_VOLUME_LEVEL, print::INFO_REQU_SET_VOLUME_LEVEL},
    {INFO_PROMPT_READY, print::INFO_PROMPT_READY},
    {INFO_ADA_IS_ENABLED, print::INFO_ADA_IS_ENABLED},
    {INFO_ACTIVE_AUDIO_SRC, print::INFO_ACTIVE_AUDIO_SRC},
    {RESP_PLAY_PROMPT, print::RESP_PLAY_PROMPT},
    // Traffic messages.
    {INFO_TMC_MODE, print::INFO_TMC_MODE},
    {INFO_TMC_ROUTE_MODE, print::INFO_TMC_ROUTE_MODE},
    {INFO_TMC_ROUTES_AVAILABLE, print::INFO_TMC_ROUTES_AVAILABLE},
    {INFO_TMC_ROUTE_ACCEPTED, print::INFO_TMC_ROUTE_ACCEPTED},
    {INFO_TMC_ROUTES_DELETED, print::INFO_TMC_ROUTES_DELETED},
    {INFO_TMC_AVOIDS_CHANGED, print::INFO_TMC_AVOIDS_CHANGED},
    {INFO_TMC_INFO_CHANGED, print::INFO_TMC_INFO_CHANGED},
    {INFO_TMC_NEW_EVENTS, print::INFO_TMC_NEW_EVENTS},
    {INFO_TMC_DEL_EVENTS, print::INFO_TMC_DEL_EVENTS},
    {INFO_TMC_TUNING_MODE, print::INFO_TMC_TUNING_MODE},
    // Versions, updates and packages.
    {RESP_GET_SW_VERSION, print::RESP_GET_SW_VERSION},
    {RESP_GET_DB_VERSION, print::RESP_GET_DB_VERSION},
    {RESP_CHECK_FOR_UPDATE, print::RESP_CHECK_FOR_UPDATE},
    {INFO_UPDATE_PROGRESS, print::INFO_UPDATE_PROGRESS},
    {RESP_STORE_DEVICE_STATUS, print::RESP_STORE_DEVICE_STATUS},
    {CMD_PACKAGE_LOADED, print::CMD_PACKAGE_LOADED},
};

// Oddity: the block itself is taken as text, so what shows is its number's bytes and not a name.
void PrintUnhandled(const ReceivedBlock& block, std::string& text) {
  const char* bytes = reinterpret_cast<const char*>(block.data);
  text += ColourRed;
  AppendLine(text, "Error: Unhandled response or info (",
             WireText(std::string_view(bytes, block.size)), ")!\n");
  text += ColourReset;
}

// What a message makes the tester do beside printing it. Appends to the message's text what there
// is to say about that.
void ActOn(ResponsePrinter& printer, const ReceivedBlock& block, std::string& text,
           const platform::CancellationDisabled& whole) {
  switch (block.Word(0)) {
    case INFO_MAP_OVERLAY_AREA:
      HandleOverlayArea(block, whole);
      break;
    case INFO_MAP_OVERLAY_SURFACE_INVALID:
      HandleOverlaySurfaceInvalid(block);
      break;
    case CMD_PACKAGE_LOADED:
      packagePhase = 0;
      break;
    default:
      SendAutomaticReply(printer, block, text, whole);
  }
}

}  // namespace

void (*followMessage)(ClientApp& app, const ReceivedBlock& block) = nullptr;

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
  const bool silenced = IsFiltered(app, functionId);
  // Before the wait ends: the main thread would fetch the next line, which empties the queue.
  std::string assigned;
  if (functionId == RESP_GET_LIST && !silenced) {
    RunIfMemoryLasts([&] { assigned = UseListAssignments(app, ReadListResponse(block)); });
  }
  // A silenced response still ends a wait.
  if (functionId == waitResponseId) waitResponseId = 0;
  if (silenced) return;
  // Each by itself: what a message makes the tester do isn't lost with its text.
  std::string text;
  RunIfMemoryLasts([&] { text = MessageText(block) + assigned; });
  RunIfMemoryLasts([&] { ActOn(printer, block, text, whole); });
  if (followMessage != nullptr) RunIfMemoryLasts([&] { followMessage(app, block); });
  RunIfMemoryLasts([&] { QueueResponseText(printer, text); });
}

}  // namespace ventrik
