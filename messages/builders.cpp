// SPDX-License-Identifier: Apache-2.0
#include "messages/builders.h"

#include "ipc/client_communication_layer_posix.h"
#include "messages/encoders.h"
#include "state/process_state.h"

namespace ventrik::send {
namespace {

template <class Block>
void HandOver(const Block& block) {
  SendRaw(block.data(), block.size());
}

}  // namespace

void SendRaw(const void* data, std::size_t length) {
  if (communicationLayer == nullptr) return;
  communicationLayer->Send(data, length);
}

void REQU_INIT() {
  HandOver(encode::REQU_INIT());
}

void REQU_SHUTDOWN() {
  HandOver(encode::REQU_SHUTDOWN());
}

void REQU_RESTORE_FACTORY() {
  HandOver(encode::REQU_RESTORE_FACTORY());
}

void REQU_STOP_GUIDANCE() {
  HandOver(encode::REQU_STOP_GUIDANCE());
}

void REQU_ROUTE_START_RECORDING() {
  HandOver(encode::REQU_ROUTE_START_RECORDING());
}

void REQU_ROUTE_STOP_RECORDING() {
  HandOver(encode::REQU_ROUTE_STOP_RECORDING());
}

void REQU_CANCEL_ADA() {
  HandOver(encode::REQU_CANCEL_ADA());
}

void REQU_REPEAT_ADA() {
  HandOver(encode::REQU_REPEAT_ADA());
}

void REQU_GET_SW_VERSION() {
  HandOver(encode::REQU_GET_SW_VERSION());
}

void REQU_GET_DB_VERSION() {
  HandOver(encode::REQU_GET_DB_VERSION());
}

void REQU_SET_MEASUREMENT_SYSTEM(std::int32_t measurementSystem) {
  HandOver(encode::REQU_SET_MEASUREMENT_SYSTEM(measurementSystem));
}

void REQU_START_GUIDANCE(std::int32_t routeHandle) {
  HandOver(encode::REQU_START_GUIDANCE(routeHandle));
}

void REQU_PROMPT_READY(std::int32_t audioSource) {
  HandOver(encode::REQU_PROMPT_READY(audioSource));
}

void REQU_SET_ADA(std::int32_t onOff) {
  HandOver(encode::REQU_SET_ADA(onOff));
}

void REQU_PLAY_PROMPT(std::int32_t prompt) {
  HandOver(encode::REQU_PLAY_PROMPT(prompt));
}

void REQU_SET_SAFETY_CAMERA_MODE(std::int32_t mode) {
  HandOver(encode::REQU_SET_SAFETY_CAMERA_MODE(mode));
}

void SAVE_VOLTH_LOG(std::int32_t number) {
  HandOver(encode::SAVE_VOLTH_LOG(number));
}

void REQU_VEH_LOC_INFO_DETAILS(std::int32_t notificationMode, std::int32_t number) {
  HandOver(encode::REQU_VEH_LOC_INFO_DETAILS(notificationMode, number));
}

void REQU_SET_LANGUAGE(std::int32_t language, std::int32_t number) {
  HandOver(encode::REQU_SET_LANGUAGE(language, number));
}

void REQU_SET_VEH_SPEED_MODE(std::int32_t mode, std::int32_t speed) {
  HandOver(encode::REQU_SET_VEH_SPEED_MODE(mode, speed));
}

void REQU_SET_TMC_ROUTE_MODE(std::int32_t mode, std::int32_t delayThreshold) {
  HandOver(encode::REQU_SET_TMC_ROUTE_MODE(mode, delayThreshold));
}

void REQU_TMC_SET_INFO_NOTIFICATION(std::int32_t infoFilter, std::int32_t notificationMode) {
  HandOver(encode::REQU_TMC_SET_INFO_NOTIFICATION(infoFilter, notificationMode));
}

void REQU_SET_TMC_MODE(std::int32_t onOff, std::string_view text) {
  HandOver(encode::REQU_SET_TMC_MODE(onOff, text));
}

void REQU_SET_DEMO_MODE(std::int32_t onOff, double longitude, double latitude) {
  HandOver(encode::REQU_SET_DEMO_MODE(onOff, longitude, latitude));
}

void REQU_MAP_OVERLAY_SURFACE(std::string_view eis) {
  HandOver(encode::REQU_MAP_OVERLAY_SURFACE(eis));
}

void REQU_GET_AVAILABLE_INFO(std::string_view inputEis) {
  HandOver(encode::REQU_GET_AVAILABLE_INFO(inputEis));
}

void REQU_GET_SPELL(std::string_view inputEis) {
  HandOver(encode::REQU_GET_SPELL(inputEis));
}

void REQU_GET_LIST_INFO(std::string_view inputEis) {
  HandOver(encode::REQU_GET_LIST_INFO(inputEis));
}

void REQU_RESOLVE_LOCATION(std::string_view inputEis) {
  HandOver(encode::REQU_RESOLVE_LOCATION(inputEis));
}

void REQU_ADD_DATA_SRC(std::string_view inputEis) {
  HandOver(encode::REQU_ADD_DATA_SRC(inputEis));
}

void REQU_REM_DATA_SRC(std::string_view inputEis) {
  HandOver(encode::REQU_REM_DATA_SRC(inputEis));
}

void REQU_USER_INPUT(std::string_view eis) {
  HandOver(encode::REQU_USER_INPUT(eis));
}

void REQU_SET_DATA_CONNECTION_INFO(std::string_view eis) {
  HandOver(encode::REQU_SET_DATA_CONNECTION_INFO(eis));
}

void REQU_SET_VOLUME_LEVEL(std::string_view eis) {
  HandOver(encode::REQU_SET_VOLUME_LEVEL(eis));
}

void REQU_SET_SAFETY_CAMERA_AUDIO_MODE(std::string_view inputEis) {
  HandOver(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE(inputEis));
}

void REQU_MAP_CONTROLS(std::string_view mapControlsEis) {
  HandOver(encode::REQU_MAP_CONTROLS(mapControlsEis));
}

void REQU_CHECK_FOR_UPDATE(std::string_view updatePath) {
  HandOver(encode::REQU_CHECK_FOR_UPDATE(updatePath));
}

void REQU_STORE_DEVICE_STATUS(std::string_view path) {
  HandOver(encode::REQU_STORE_DEVICE_STATUS(path));
}

void REQU_SET_DATA_CONNECTION_AVAILABLE(std::int32_t available, const char* text) {
  if (text == nullptr) return;
  HandOver(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(available, text));
}

void REQU_TMC_TUNING_MODE(std::int32_t mode, std::string_view tuningParameters) {
  HandOver(encode::REQU_TMC_TUNING_MODE(mode, tuningParameters));
}

void REQU_SCREEN_SHOT(std::string_view map, std::string_view fileName) {
  HandOver(encode::REQU_SCREEN_SHOT(map, fileName));
}

void REQU_PICK_INFO(std::string_view mapEis, std::int32_t x, std::int32_t y,
                    std::int32_t worldElements, std::int32_t radius) {
  HandOver(encode::REQU_PICK_INFO(mapEis, x, y, worldElements, radius));
}

void REQU_SET_WORLD_PROPERTIES(std::string_view inputEis, std::int32_t worldProperties,
                               const SStringArray& items) {
  HandOver(encode::REQU_SET_WORLD_PROPERTIES(inputEis, worldProperties, items));
}

void REQU_GET_DETAILS(std::string_view inputEis, const SStringArray& fieldNames) {
  HandOver(encode::REQU_GET_DETAILS(inputEis, fieldNames));
}

void REQU_GET_LIST(std::string_view inputEis, std::int32_t startIndex, std::int32_t resultCount,
                   std::int32_t sortOption, const SStringArray& fieldNames, std::int32_t onOff) {
  HandOver(encode::REQU_GET_LIST(inputEis, startIndex, resultCount, sortOption, fieldNames, onOff));
}

void REQU_TMC_AVOIDS(std::int32_t mode, const SStringArray& events) {
  HandOver(encode::REQU_TMC_AVOIDS(mode, events));
}

void REQU_BLOCK_ROUTE(std::int32_t mode, const SStringArray& items) {
  HandOver(encode::REQU_BLOCK_ROUTE(mode, items));
}

void REQU_KILL_TRIP(const SRouteHandleList& handles) {
  HandOver(encode::REQU_KILL_TRIP(handles));
}

void REQU_NEW_TRIP_FILE(std::string_view path, const SRouteModeList& routeModes) {
  HandOver(encode::REQU_NEW_TRIP_FILE(path, routeModes));
}

void REQU_NEW_TRIP(const SDestinationElementList& destinations, const SRouteModeList& routeModes) {
  HandOver(encode::REQU_NEW_TRIP(destinations, routeModes));
}

void TMC_DATA(std::string_view text) {
  HandOver(encode::TMC_DATA(text));
}

}  // namespace ventrik::send
