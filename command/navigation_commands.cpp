// SPDX-License-Identifier: Apache-2.0
// The commands that stand for a request to the navigation server: keyword, how each parameter is
// converted, and the request that takes the results in this order.
//
// A command sends and returns: answers come to the listener. Errors in a parameter's value are not
// reported, because words and numbers have their defaults.
#include <cstddef>
#include <iterator>
#include <utility>

#include "command/command_table.h"
#include "command/navigation_sequences.h"
#include "command/parameters.h"
#include "messages/builders.h"
#include "messages/word_parsers.h"

namespace ventrik {
namespace {

// The conversions: what a parameter becomes, and its kind.

// Tagged text, UTF-8.
struct Eis {
  static constexpr ParameterKind kKind = "eis";
  static const char* From(ClientApp&, CommandParameter& parameter) { return ParamUtf8(parameter); }
};

// One byte for each character.
struct Narrow {
  static constexpr ParameterKind kKind = "path";
  static const char* From(ClientApp&, CommandParameter& parameter) {
    return ParamNarrow(parameter);
  }
};

struct Int {
  static constexpr ParameterKind kKind = "number";
  static std::int32_t From(ClientApp&, CommandParameter& parameter) { return ParamInt(parameter); }
};

struct Double {
  static constexpr ParameterKind kKind = "decimal";
  static double From(ClientApp&, CommandParameter& parameter) { return ParamDouble(parameter); }
};

struct OnOff {
  static constexpr ParameterKind kKind = "on/off";
  static std::int32_t From(ClientApp&, CommandParameter& parameter) {
    return ParamOnOff(parameter);
  }
};

// A word, or several flags, of one of the tables of messages/word_parsers.h.
template <std::int32_t (*parse)(const wchar_t*)>
struct Word {
  static constexpr ParameterKind kKind = {"word", parse};
  static std::int32_t From(ClientApp&, CommandParameter& parameter) {
    return parse(parameter.text.c_str());
  }
};

// The named list, created empty if there is none.

struct Strings {
  static constexpr ParameterKind kKind = "strings";
  static const SStringArray& From(ClientApp& app, CommandParameter& parameter) {
    return FindOrCreateList(app.stringArrayLists, ParamNarrow(parameter));
  }
};

struct Routes {
  static constexpr ParameterKind kKind = "modes";
  static const SRouteModeList& From(ClientApp& app, CommandParameter& parameter) {
    return FindOrCreateList(app.routeModeLists, ParamNarrow(parameter));
  }
};

struct Destinations {
  static constexpr ParameterKind kKind = "destinations";
  static const SDestinationElementList& From(ClientApp& app, CommandParameter& parameter) {
    return FindOrCreateList(app.destinationElementLists, ParamNarrow(parameter));
  }
};

template <auto request, class... Conversions, std::size_t... index>
void SendConverted([[maybe_unused]] ClientApp& app, [[maybe_unused]] CommandLine& line,
                   std::index_sequence<index...>) {
  request(Conversions::From(app, line.parameters[index])...);
}

// A parameter that isn't there counts as empty.
template <auto request, class... Conversions>
void Send(ClientApp& app, CommandLine& line) {
  constexpr std::size_t count = sizeof...(Conversions);
  if (line.parameters.size() < count) {
    line.parameters.resize(count);
    line.parameterCount = count;
  }
  SendConverted<request, Conversions...>(app, line, std::make_index_sequence<count>());
}

// A row whose command takes as many parameters as it has conversions.
template <auto request, class... Conversions>
constexpr CommandRow Request(const wchar_t* keyword) {
  return {keyword, sizeof...(Conversions), Send<request, Conversions...>, {Conversions::kKind...}};
}

// A row whose command takes any number of parameters.
template <auto request, class... Conversions>
constexpr CommandRow Lenient(const wchar_t* keyword) {
  return {keyword, 0, Send<request, Conversions...>, {Conversions::kKind...}};
}

constexpr CommandRow kNavigationCommands[] = {
    Request<send::REQU_CANCEL_ADA>(L"adac"),
    Request<send::REQU_REPEAT_ADA>(L"adar"),
    Request<send::REQU_SET_ADA, OnOff>(L"adas"),
    Request<send::REQU_ADD_DATA_SRC, Eis>(L"addsrc"),
    Request<send::REQU_PROMPT_READY, Word<ParseAudioSource>>(L"audio"),
    Request<send::REQU_ROUTE_START_RECORDING>(L"begrec"),
    Request<send::REQU_BLOCK_ROUTE, Word<ParseBlockMode>, Strings>(L"blk"),
    Lenient<send::REQU_SET_DATA_CONNECTION_AVAILABLE, Int, Eis>(L"connaval"),
    Request<send::REQU_SET_DATA_CONNECTION_AVAILABLE, Int, Eis>(L"connavail"),
    Lenient<send::REQU_SET_DATA_CONNECTION_INFO, Eis>(L"conninf"),
    Request<send::REQU_SET_DATA_CONNECTION_INFO, Eis>(L"conninfo"),
    Request<send::REQU_SET_DEMO_MODE, OnOff, Double, Double>(L"demo"),  // longitude first
    {L"det", 2, RunDet, {"eis", "strings"}},
    Request<send::REQU_STORE_DEVICE_STATUS, Eis>(L"device_status"),
    {L"done", 0, RunDone},
    Request<send::REQU_ROUTE_STOP_RECORDING>(L"endrec"),
    Request<send::REQU_GET_AVAILABLE_INFO, Eis>(L"info"),
    {L"init", 0, RunInit},
    {L"lang", 2, RunLang, {{"word", ParseLanguage}, "number"}},
    {L"list",
     6,
     RunList,
     {"eis", "number", "number", {"word", ParseSortOption}, "strings", "on/off"}},
    {L"map", 1, RunMap, {"eis"}},
    Request<send::REQU_SET_MEASUREMENT_SYSTEM, Word<ParseMeasurementSystem>>(L"meas"),
    Request<send::REQU_GET_LIST_INFO, Eis>(L"opt"),
    Request<send::REQU_MAP_OVERLAY_SURFACE, Eis>(L"overlay"),
    Request<send::REQU_PLAY_PROMPT, Int>(L"playprompt"),
    Request<send::REQU_VEH_LOC_INFO_DETAILS, Word<ParseNotificationMode>, Int>(L"posdet"),
    Request<send::REQU_NEW_TRIP_FILE, Eis, Routes>(L"rfnew"),
    {L"rkill", 1, RunRkill, {"handles"}},
    Request<send::REQU_REM_DATA_SRC, Eis>(L"rmsrc"),
    Request<send::REQU_NEW_TRIP, Destinations, Routes>(L"rnew"),
    Request<send::REQU_RESTORE_FACTORY>(L"rrfac"),
    Request<send::REQU_SET_VEH_SPEED_MODE, Word<ParseSpeedWarningMode>, Int>(L"rswarn"),
    Request<send::SAVE_VOLTH_LOG, Int>(L"savevolthlog"),
    Request<send::REQU_PICK_INFO, Eis, Int, Int, Word<ParseWorldElement>, Int>(L"sci"),
    Request<send::REQU_GET_SPELL, Eis>(L"spell"),
    Request<send::REQU_SET_SAFETY_CAMERA_AUDIO_MODE, Eis>(L"ssca"),
    Request<send::REQU_SET_SAFETY_CAMERA_MODE, Word<ParseSafetyCameraMode>>(L"sscm"),
    Request<send::REQU_SCREEN_SHOT, Eis, Narrow>(L"sshot"),
    Request<send::REQU_START_GUIDANCE, Int>(L"start"),
    Request<send::REQU_STOP_GUIDANCE>(L"stop"),
    Request<send::REQU_TMC_AVOIDS, Word<ParseTmcAvoidMode>, Strings>(L"tmca"),
    {L"tmcdebug", 1, RunTmcdebug, {"text"}},
    Request<send::REQU_TMC_SET_INFO_NOTIFICATION, Word<ParseTmcInfoFilter>,
            Word<ParseNotificationMode>>(L"tmci"),
    Request<send::REQU_SET_TMC_MODE, OnOff, Eis>(L"tmcm"),
    Request<send::REQU_SET_TMC_ROUTE_MODE, Word<ParseTmcRouteMode>, Int>(L"tmcrm"),
    Request<send::REQU_TMC_TUNING_MODE, Word<ParseTmcTuningMode>, Eis>(L"tmctm"),
    Request<send::REQU_CHECK_FOR_UPDATE, Eis>(L"update"),
    Request<send::REQU_USER_INPUT, Eis>(L"userinput"),
    Request<send::REQU_GET_DB_VERSION>(L"verd"),
    Request<send::REQU_GET_SW_VERSION>(L"vers"),
    Request<send::REQU_SET_VOLUME_LEVEL, Eis>(L"volume"),
    Request<send::REQU_RESOLVE_LOCATION, Eis>(L"vrloc"),
    Request<send::REQU_SET_WORLD_PROPERTIES, Eis, Word<ParseWorldProperty>, Strings>(L"wep"),
};

}  // namespace

CommandRows NavigationCommands() {
  return {std::begin(kNavigationCommands), std::end(kNavigationCommands)};
}

}  // namespace ventrik
