// SPDX-License-Identifier: Apache-2.0
#include "shell/command_id_names.h"

#include <gtest/gtest.h>

namespace ventrik {
namespace {

TEST(CommandIdNames, HasItsOwnNamesBesideTheCommands) {
  const auto names = CommandIdNames();
  EXPECT_EQ(names.size(), 55u);
  EXPECT_EQ(names.at(302), "spell");
  EXPECT_EQ(names.at(400), "REQU_GET_INCIDENTS_ON_ROUTE");
  EXPECT_EQ(names.at(9013), "CMD_PACKAGE_END");
  EXPECT_EQ(names.count(9014), 0u);
}

TEST(CommandIdNames, OddityStartStandsTwiceAndScreenShotIsCalledShot) {
  const auto names = CommandIdNames();
  EXPECT_EQ(names.at(14), "start");
  EXPECT_EQ(names.at(408), "start");
  EXPECT_EQ(names.at(118), "shot");
}

}  // namespace
}  // namespace ventrik
