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

// Searches and lists.
void RESP_GET_AVAILABLE_INFO(const ReceivedBlock& block, std::string& text);
void RESP_GET_SPELL(const ReceivedBlock& block, std::string& text);
void RESP_GET_LIST_INFO(const ReceivedBlock& block, std::string& text);
void RESP_GET_LIST(const ReceivedBlock& block, std::string& text);
void RESP_GET_DETAILS(const ReceivedBlock& block, std::string& text);
void RESP_RESOLVE_LOCATION(const ReceivedBlock& block, std::string& text);
void RESP_ADD_DATA_SRC(const ReceivedBlock& block, std::string& text);
void RESP_REM_DATA_SRC(const ReceivedBlock& block, std::string& text);

// Maps.
void RESP_SET_WORLD_PROPERTIES(const ReceivedBlock& block, std::string& text);
void RESP_SCREEN_SHOT(const ReceivedBlock& block, std::string& text);
void RESP_PICK_INFO(const ReceivedBlock& block, std::string& text);
void RESP_MAP_CONTROLS(const ReceivedBlock& block, std::string& text);
void INFO_VEH_LOC_INFO_DETAILS(const ReceivedBlock& block, std::string& text);
void INFO_MAP_OVERLAY_AREA(const ReceivedBlock& block, std::string& text);
void INFO_MAP_OVERLAY_SURFACE_INVALID(const ReceivedBlock& block, std::string& text);

// Trips and guidance.
void RESP_BLOCK_ROUTE(const ReceivedBlock& block, std::string& text);
void RESP_NEW_TRIP(const ReceivedBlock& block, std::string& text);
void RESP_NEW_TRIP_FILE(const ReceivedBlock& block, std::string& text);
void RESP_KILL_TRIP(const ReceivedBlock& block, std::string& text);
void INFO_DEMO_MODE_STATE(const ReceivedBlock& block, std::string& text);
void INFO_GET_INCIDENTS_ON_ROUTE(const ReceivedBlock& block, std::string& text);
void INFO_ACTIVE_ROUTE_DESC(const ReceivedBlock& block, std::string& text);
void INFO_NEXT_MAN_INFO(const ReceivedBlock& block, std::string& text);
void INFO_NEXT_DEST_INFO(const ReceivedBlock& block, std::string& text);
void INFO_CALC_STATE(const ReceivedBlock& block, std::string& text);
void RESP_ROUTE_START_RECORDING(const ReceivedBlock& block, std::string& text);
void INFO_ROUTE_RECORDING_ACTIVE(const ReceivedBlock& block, std::string& text);
void INFO_ROUTE_RECORDING_COMPLETE(const ReceivedBlock& block, std::string& text);
void INFO_DESTINATION_REACHED(const ReceivedBlock& block, std::string& text);
void INFO_LANE_INFORMATION(const ReceivedBlock& block, std::string& text);

// State, settings and audio.
void RESP_INIT(const ReceivedBlock& block, std::string& text);
void RESP_SHUTDOWN(const ReceivedBlock& block, std::string& text);
void RESP_RESTORE_FACTORY(const ReceivedBlock& block, std::string& text);
void INFO_HEARTBEAT(const ReceivedBlock& block, std::string& text);
void INFO_MEASUREMENT_SYSTEM(const ReceivedBlock& block, std::string& text);
void INFO_APPEARANCE_STYLE(const ReceivedBlock& block, std::string& text);
void INFO_LANGUAGE_INFO(const ReceivedBlock& block, std::string& text);
void INFO_HIGHWAYMODE_UPDATE(const ReceivedBlock& block, std::string& text);
void INFO_VEH_SPEED_MODE(const ReceivedBlock& block, std::string& text);
void INFO_SAFETY_CAMERA_MODE(const ReceivedBlock& block, std::string& text);
void INFO_SAFETY_CAMERA_AUDIO_MODE(const ReceivedBlock& block, std::string& text);
void INFO_REQU_SET_VOLUME_LEVEL(const ReceivedBlock& block, std::string& text);
void INFO_PROMPT_READY(const ReceivedBlock& block, std::string& text);
void INFO_ADA_IS_ENABLED(const ReceivedBlock& block, std::string& text);
void INFO_ACTIVE_AUDIO_SRC(const ReceivedBlock& block, std::string& text);
void RESP_PLAY_PROMPT(const ReceivedBlock& block, std::string& text);

// Traffic messages.
void INFO_TMC_MODE(const ReceivedBlock& block, std::string& text);
void INFO_TMC_ROUTE_MODE(const ReceivedBlock& block, std::string& text);
void INFO_TMC_ROUTES_AVAILABLE(const ReceivedBlock& block, std::string& text);
void INFO_TMC_ROUTE_ACCEPTED(const ReceivedBlock& block, std::string& text);
void INFO_TMC_ROUTES_DELETED(const ReceivedBlock& block, std::string& text);
void INFO_TMC_AVOIDS_CHANGED(const ReceivedBlock& block, std::string& text);
void INFO_TMC_INFO_CHANGED(const ReceivedBlock& block, std::string& text);
void INFO_TMC_NEW_EVENTS(const ReceivedBlock& block, std::string& text);
void INFO_TMC_DEL_EVENTS(const ReceivedBlock& block, std::string& text);
void INFO_TMC_TUNING_MODE(const ReceivedBlock& block, std::string& text);

// Versions, updates and packages.
void RESP_GET_SW_VERSION(const ReceivedBlock& block, std::string& text);
void RESP_GET_DB_VERSION(const ReceivedBlock& block, std::string& text);
void RESP_CHECK_FOR_UPDATE(const ReceivedBlock& block, std::string& text);
void INFO_UPDATE_PROGRESS(const ReceivedBlock& block, std::string& text);
void RESP_STORE_DEVICE_STATUS(const ReceivedBlock& block, std::string& text);
void CMD_PACKAGE_LOADED(const ReceivedBlock& block, std::string& text);

}  // namespace ventrik::print
