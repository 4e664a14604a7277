// SPDX-License-Identifier: Apache-2.0
// One pure function for each request: values in, the block as it goes out.
//
// Requests of fixed size give a FixedRecord and allocate nothing; a FunctionId alone is a constant.
// All others give a MessageBuffer, which allocates once in the normal case. Nothing is checked:
// numbers go out as they come. Texts are UTF-8 and end at their first NUL. Any thread.
//
// A function hides the enumerator of its name: inside namespace encode, and wherever its names are
// made visible, the number is written FunctionId::REQU_INIT.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "messages/function_ids.h"
#include "messages/message_buffer.h"
#include "state/lists.h"

namespace ventrik {

// A message of N words, the FunctionId first.
template <std::size_t N>
struct FixedRecord {
  std::array<std::int32_t, N> words;

  const void* data() const { return words.data(); }
  static constexpr std::size_t size() { return N * kWordSize; }
};

template <FunctionId id>
inline constexpr FixedRecord<1> kIdAlone{{id}};

namespace encode {

inline const FixedRecord<1>& REQU_INIT() {
  return kIdAlone<FunctionId::REQU_INIT>;
}
inline const FixedRecord<1>& REQU_SHUTDOWN() {
  return kIdAlone<FunctionId::REQU_SHUTDOWN>;
}
inline const FixedRecord<1>& REQU_RESTORE_FACTORY() {
  return kIdAlone<FunctionId::REQU_RESTORE_FACTORY>;
}
inline const FixedRecord<1>& REQU_STOP_GUIDANCE() {
  return kIdAlone<FunctionId::REQU_STOP_GUIDANCE>;
}
inline const FixedRecord<1>& REQU_ROUTE_START_RECORDING() {
  return kIdAlone<FunctionId::REQU_ROUTE_START_RECORDING>;
}
inline const FixedRecord<1>& REQU_ROUTE_STOP_RECORDING() {
  return kIdAlone<FunctionId::REQU_ROUTE_STOP_RECORDING>;
}
inline const FixedRecord<1>& REQU_CANCEL_ADA() {
  return kIdAlone<FunctionId::REQU_CANCEL_ADA>;
}
inline const FixedRecord<1>& REQU_REPEAT_ADA() {
  return kIdAlone<FunctionId::REQU_REPEAT_ADA>;
}
inline const FixedRecord<1>& REQU_GET_SW_VERSION() {
  return kIdAlone<FunctionId::REQU_GET_SW_VERSION>;
}
inline const FixedRecord<1>& REQU_GET_DB_VERSION() {
  return kIdAlone<FunctionId::REQU_GET_DB_VERSION>;
}

// In all of these, `onOff` goes out as 1 if it is 1, for on, and as 2 otherwise.

FixedRecord<2> REQU_SET_MEASUREMENT_SYSTEM(std::int32_t measurementSystem);
FixedRecord<2> REQU_START_GUIDANCE(std::int32_t routeHandle);
FixedRecord<2> REQU_PROMPT_READY(std::int32_t audioSource);
FixedRecord<2> REQU_SET_ADA(std::int32_t onOff);
FixedRecord<2> REQU_PLAY_PROMPT(std::int32_t prompt);
FixedRecord<2> REQU_SET_SAFETY_CAMERA_MODE(std::int32_t mode);
FixedRecord<2> SAVE_VOLTH_LOG(std::int32_t number);
FixedRecord<3> REQU_VEH_LOC_INFO_DETAILS(std::int32_t notificationMode, std::int32_t number);

// The server alone knows what `number` means; it is carried as it is.
FixedRecord<3> REQU_SET_LANGUAGE(std::int32_t language, std::int32_t number);
FixedRecord<3> REQU_SET_VEH_SPEED_MODE(std::int32_t mode, std::int32_t speed);
FixedRecord<3> REQU_SET_TMC_ROUTE_MODE(std::int32_t mode, std::int32_t delayThreshold);
FixedRecord<3> REQU_TMC_SET_INFO_NOTIFICATION(std::int32_t infoFilter,
                                              std::int32_t notificationMode);

// Oddity: only the length of `text` goes out, never the text.
//   (1, "abc") => 20 03 00 00  01 00 00 00  03 00 00 00
FixedRecord<3> REQU_SET_TMC_MODE(std::int32_t onOff, std::string_view text);

// Longitude and latitude go out as 64-bit doubles at the offsets 8 and 16.
FixedRecord<6> REQU_SET_DEMO_MODE(std::int32_t onOff, double longitude, double latitude);

// One text: its length, then the packed text.

MessageBuffer REQU_MAP_OVERLAY_SURFACE(std::string_view eis);
MessageBuffer REQU_GET_AVAILABLE_INFO(std::string_view inputEis);
MessageBuffer REQU_GET_SPELL(std::string_view inputEis);
MessageBuffer REQU_GET_LIST_INFO(std::string_view inputEis);
MessageBuffer REQU_RESOLVE_LOCATION(std::string_view inputEis);
MessageBuffer REQU_ADD_DATA_SRC(std::string_view inputEis);
MessageBuffer REQU_REM_DATA_SRC(std::string_view inputEis);
MessageBuffer REQU_USER_INPUT(std::string_view eis);
MessageBuffer REQU_SET_DATA_CONNECTION_INFO(std::string_view eis);
MessageBuffer REQU_SET_VOLUME_LEVEL(std::string_view eis);
MessageBuffer REQU_SET_SAFETY_CAMERA_AUDIO_MODE(std::string_view inputEis);
MessageBuffer REQU_MAP_CONTROLS(std::string_view mapControlsEis);
MessageBuffer REQU_CHECK_FOR_UPDATE(std::string_view updatePath);
MessageBuffer REQU_STORE_DEVICE_STATUS(std::string_view path);

// Words and texts.

MessageBuffer REQU_SET_DATA_CONNECTION_AVAILABLE(std::int32_t available, std::string_view text);
MessageBuffer REQU_TMC_TUNING_MODE(std::int32_t mode, std::string_view tuningParameters);
MessageBuffer REQU_SCREEN_SHOT(std::string_view map, std::string_view fileName);
MessageBuffer REQU_PICK_INFO(std::string_view mapEis, std::int32_t x, std::int32_t y,
                             std::int32_t worldElements, std::int32_t radius);

// Lists: a count in the header, the elements behind the texts. A list may be empty.

MessageBuffer REQU_SET_WORLD_PROPERTIES(std::string_view inputEis, std::int32_t worldProperties,
                                        const SStringArray& items);
MessageBuffer REQU_GET_DETAILS(std::string_view inputEis, const SStringArray& fieldNames);
MessageBuffer REQU_GET_LIST(std::string_view inputEis, std::int32_t startIndex,
                            std::int32_t resultCount, std::int32_t sortOption,
                            const SStringArray& fieldNames, std::int32_t onOff);
MessageBuffer REQU_TMC_AVOIDS(std::int32_t mode, const SStringArray& events);
MessageBuffer REQU_BLOCK_ROUTE(std::int32_t mode, const SStringArray& items);
MessageBuffer REQU_KILL_TRIP(const SRouteHandleList& handles);
MessageBuffer REQU_NEW_TRIP_FILE(std::string_view path, const SRouteModeList& routeModes);

// The one interleaved layout. For each destination its packed text, the count of its attributes and
// the packed attributes; behind the last destination the route modes.
MessageBuffer REQU_NEW_TRIP(const SDestinationElementList& destinations,
                            const SRouteModeList& routeModes);

// A traffic message's text: its length, its bytes and one 0 byte, unpadded, so that the block may
// end at any offset.
MessageBuffer TMC_DATA(std::string_view text);

}  // namespace encode
}  // namespace ventrik
