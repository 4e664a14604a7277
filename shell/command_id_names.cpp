// SPDX-License-Identifier: Apache-2.0
#include "shell/command_id_names.h"

#include <iterator>
#include <utility>

namespace ventrik {
namespace {

constexpr std::pair<std::int32_t, const char*> kNames[] = {
    {0, "init"},
    {3, "meas"},
    {14, "start"},
    {16, "demo"},
    {100, "quit"},
    {116, "wep"},
    {118, "shot"},
    {120, "rrfac"},
    {202, "posdet"},
    {300, "info"},
    {302, "spell"},
    {304, "opt"},
    {306, "list"},
    {308, "det"},
    {310, "vrloc"},
    {312, "addsrc"},
    {314, "rmsrc"},
    {400, "REQU_GET_INCIDENTS_ON_ROUTE"},
    {402, "blk"},
    {404, "rnew"},
    {406, "rkill"},
    {408, "start"},
    {409, "stop"},
    {414, "rfnew"},
    {416, "begrec"},
    {417, "endrec"},
    {501, "audio"},
    {502, "adas"},
    {504, "adac"},
    {505, "adar"},
    {600, "lang"},
    {603, "rswarn"},
    {605, "sscm"},
    {607, "userinput"},
    {608, "requestSetDataConnectionAvailable"},
    {700, "sci"},
    {702, "map"},
    {800, "tmcm"},
    {802, "tmcrm"},
    {809, "tmca"},
    {811, "tmci"},
    {815, "tmctm"},
    {900, "vers"},
    {901, "verd"},
    {1000, "REQU_CHECK_FOR_UPDATE"},
    {9001, "GPS_DATA"},
    {9002, "TMC_DATA"},
    {9003, "SAVE_VOLTH_LOG"},
    {9004, "RDSTMC_DATA"},
    {9006, "varassign"},
    {9008, "varconcat"},
    {9010, "var"},
    {9011, "CMD_STATE_PACKAGE"},
    {9012, "CMD_PACKAGE_PIECE"},
    {9013, "CMD_PACKAGE_END"},
};

}  // namespace

std::map<std::int32_t, std::string> CommandIdNames() {
  return {std::begin(kNames), std::end(kNames)};
}

}  // namespace ventrik
