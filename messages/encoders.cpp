// SPDX-License-Identifier: Apache-2.0
#include "messages/encoders.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace ventrik::encode {
namespace {

// Enough for the lists of a usual request; longer ones make the buffer grow.
constexpr std::size_t kListCapacity = 256;  // bytes

constexpr std::int32_t OnOff(std::int32_t onOff) {
  return onOff == 1 ? 1 : 2;
}

template <class List>
std::int32_t Count(const List& list) {
  return static_cast<std::int32_t>(list.items.size());
}

// A header and the texts behind it. The capacity is each text's length rounded up to 4, which is 4
// bytes short when the length is a multiple of 4 already; the buffer then grows once.
MessageBuffer WithTexts(std::initializer_list<std::int32_t> header,
                        std::initializer_list<std::string_view> texts) {
  std::size_t capacity = header.size() * kWordSize;
  for (const std::string_view text : texts) {
    capacity += (WireText(text).size() + kWordSize - 1) / kWordSize * kWordSize;
  }
  MessageBuffer block(capacity);
  block.AppendHeader(header);
  for (const std::string_view text : texts) block.AppendString(text);
  return block;
}

MessageBuffer OneText(FunctionId id, std::string_view text) {
  return WithTexts({id, TextLength(text)}, {text});
}

MessageBuffer ForLists(std::initializer_list<std::int32_t> header) {
  MessageBuffer block(kListCapacity);
  block.AppendHeader(header);
  return block;
}

void AppendStrings(MessageBuffer& block, const SStringArray& list) {
  for (const std::string& item : list.items) block.AppendString(item);
}

void AppendWords(MessageBuffer& block, const std::vector<std::int32_t>& words) {
  for (const std::int32_t word : words) block.AppendWord(word);
}

void PutDouble(FixedRecord<6>& record, std::size_t word, double value) {
  std::memcpy(&record.words[word], &value, sizeof value);
}

}  // namespace

FixedRecord<2> REQU_SET_MEASUREMENT_SYSTEM(std::int32_t measurementSystem) {
  return {{FunctionId::REQU_SET_MEASUREMENT_SYSTEM, measurementSystem}};
}

FixedRecord<2> REQU_START_GUIDANCE(std::int32_t routeHandle) {
  return {{FunctionId::REQU_START_GUIDANCE, routeHandle}};
}

FixedRecord<2> REQU_PROMPT_READY(std::int32_t audioSource) {
  return {{FunctionId::REQU_PROMPT_READY, audioSource}};
}

FixedRecord<2> REQU_SET_ADA(std::int32_t onOff) {
  return {{FunctionId::REQU_SET_ADA, OnOff(onOff)}};
}

FixedRecord<2> REQU_PLAY_PROMPT(std::int32_t prompt) {
  return {{FunctionId::REQU_PLAY_PROMPT, prompt}};
}

FixedRecord<2> REQU_SET_SAFETY_CAMERA_MODE(std::int32_t mode) {
  return {{FunctionId::REQU_SET_SAFETY_CAMERA_MODE, mode}};
}

FixedRecord<2> SAVE_VOLTH_LOG(std::int32_t number) {
  return {{FunctionId::SAVE_VOLTH_LOG, number}};
}

FixedRecord<3> REQU_VEH_LOC_INFO_DETAILS(std::int32_t notificationMode, std::int32_t number) {
  return {{FunctionId::REQU_VEH_LOC_INFO_DETAILS, notificationMode, number}};
}

FixedRecord<3> REQU_SET_LANGUAGE(std::int32_t language, std::int32_t number) {
  return {{FunctionId::REQU_SET_LANGUAGE, language, number}};
}

FixedRecord<3> REQU_SET_VEH_SPEED_MODE(std::int32_t mode, std::int32_t speed) {
  return {{FunctionId::REQU_SET_VEH_SPEED_MODE, mode, speed}};
}

FixedRecord<3> REQU_SET_TMC_ROUTE_MODE(std::int32_t mode, std::int32_t delayThreshold) {
  return {{FunctionId::REQU_SET_TMC_ROUTE_MODE, mode, delayThreshold}};
}

