// SPDX-License-Identifier: Apache-2.0
#include "messages/function_ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "messages/catalogue.h"

namespace ventrik {
namespace {

std::wstring Widen(std::string_view name) {
  return {name.begin(), name.end()};
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

TEST(FunctionIds, NumbersAreUniqueAndRise) {
  for (std::size_t i = 1; i < kCatalogue.size(); ++i) {
    EXPECT_LT(kCatalogue[i - 1].id, kCatalogue[i].id) << kCatalogue[i].name;
  }
}

TEST(FunctionIds, NamesAndNumbersRoundTrip) {
  for (const CatalogueRow& row : kCatalogue) {
    EXPECT_EQ(FunctionNumber(row.name), row.id);
    EXPECT_STREQ(FunctionName(row.id), row.name);
  }
}

TEST(FunctionIds, KnownNumbers) {
  EXPECT_EQ(FunctionNumber("REQU_INIT"), 0);
  EXPECT_EQ(FunctionNumber("RESP_GET_LIST"), 307);
  EXPECT_EQ(FunctionNumber("INFO_HEARTBEAT"), 621);
  EXPECT_EQ(FunctionNumber("RESP_STORE_DEVICE_STATUS"), 1004);
  EXPECT_EQ(FunctionNumber("CMD_PACKAGE_LOADED"), 9014);
}

TEST(FunctionIds, UnknownNumbersHaveNoName) {
  for (const std::int32_t id : {-1, 2, 13, 808, 9005, 9015, 0x7FFFFFFF}) {
    EXPECT_EQ(FunctionName(id), nullptr) << id;
  }
}

TEST(FunctionIds, OnlyWholeNamesHaveANumber) {
  for (const char* name :
       {"", "FUNC_INVALID", "REQU_INI", "REQU_INITX", "requ_init", " REQU_INIT"}) {
    EXPECT_EQ(FunctionNumber(name), -1) << name;
    EXPECT_EQ(NameToFunctionId(Widen(name)), -1) << name;
  }
}

TEST(FunctionIds, ExactlyTheseNamesAreClosedToTheFilter) {
  const std::set<std::string> expected = {
      "REQU_ADD_DATA_SRC",
      "RESP_ADD_DATA_SRC",
      "REQU_REM_DATA_SRC",
      "RESP_REM_DATA_SRC",
      "REQU_PLAY_PROMPT",
      "RESP_PLAY_PROMPT",
      "REQU_SET_VOLUME_LEVEL",
      "INFO_REQU_SET_VOLUME_LEVEL",
      "REQU_SET_SAFETY_CAMERA_AUDIO_MODE",
      "INFO_SAFETY_CAMERA_AUDIO_MODE",
      "GPS_DATA",
      "TMC_DATA",
      "SAVE_VOLTH_LOG",
      "RDSTMC_DATA",
      "CMD_STATE_PACKAGE",
      "CMD_PACKAGE_PIECE",
      "CMD_PACKAGE_END",
      "CMD_PACKAGE_LOADED",
  };
  std::set<std::string> closed;
  for (const CatalogueRow& row : kCatalogue) {
    const std::int32_t id = NameToFunctionId(Widen(row.name));
    if (id == -1) {
      closed.insert(row.name);
    } else {
      EXPECT_EQ(id, row.id) << row.name;
    }
  }
  EXPECT_EQ(closed, expected);
}

// A filter file silences the heartbeat more often than anything else.
TEST(FunctionIds, TheFilterKnowsTheHeartbeat) {
  EXPECT_EQ(NameToFunctionId(L"INFO_HEARTBEAT"), 621);
}

TEST(FunctionIds, AResponseIsItsRequestPlusOne) {
  const std::set<std::string> oddPairs = {"RESP_GET_SW_VERSION", "RESP_GET_DB_VERSION",
                                          "RESP_ROUTE_START_RECORDING"};
  std::set<std::string> unpaired;
  for (const CatalogueRow& row : kCatalogue) {
    const std::string name = row.name;
    if (!StartsWith(name, "RESP_")) continue;
    const std::int32_t request = FunctionNumber("REQU_" + name.substr(5));
    ASSERT_NE(request, -1) << name;
    if (row.id != request + 1) unpaired.insert(name);
  }
  EXPECT_EQ(unpaired, oddPairs);
}

TEST(FunctionIds, WideCharactersAreNotCutToBytes) {
  std::wstring name = L"REQU_INIT";
  name[0] = static_cast<wchar_t>(0x100 + 'R');
  EXPECT_EQ(NameToFunctionId(name), -1);
}

}  // namespace
}  // namespace ventrik
