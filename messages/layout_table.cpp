// SPDX-License-Identifier: Apache-2.0
#include "messages/layout_table.h"

#include <algorithm>

#include "messages/catalogue.h"

namespace ventrik {
namespace {

// ORDER FunctionId.
constexpr MessageLayout kLayouts[] = {
    // General.
    {REQU_INIT, ""},
    {RESP_INIT, "result:word"},
    {REQU_SET_MEASUREMENT_SYSTEM, "measurementSystem:word"},
    {REQU_SET_APPEARANCE_STYLE, "body:bytes"},
    {REQU_START_ROUTE, "body:bytes"},
    {REQU_STOP_ROUTE, "body:bytes"},
    {REQU_SET_DEMO_MODE, "onOff:word longitude:double latitude:double"},
    {INFO_DEMO_MODE_STATE, "state:word"},
    {INFO_MEASUREMENT_SYSTEM, "measurementSystem:word"},
    {INFO_APPEARANCE_STYLE, "body:bytes"},

    // System.
    {REQU_SHUTDOWN, ""},
    {RESP_SHUTDOWN, ""},
    {REQU_SET_WORLD_PROPERTIES, "inputEIS:text worldProperties:word items:strings"},
    {RESP_SET_WORLD_PROPERTIES,
     "inputEIS:string validState:word worldElements:word itemList:strings"},
    {REQU_SCREEN_SHOT, "map:text filename:text"},
    {RESP_SCREEN_SHOT, "map:text validState:word filename:text"},
    {REQU_RESTORE_FACTORY, ""},
    {RESP_RESTORE_FACTORY, ""},
    {INFO_MAP_OVERLAY_AREA, "eis:string"},
    {REQU_MAP_OVERLAY_SURFACE, "eis:text"},
    {INFO_MAP_OVERLAY_SURFACE_INVALID, "eis:string"},

    // Position.
    {REQU_VEH_LOC_INFO_DETAILS, "notificationMode:word number:word"},
    {INFO_VEH_LOC_INFO_DETAILS, "posInfo:string"},

    // Search and lists.
    {REQU_GET_AVAILABLE_INFO, "inputEIS:text"},
    {RESP_GET_AVAILABLE_INFO, "inputEIS:string availableTypesEIS:string"},
    {REQU_GET_SPELL, "inputEIS:text"},
    {RESP_GET_SPELL,
     "inputEIS:string validState:word nextAvailableCharacters:string offeredCharacters:string "
     "count:word isFullMatch:word"},
    {REQU_GET_LIST_INFO, "inputEIS:text"},
    {RESP_GET_LIST_INFO,
     "inputEIS:string validState:word sortOptions:words fieldOptions:strings outputEIS:string"},
    {REQU_GET_LIST,
     "inputEIS:text startIndex:word resultCount:word sortOption:word fieldNames:strings "
     "onOff:word"},
    {RESP_GET_LIST,
     "inputEIS:string validState:word startIndex:word resultCount:word word5:word "
     "fieldOptions:strings itemList:strings outputEIS:string completeState:word"},
    {REQU_GET_DETAILS, "inputEIS:text fieldNames:strings"},
    {RESP_GET_DETAILS, "inputEIS:string validState:word requestedFields:strings outputEIS:string"},
    {REQU_RESOLVE_LOCATION, "inputEIS:text"},
    {RESP_RESOLVE_LOCATION,
     "inputEIS:string validState:word outputEIS:string ambiguity:word ambiguityType:string "
     "unresolvedElements:string"},
    {REQU_ADD_DATA_SRC, "inputEIS:text"},
    {RESP_ADD_DATA_SRC, "inputEIS:string validState:word"},
    {REQU_REM_DATA_SRC, "inputEIS:text"},
    {RESP_REM_DATA_SRC, "inputEIS:string validState:word"},

    // Route and guidance.
    {REQU_GET_INCIDENTS_ON_ROUTE, "body:bytes"},
    {INFO_GET_INCIDENTS_ON_ROUTE, "body:bytes"},
    {REQU_BLOCK_ROUTE, "mode:word items:strings"},
    {RESP_BLOCK_ROUTE, "word1:word blockedItems:strings validState:word"},
    {REQU_NEW_TRIP, "destinations:destinations routeModes:words"},
    {RESP_NEW_TRIP, "destinations:destinationSum routeModes:words validState:word handles:words"},
    {REQU_KILL_TRIP, "handles:words"},
    {RESP_KILL_TRIP, "handles:words"},
    {REQU_START_GUIDANCE, "routeHandle:word"},
    {REQU_STOP_GUIDANCE, ""},
    {INFO_ACTIVE_ROUTE_DESC, "routeDesc1:word routeDesc2:word routeDesc3:word"},
    {INFO_NEXT_MAN_INFO,
     "time:word distance:word nextManInfo1:byte nextManInfo2:word nextManInfo3:word"},
    {INFO_NEXT_DEST_INFO, "nextDestInfo1:word nextDestInfo2:word"},
    {INFO_CALC_STATE, "routeHandle:word calcState:word calcPercent:word"},
    {REQU_NEW_TRIP_FILE, "path:text routeModes:words"},
    {RESP_NEW_TRIP_FILE, "pathEIS:string routeModes:words validState:word handles:words"},
    {REQU_ROUTE_START_RECORDING, ""},
    {REQU_ROUTE_STOP_RECORDING, ""},
    {RESP_ROUTE_START_RECORDING, "validState:word"},
    {INFO_ROUTE_RECORDING_ACTIVE, "routeRecordingActive:word"},
    {INFO_ROUTE_RECORDING_COMPLETE, "detailsEIS:string"},
    {INFO_DESTINATION_REACHED, "dest:string element:word total:word"},
    {INFO_LANE_INFORMATION, "detailsEIS:string"},

    // Audio.
    {INFO_PROMPT_READY, "audioSource:word"},
    {REQU_PROMPT_READY, "audioSource:word"},
    {REQU_SET_ADA, "onOff:word"},
    {INFO_ADA_IS_ENABLED, "isEnabled:word"},
    {REQU_CANCEL_ADA, ""},
    {REQU_REPEAT_ADA, ""},
    {INFO_ACTIVE_AUDIO_SRC, "audioSource:word"},
    {REQU_PLAY_PROMPT, "prompt:word"},
    {RESP_PLAY_PROMPT, "prompt:word validState:word"},

    // Settings.
    {REQU_SET_LANGUAGE, "language:word number:word"},
    {INFO_LANGUAGE_INFO, "language:word number:word"},
    {INFO_HIGHWAYMODE_UPDATE, "state:word"},
    {REQU_SET_VEH_SPEED_MODE, "mode:word speed:word"},
    {INFO_VEH_SPEED_MODE, "mode:word speed:word"},
    {REQU_SET_SAFETY_CAMERA_MODE, "mode:word"},
    {INFO_SAFETY_CAMERA_MODE, "mode:word"},
    {REQU_USER_INPUT, "eis:text"},
    {REQU_SET_DATA_CONNECTION_AVAILABLE, "available:word text:text"},
    {REQU_SET_DATA_CONNECTION_INFO, "eis:text"},
    {REQU_SET_VOLUME_LEVEL, "eis:text"},
    {INFO_REQU_SET_VOLUME_LEVEL, "text:string"},
    {INFO_HEARTBEAT, ""},
    {REQU_SET_SAFETY_CAMERA_AUDIO_MODE, "inputEIS:text"},
    {INFO_SAFETY_CAMERA_AUDIO_MODE, "inputEIS:string state:word"},

    // Map.
    {REQU_PICK_INFO, "mapEIS:text x:word y:word worldElements:word radius:word"},
    {RESP_PICK_INFO,
     "mapEIS:string xCoordinate:word yCoordinate:word xWorldCoordinate:double "
     "yWorldCoordinate:double worldElements:word radius:word pickInfo:strings word11:word"},
    {REQU_MAP_CONTROLS, "mapControls:text"},
    {RESP_MAP_CONTROLS, "mapControls:string validState:word"},

    // Traffic messages.
    {REQU_SET_TMC_MODE, "onOff:word text:length"},
    {INFO_TMC_MODE, "mode:word"},
    {REQU_SET_TMC_ROUTE_MODE, "mode:word delayThreshold:word"},
    {INFO_TMC_ROUTE_MODE, "mode:word delayThreshold:word"},
    {INFO_TMC_ROUTES_AVAILABLE,
     "routeHandles:words tmcNewEvents:strings tmcDeletedEvents:strings word4:word"},
    {INFO_TMC_ROUTE_ACCEPTED,
     "word1:word tmcNewEvents:strings tmcDeletedEvents:strings routeHandle:word"},
    {INFO_TMC_ROUTES_DELETED, "routeHandles:words"},
    {INFO_TMC_AVOIDS_CHANGED, "body:bytes"},
    {REQU_TMC_AVOIDS, "mode:word events:strings"},
    {INFO_TMC_INFO_CHANGED, "tmcInfoChanged:word"},
    {REQU_TMC_SET_INFO_NOTIFICATION, "infoFilter:word notificationMode:word"},
    {INFO_TMC_NEW_EVENTS, "tmcEvents:strings"},
    {INFO_TMC_DEL_EVENTS, "tmcEvents:strings"},
    {INFO_TMC_TUNING_MODE, "tmcTuningMode:word tuningParameters:string"},
    {REQU_TMC_TUNING_MODE, "tmcTuningMode:word tuningParameters:text"},

    // Versions and update.
    {REQU_GET_SW_VERSION, ""},
    {REQU_GET_DB_VERSION, ""},
    {RESP_GET_SW_VERSION, "swVersion:string"},
    {RESP_GET_DB_VERSION, "dbVersion:string"},
    {REQU_CHECK_FOR_UPDATE, "updatePath:text"},
    {RESP_CHECK_FOR_UPDATE, "path:text result:word update:word delete:strings copy:strings"},
    {INFO_UPDATE_PROGRESS, "updatePath:string percent:word"},
    {REQU_STORE_DEVICE_STATUS, "path:text"},
    {RESP_STORE_DEVICE_STATUS, "path:text result:word"},

    // The tester's own block.
    {GPS_DATA, "body:bytes"},
    {TMC_DATA, "text:bareText"},
    {SAVE_VOLTH_LOG, "number:word"},
    {RDSTMC_DATA, "body:bytes"},
    {CMD_STATE_PACKAGE, "body:bytes"},
    {CMD_PACKAGE_PIECE, "body:bytes"},
    {CMD_PACKAGE_END, "body:bytes"},
    {CMD_PACKAGE_LOADED, ""},
};

constexpr bool TableIsSound() {
  std::size_t row = 0;
  for (const MessageLayout& layout : kLayouts) {
    if (layout.id != kCatalogue[row++].id || !layout.rowFits) return false;
    for (std::size_t i = 0; i < layout.count; ++i) {
      if (layout.fields[i].kind == FieldKind::Unknown) return false;
    }
  }
  return true;
}
static_assert(sizeof kLayouts / sizeof kLayouts[0] == kCatalogue.size(),
              "one row for each message of the catalogue");
static_assert(TableIsSound(), "same order as the catalogue, known kinds, no more than kMostFields");

}  // namespace

const MessageLayout* FindLayout(std::int32_t id) {
  const auto* found = std::find_if(std::begin(kLayouts), std::end(kLayouts),
                                   [id](const MessageLayout& layout) { return layout.id == id; });
  return found == std::end(kLayouts) ? nullptr : found;
}

}  // namespace ventrik