FixedRecord<3> REQU_TMC_SET_INFO_NOTIFICATION(std::int32_t infoFilter,
                                              std::int32_t notificationMode) {
  return {{FunctionId::REQU_TMC_SET_INFO_NOTIFICATION, infoFilter, notificationMode}};
}

FixedRecord<3> REQU_SET_TMC_MODE(std::int32_t onOff, std::string_view text) {
  return {{FunctionId::REQU_SET_TMC_MODE, OnOff(onOff), TextLength(text)}};
}

FixedRecord<6> REQU_SET_DEMO_MODE(std::int32_t onOff, double longitude, double latitude) {
  FixedRecord<6> record{{FunctionId::REQU_SET_DEMO_MODE, OnOff(onOff)}};
  PutDouble(record, 2, longitude);
  PutDouble(record, 4, latitude);
  return record;
}

MessageBuffer REQU_MAP_OVERLAY_SURFACE(std::string_view eis) {
  return OneText(FunctionId::REQU_MAP_OVERLAY_SURFACE, eis);
}

MessageBuffer REQU_GET_AVAILABLE_INFO(std::string_view inputEis) {
  return OneText(FunctionId::REQU_GET_AVAILABLE_INFO, inputEis);
}

MessageBuffer REQU_GET_SPELL(std::string_view inputEis) {
  return OneText(FunctionId::REQU_GET_SPELL, inputEis);
}

MessageBuffer REQU_GET_LIST_INFO(std::string_view inputEis) {
  return OneText(FunctionId::REQU_GET_LIST_INFO, inputEis);
}

MessageBuffer REQU_RESOLVE_LOCATION(std::string_view inputEis) {
  return OneText(FunctionId::REQU_RESOLVE_LOCATION, inputEis);
}

MessageBuffer REQU_ADD_DATA_SRC(std::string_view inputEis) {
  return OneText(FunctionId::REQU_ADD_DATA_SRC, inputEis);
}

MessageBuffer REQU_REM_DATA_SRC(std::string_view inputEis) {
  return OneText(FunctionId::REQU_REM_DATA_SRC, inputEis);
}

MessageBuffer REQU_USER_INPUT(std::string_view eis) {
  return OneText(FunctionId::REQU_USER_INPUT, eis);
}

MessageBuffer REQU_SET_DATA_CONNECTION_INFO(std::string_view eis) {
  return OneText(FunctionId::REQU_SET_DATA_CONNECTION_INFO, eis);
}

MessageBuffer REQU_SET_VOLUME_LEVEL(std::string_view eis) {
  return OneText(FunctionId::REQU_SET_VOLUME_LEVEL, eis);
}

MessageBuffer REQU_SET_SAFETY_CAMERA_AUDIO_MODE(std::string_view inputEis) {
  return OneText(FunctionId::REQU_SET_SAFETY_CAMERA_AUDIO_MODE, inputEis);
}

MessageBuffer REQU_MAP_CONTROLS(std::string_view mapControlsEis) {
  return OneText(FunctionId::REQU_MAP_CONTROLS, mapControlsEis);
}

MessageBuffer REQU_CHECK_FOR_UPDATE(std::string_view updatePath) {
  return OneText(FunctionId::REQU_CHECK_FOR_UPDATE, updatePath);
}

MessageBuffer REQU_STORE_DEVICE_STATUS(std::string_view path) {
  return OneText(FunctionId::REQU_STORE_DEVICE_STATUS, path);
}

MessageBuffer REQU_SET_DATA_CONNECTION_AVAILABLE(std::int32_t available, std::string_view text) {
  return WithTexts({FunctionId::REQU_SET_DATA_CONNECTION_AVAILABLE, available, TextLength(text)},
                   {text});
}

MessageBuffer REQU_TMC_TUNING_MODE(std::int32_t mode, std::string_view tuningParameters) {
  return WithTexts({FunctionId::REQU_TMC_TUNING_MODE, mode, TextLength(tuningParameters)},
                   {tuningParameters});
}

