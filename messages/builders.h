// SPDX-License-Identifier: Apache-2.0
// One builder for each request: encodes it (messages/encoders.h) and sends it to the server.
//
// Every function here: Expects commandLock held, but for the keys that move the map; returns when
// the block is handed over; the send's result is dropped, because the communication layer reports a
// failure on the console itself. While there is no communication layer, nothing is sent. Blocks as
// long as the send does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "state/lists.h"

namespace ventrik::send {

// Hands over a ready block as it is.
void SendRaw(const void* data, std::size_t length);

void REQU_INIT();
void REQU_SHUTDOWN();
void REQU_RESTORE_FACTORY();
void REQU_STOP_GUIDANCE();
void REQU_ROUTE_START_RECORDING();
void REQU_ROUTE_STOP_RECORDING();
void REQU_CANCEL_ADA();
void REQU_REPEAT_ADA();
void REQU_GET_SW_VERSION();
void REQU_GET_DB_VERSION();

void REQU_SET_MEASUREMENT_SYSTEM(std::int32_t measurementSystem);
void REQU_START_GUIDANCE(std::int32_t routeHandle);
void REQU_PROMPT_READY(std::int32_t audioSource);
void REQU_SET_ADA(std::int32_t onOff);
void REQU_PLAY_PROMPT(std::int32_t prompt);
void REQU_SET_SAFETY_CAMERA_MODE(std::int32_t mode);
void SAVE_VOLTH_LOG(std::int32_t number);
void REQU_VEH_LOC_INFO_DETAILS(std::int32_t notificationMode, std::int32_t number);
void REQU_SET_LANGUAGE(std::int32_t language, std::int32_t number);
void REQU_SET_VEH_SPEED_MODE(std::int32_t mode, std::int32_t speed);
void REQU_SET_TMC_ROUTE_MODE(std::int32_t mode, std::int32_t delayThreshold);
void REQU_TMC_SET_INFO_NOTIFICATION(std::int32_t infoFilter, std::int32_t notificationMode);
void REQU_SET_TMC_MODE(std::int32_t onOff, std::string_view text);
void REQU_SET_DEMO_MODE(std::int32_t onOff, double longitude, double latitude);

void REQU_MAP_OVERLAY_SURFACE(std::string_view eis);
void REQU_GET_AVAILABLE_INFO(std::string_view inputEis);
void REQU_GET_SPELL(std::string_view inputEis);
void REQU_GET_LIST_INFO(std::string_view inputEis);
void REQU_RESOLVE_LOCATION(std::string_view inputEis);
void REQU_ADD_DATA_SRC(std::string_view inputEis);
void REQU_REM_DATA_SRC(std::string_view inputEis);
void REQU_USER_INPUT(std::string_view eis);
void REQU_SET_DATA_CONNECTION_INFO(std::string_view eis);
void REQU_SET_VOLUME_LEVEL(std::string_view eis);
void REQU_SET_SAFETY_CAMERA_AUDIO_MODE(std::string_view inputEis);
void REQU_MAP_CONTROLS(std::string_view mapControlsEis);
void REQU_CHECK_FOR_UPDATE(std::string_view updatePath);
void REQU_STORE_DEVICE_STATUS(std::string_view path);

// Sends nothing when `text` is null.
void REQU_SET_DATA_CONNECTION_AVAILABLE(std::int32_t available, const char* text);
void REQU_TMC_TUNING_MODE(std::int32_t mode, std::string_view tuningParameters);
void REQU_SCREEN_SHOT(std::string_view map, std::string_view fileName);
void REQU_PICK_INFO(std::string_view mapEis, std::int32_t x, std::int32_t y,
                    std::int32_t worldElements, std::int32_t radius);

void REQU_SET_WORLD_PROPERTIES(std::string_view inputEis, std::int32_t worldProperties,
                               const SStringArray& items);
void REQU_GET_DETAILS(std::string_view inputEis, const SStringArray& fieldNames);
void REQU_GET_LIST(std::string_view inputEis, std::int32_t startIndex, std::int32_t resultCount,
                   std::int32_t sortOption, const SStringArray& fieldNames, std::int32_t onOff);
void REQU_TMC_AVOIDS(std::int32_t mode, const SStringArray& events);
void REQU_BLOCK_ROUTE(std::int32_t mode, const SStringArray& items);
void REQU_KILL_TRIP(const SRouteHandleList& handles);
void REQU_NEW_TRIP_FILE(std::string_view path, const SRouteModeList& routeModes);
void REQU_NEW_TRIP(const SDestinationElementList& destinations, const SRouteModeList& routeModes);

void TMC_DATA(std::string_view text);

}  // namespace ventrik::send
