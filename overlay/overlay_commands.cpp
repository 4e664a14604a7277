// SPDX-License-Identifier: Apache-2.0
#include "overlay/overlay_commands.h"

#include <iterator>

#include "command/parameters.h"
#include "overlay/save_shared.h"
#include "overlay/weather_overlay_gles1_adobescreen.h"

namespace ventrik {
namespace {

WeatherOverlayBase& Screen() {
  static WeatherOverlay_Screen screen;
  return screen;
}

std::string GetSid(const OverlayArea& area) {
  return Screen().GetSID(area.lowerLeftLongitude, area.lowerLeftLatitude, area.upperRightLongitude,
                         area.upperRightLatitude);
}

void DropSid(const std::string& sid) {
  Screen().DropSid(sid.c_str());
}

void RunSaveShared(ClientApp&, CommandLine& line) {
  SaveShared(ParamUtf8(line.parameters[0]));
}

constexpr CommandRow kOverlayCommands[] = {{L"save_shared", 1, RunSaveShared, {"path"}}};

}  // namespace

const OverlayRenderer kScreenRenderer = {GetSid, DropSid};

CommandRows OverlayCommands() {
  return {std::begin(kOverlayCommands), std::end(kOverlayCommands)};
}

}  // namespace ventrik