MessageBuffer REQU_SCREEN_SHOT(std::string_view map, std::string_view fileName) {
  return WithTexts({FunctionId::REQU_SCREEN_SHOT, TextLength(map), TextLength(fileName)},
                   {map, fileName});
}

MessageBuffer REQU_PICK_INFO(std::string_view mapEis, std::int32_t x, std::int32_t y,
                             std::int32_t worldElements, std::int32_t radius) {
  return WithTexts({FunctionId::REQU_PICK_INFO, TextLength(mapEis), x, y, worldElements, radius},
                   {mapEis});
}

MessageBuffer REQU_SET_WORLD_PROPERTIES(std::string_view inputEis, std::int32_t worldProperties,
                                        const SStringArray& items) {
  MessageBuffer block = ForLists(
      {FunctionId::REQU_SET_WORLD_PROPERTIES, TextLength(inputEis), worldProperties, Count(items)});
  block.AppendString(inputEis);
  AppendStrings(block, items);
  return block;
}

MessageBuffer REQU_GET_DETAILS(std::string_view inputEis, const SStringArray& fieldNames) {
  MessageBuffer block =
      ForLists({FunctionId::REQU_GET_DETAILS, TextLength(inputEis), Count(fieldNames)});
  block.AppendString(inputEis);
  AppendStrings(block, fieldNames);
  return block;
}

MessageBuffer REQU_GET_LIST(std::string_view inputEis, std::int32_t startIndex,
                            std::int32_t resultCount, std::int32_t sortOption,
                            const SStringArray& fieldNames, std::int32_t onOff) {
  MessageBuffer block = ForLists({FunctionId::REQU_GET_LIST, TextLength(inputEis), startIndex,
                                  resultCount, sortOption, Count(fieldNames), OnOff(onOff)});
  block.AppendString(inputEis);
  AppendStrings(block, fieldNames);
  return block;
}

MessageBuffer REQU_TMC_AVOIDS(std::int32_t mode, const SStringArray& events) {
  MessageBuffer block = ForLists({FunctionId::REQU_TMC_AVOIDS, mode, Count(events)});
  AppendStrings(block, events);
  return block;
}

MessageBuffer REQU_BLOCK_ROUTE(std::int32_t mode, const SStringArray& items) {
  MessageBuffer block = ForLists({FunctionId::REQU_BLOCK_ROUTE, mode, Count(items)});
  AppendStrings(block, items);
  return block;
}

MessageBuffer REQU_KILL_TRIP(const SRouteHandleList& handles) {
  MessageBuffer block = ForLists({FunctionId::REQU_KILL_TRIP, Count(handles)});
  AppendWords(block, handles.items);
  return block;
}

MessageBuffer REQU_NEW_TRIP_FILE(std::string_view path, const SRouteModeList& routeModes) {
  MessageBuffer block =
      ForLists({FunctionId::REQU_NEW_TRIP_FILE, TextLength(path), Count(routeModes)});
  block.AppendString(path);
  AppendWords(block, routeModes.items);
  return block;
}

MessageBuffer REQU_NEW_TRIP(const SDestinationElementList& destinations,
                            const SRouteModeList& routeModes) {
  MessageBuffer block =
      ForLists({FunctionId::REQU_NEW_TRIP, Count(destinations), Count(routeModes)});
  for (const SDestinationElement& destination : destinations.items) {
    block.AppendString(destination.text);
    block.AppendWord(Count(*destination.attributes));
    AppendStrings(block, *destination.attributes);
  }
  AppendWords(block, routeModes.items);
  return block;
}

MessageBuffer TMC_DATA(std::string_view text) {
  const std::string_view sent = WireText(text);
  MessageBuffer block(2 * kWordSize + sent.size() + 1);
  block.AppendHeader({FunctionId::TMC_DATA, TextLength(sent)});
  *std::copy(sent.begin(), sent.end(), block.cursor) = 0;
  block.cursor += sent.size() + 1;
  block.used += sent.size() + 1;
  return block;
}

}  // namespace ventrik::encode
