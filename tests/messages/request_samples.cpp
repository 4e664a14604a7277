// SPDX-License-Identifier: Apache-2.0
#include "tests/messages/message_samples.h"

#include <memory>

#include "messages/encoders.h"

namespace ventrik {
namespace {

SStringArray Strings(std::vector<std::string> items) {
  return {std::move(items)};
}

SDestinationElement Destination(std::string text, std::vector<std::string> attributes) {
  return {std::move(text), std::make_shared<SStringArray>(Strings(std::move(attributes)))};
}

std::vector<RequestSample> FixedRecords() {
  return {
      {Wire(encode::REQU_INIT()), Hex("00000000"), ""},
      {Wire(encode::REQU_SHUTDOWN()), Hex("64000000"), ""},
      {Wire(encode::REQU_RESTORE_FACTORY()), Hex("78000000"), ""},
      {Wire(encode::REQU_STOP_GUIDANCE()), Hex("99010000"), ""},
      {Wire(encode::REQU_ROUTE_START_RECORDING()), Hex("A0010000"), ""},
      {Wire(encode::REQU_ROUTE_STOP_RECORDING()), Hex("A1010000"), ""},
      {Wire(encode::REQU_CANCEL_ADA()), Hex("F8010000"), ""},
      {Wire(encode::REQU_REPEAT_ADA()), Hex("F9010000"), ""},
      {Wire(encode::REQU_GET_SW_VERSION()), Hex("84030000"), ""},
      {Wire(encode::REQU_GET_DB_VERSION()), Hex("85030000"), ""},
      {Wire(encode::REQU_SET_MEASUREMENT_SYSTEM(8)), Hex("03000000 08000000"),
       "measurementSystem=8"},
      {Wire(encode::REQU_START_GUIDANCE(-2)), Hex("98010000 FEFFFFFF"), "routeHandle=-2"},
      {Wire(encode::REQU_PROMPT_READY(3)), Hex("F5010000 03000000"), "audioSource=3"},
      {Wire(encode::REQU_SET_ADA(1)), Hex("F6010000 01000000"), "onOff=1"},
      {Wire(encode::REQU_PLAY_PROMPT(100000)), Hex("FB010000 A0860100"), "prompt=100000"},
      {Wire(encode::REQU_SET_SAFETY_CAMERA_MODE(0)), Hex("5D020000 00000000"), "mode=0"},
      {Wire(encode::SAVE_VOLTH_LOG(5)), Hex("2B230000 05000000"), "number=5"},
      {Wire(encode::REQU_VEH_LOC_INFO_DETAILS(4, 1000)), Hex("CA000000 04000000 E8030000"),
       "notificationMode=4 number=1000"},
      {Wire(encode::REQU_SET_LANGUAGE(2, 7)), Hex("58020000 02000000 07000000"),
       "language=2 number=7"},
      {Wire(encode::REQU_SET_VEH_SPEED_MODE(1, 130)), Hex("5B020000 01000000 82000000"),
       "mode=1 speed=130"},
      {Wire(encode::REQU_SET_TMC_ROUTE_MODE(4, 600)), Hex("22030000 04000000 58020000"),
       "mode=4 delayThreshold=600"},
      {Wire(encode::REQU_TMC_SET_INFO_NOTIFICATION(33, 2)), Hex("2B030000 21000000 02000000"),
       "infoFilter=33 notificationMode=2"},
      {Wire(encode::REQU_SET_TMC_MODE(1, "abc")), Hex("20030000 01000000 03000000"),
       "onOff=1 text=3"},
      {Wire(encode::REQU_SET_DEMO_MODE(1, 19.0625, -47.5)),
       Hex("10000000 01000000 00000000 00103340 00000000 00C047C0"),
       "onOff=1 longitude=19.0625 latitude=-47.5"},
  };
}

std::vector<RequestSample> OneText() {
  return {
      {Wire(encode::REQU_MAP_OVERLAY_SURFACE("<SID>5<*>")),
       Hex("7D000000 09000000 '<SID>5<*>' 000000"), "eis='<SID>5<*>'"},
      {Wire(encode::REQU_GET_AVAILABLE_INFO("ab")), Hex("2C010000 02000000 'ab' 0000"),
       "inputEIS='ab'"},
      {Wire(encode::REQU_GET_SPELL("abc")), Hex("2E010000 03000000 'abc' 00"), "inputEIS='abc'"},
      {Wire(encode::REQU_GET_LIST_INFO("abcd")), Hex("30010000 04000000 'abcd' 00000000"),
       "inputEIS='abcd'"},
      {Wire(encode::REQU_RESOLVE_LOCATION("abcde")), Hex("36010000 05000000 'abcde' 000000"),
       "inputEIS='abcde'"},
      {Wire(encode::REQU_ADD_DATA_SRC("usb")), Hex("38010000 03000000 'usb' 00"), "inputEIS='usb'"},
      {Wire(encode::REQU_REM_DATA_SRC("card")), Hex("3A010000 04000000 'card' 00000000"),
       "inputEIS='card'"},
      {Wire(encode::REQU_USER_INPUT("key")), Hex("5F020000 03000000 'key' 00"), "eis='key'"},
      {Wire(encode::REQU_SET_DATA_CONNECTION_INFO("wlan0")),
       Hex("61020000 05000000 'wlan0' 000000"), "eis='wlan0'"},
      {Wire(encode::REQU_SET_VOLUME_LEVEL("")), Hex("62020000 00000000 00000000"), "eis=''"},
      {Wire(encode::REQU_SET_SAFETY_CAMERA_AUDIO_MODE("beep")),
       Hex("76020000 04000000 'beep' 00000000"), "inputEIS='beep'"},
      {Wire(encode::REQU_MAP_CONTROLS("<MID>m<*>")), Hex("BE020000 09000000 '<MID>m<*>' 000000"),
       "mapControls='<MID>m<*>'"},
      {Wire(encode::REQU_CHECK_FOR_UPDATE("/fs/usb")), Hex("E8030000 07000000 '/fs/usb' 00"),
       "updatePath='/fs/usb'"},
      {Wire(encode::REQU_STORE_DEVICE_STATUS("/tmp")), Hex("EB030000 04000000 '/tmp' 00000000"),
       "path='/tmp'"},
  };
}

std::vector<RequestSample> WordsAndTexts() {
  return {
      {Wire(encode::REQU_SET_DATA_CONNECTION_AVAILABLE(1, "umts")),
       Hex("60020000 01000000 04000000 'umts' 00000000"), "available=1 text='umts'"},
      {Wire(encode::REQU_TMC_TUNING_MODE(2, "fm")), Hex("2F030000 02000000 02000000 'fm' 0000"),
       "tmcTuningMode=2 tuningParameters='fm'"},
      {Wire(encode::REQU_SCREEN_SHOT("map1", "shot7")),
       Hex("76000000 04000000 05000000 'map1' 00000000 'shot7' 000000"),
       "map='map1' filename='shot7'"},
      {Wire(encode::REQU_PICK_INFO("main", 12, -34, 5, 60)),
       Hex("BC020000 04000000 0C000000 DEFFFFFF 05000000 3C000000 'main' 00000000"),
       "mapEIS='main' x=12 y=-34 worldElements=5 radius=60"},
  };
}

std::vector<RequestSample> Lists() {
  return {
      {Wire(encode::REQU_SET_WORLD_PROPERTIES("eis", 5, Strings({"a", "bcde"}))),
       Hex("74000000 03000000 05000000 02000000 'eis' 00 'a' 000000 'bcde' 00000000"),
       "inputEIS='eis' worldProperties=5 items=['a', 'bcde']"},
      {Wire(encode::REQU_GET_DETAILS("eis4", Strings({"NAME", "GEO"}))),
       Hex("34010000 04000000 02000000 'eis4' 00000000 'NAME' 00000000 'GEO' 00"),
       "inputEIS='eis4' fieldNames=['NAME', 'GEO']"},
      {Wire(encode::REQU_GET_DETAILS("eis", Strings({}))),
       Hex("34010000 03000000 00000000 'eis' 00"), "inputEIS='eis' fieldNames=[]"},
      {Wire(encode::REQU_GET_LIST("<IFT>HWM<*><EXT><*>", 1, 3, 0, Strings({"Default"}), 2)),
       Hex("32010000 13000000 01000000 03000000 00000000 01000000 02000000 '<IFT>HWM<*><EXT><*>' "
           "00 'Default' 00"),
       "inputEIS='<IFT>HWM<*><EXT><*>' startIndex=1 resultCount=3 sortOption=0 "
       "fieldNames=['Default'] onOff=2"},
      {Wire(encode::REQU_TMC_AVOIDS(2, Strings({"e1", "", "e3"}))),
       Hex("29030000 02000000 03000000 'e1' 0000 00000000 'e3' 0000"),
       "mode=2 events=['e1', '', 'e3']"},
      {Wire(encode::REQU_BLOCK_ROUTE(0, Strings({"road"}))),
       Hex("92010000 00000000 01000000 'road' 00000000"), "mode=0 items=['road']"},
      {Wire(encode::REQU_KILL_TRIP({{7, -1, 300}})),
       Hex("96010000 03000000 07000000 FFFFFFFF 2C010000"), "handles=[7, -1, 300]"},
      {Wire(encode::REQU_NEW_TRIP_FILE("/a.trip", {{1, 512}})),
       Hex("9E010000 07000000 02000000 '/a.trip' 00 01000000 00020000"),
       "path='/a.trip' routeModes=[1, 512]"},
      {Wire(encode::REQU_NEW_TRIP({{Destination("home", {"x", "yy"}), Destination("work", {})}},
                                  {{2}})),
       Hex("94010000 02000000 01000000 'home' 00000000 02000000 'x' 000000 'yy' 0000 'work' "
           "00000000 00000000 02000000"),
       "destinations=['home'('x', 'yy'), 'work'()] routeModes=[2]"},
      {Wire(encode::REQU_NEW_TRIP({}, {})), Hex("94010000 00000000 00000000"),
       "destinations=[] routeModes=[]"},
      {Wire(encode::TMC_DATA("EVENT")), Hex("2A230000 05000000 'EVENT' 00"), "text='EVENT'"},
  };
}

}  // namespace

std::vector<RequestSample> RequestSamples() {
  std::vector<RequestSample> samples;
  for (auto* part : {FixedRecords, OneText, WordsAndTexts, Lists}) {
    for (RequestSample& sample : part()) samples.push_back(std::move(sample));
  }
  return samples;
}

}  // namespace ventrik
