// SPDX-License-Identifier: Apache-2.0
// The texts of traffic messages.
#include <gtest/gtest.h>

#include <string>

#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

constexpr std::int32_t kLowest = -0x7FFFFFFF - 1;
constexpr std::int32_t kHighest = 0x7FFFFFFF;

TEST(InfoTmcMode, Only1IsOn) {
  EXPECT_EQ(TextOf(Hex("21030000 01000000")), "INFO_TMC_MODE> on\n");
  for (const std::int32_t mode : {0, 2, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("21030000") + Word(mode)), "INFO_TMC_MODE> off\n");
  }
}

std::string RouteMode(const std::string& mode, const std::string& threshold) {
  return "INFO_TMC_ROUTE_MODE> mode: " + mode +
         "\nINFO_TMC_ROUTE_MODE> delayThreshold: " + threshold + "\n";
}

TEST(InfoTmcRouteMode, EachModeHasItsName) {
  const char* const names[] = {"off", "automatic", "manual", "<invalid>", "delay"};
  for (std::int32_t mode = 0; mode < 5; ++mode) {
    EXPECT_EQ(TextOf(Hex("23030000") + Word(mode) + Word(600)), RouteMode(names[mode], "600"));
  }
}

TEST(InfoTmcRouteMode, AnyOtherModeIsInvalid) {
  for (const std::int32_t mode : {5, 6, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("23030000") + Word(mode) + Word(-7)), RouteMode("<invalid>", "-7"));
  }
}

// Each argument as it stands between its label and the line end.
std::string Available(const std::string& handles, const std::string& newEvents,
                      const std::string& deletedEvents) {
  return "INFO_TMC_ROUTES_AVAILABLE> routeHandles: " + handles +
         "\nINFO_TMC_ROUTES_AVAILABLE> tmcNewEvents:" + newEvents +
         "\nINFO_TMC_ROUTES_AVAILABLE> tmcDeletedEvents:" + deletedEvents + "\n";
}

TEST(InfoTmcRoutesAvailable, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("24030000 02000000 02000000 01000000 58000000 1F000000 FFFFFFFF "
                       "'new1' 00000000 'n2' 0000 'old' 00")),
            Available("31 -1 ", "   1. (new1)\n   2. (n2)\n", "   1. (old)\n"));
}

TEST(InfoTmcRoutesAvailable, WithoutAnythingTheLabelsStandAlone) {
  EXPECT_EQ(TextOf(Hex("24030000 00000000 00000000 00000000 FFFFFFFF")), Available("", "", ""));
}

TEST(InfoTmcRoutesAvailable, CountsThatLieEndWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("24030000 FFFFFF7F 01000000 01000000 00000000 01000000 02000000")),
            Available("1 2 ", "", ""));
  EXPECT_EQ(TextOf(Hex("24030000 FFFFFFFF FFFFFF7F 01000000 00000000 'a' 000000 'b'")),
            Available("", "   1. (a)\n   2. (b)\n", ""));
  EXPECT_EQ(TextOf(Hex("24030000 00000080 00000080 FFFFFF7F 00000000 'a' 000000 'b'")),
            Available("", "", "   1. (a)\n   2. (b)\n"));
}

TEST(InfoTmcRoutesAvailable, ManyEventsAreAllShown) {
  Bytes events;
  std::string text;
  for (int i = 1; i <= 2000; ++i) {
    const std::string event = "event" + std::to_string(i);
    events = std::move(events) + Packed(event);
    text += "   " + std::to_string(i) + ". (" + event + ")\n";
  }
  EXPECT_TRUE(TextOf(Hex("24030000 01000000 D0070000 D0070000 00000000 07000000") + events +
                     events) == Available("7 ", text, text));
}

std::string Accepted(const std::string& handle, const std::string& newEvents,
                     const std::string& deletedEvents) {
  return "INFO_TMC_ROUTE_ACCEPTED> routeHandle: " + handle +
         " \nINFO_TMC_ROUTE_ACCEPTED> tmcNewEvents:" + newEvents +
         "\nINFO_TMC_ROUTE_ACCEPTED> tmcDeletedEvents:" + deletedEvents + "\n";
}

TEST(InfoTmcRouteAccepted, ShowsAllItsFields) {
  EXPECT_EQ(TextOf(Hex("25030000 09000000 01000000 02000000 1F000000 'new' 00 'old1' 00000000 "
                       "'o2' 0000")),
            Accepted("31", "   1. (new)\n", "   1. (old1)\n   2. (o2)\n"));
}

TEST(InfoTmcRouteAccepted, ItsHandleIsThereWhateverTheFirstWordSays) {
  EXPECT_EQ(TextOf(Hex("25030000 00000000 00000000 00000000 FFFFFFFF")), Accepted("-1", "", ""));
  EXPECT_EQ(TextOf(Hex("25030000 FFFFFFFF 01000000 00000000 05000000 'a' 000000")),
            Accepted("5", "   1. (a)\n", ""));
}

TEST(InfoTmcRouteAccepted, CountsThatLieEndWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("25030000 00000000 FFFFFF7F 01000000 05000000 'a' 000000 'b'")),
            Accepted("5", "   1. (a)\n   2. (b)\n", ""));
  EXPECT_EQ(TextOf(Hex("25030000 00000000 FFFFFFFF FFFFFF7F 05000000 'a' 000000 'b'")),
            Accepted("5", "", "   1. (a)\n   2. (b)\n"));
}

TEST(InfoTmcRoutesDeleted, ShowsItsHandles) {
  EXPECT_EQ(TextOf(Hex("26030000 02000000 1F000000 FFFFFFFF")),
            "INFO_TMC_ROUTES_DELETED> routeHandles: 31 -1 \n");
  EXPECT_EQ(TextOf(Hex("26030000 00000000")), "INFO_TMC_ROUTES_DELETED> routeHandles: \n");
}

TEST(InfoTmcRoutesDeleted, CountThatLiesEndsWithTheBlock) {
  EXPECT_EQ(TextOf(Hex("26030000 FFFFFF7F 1F000000")),
            "INFO_TMC_ROUTES_DELETED> routeHandles: 31 \n");
  EXPECT_EQ(TextOf(Hex("26030000 FFFFFFFF 1F000000")), "INFO_TMC_ROUTES_DELETED> routeHandles: \n");
}

TEST(InfoTmcAvoidsChanged, IsNotRead) {
  const std::string text = "INFO_TMC_AVOIDS_CHANGED> \033[1;31mNot implemented.\n\033[0;37m";
  EXPECT_EQ(TextOf(Hex("27030000")), text);
  EXPECT_EQ(TextOf(Hex("27030000 01000000 'abc'")), text);
}

TEST(InfoTmcInfoChanged, ShowsItsNumberWithABlankBehindIt) {
  EXPECT_EQ(TextOf(Hex("2A030000 05000000")), "INFO_TMC_INFO_CHANGED> tmcInfoChanged: 5 \n");
  EXPECT_EQ(TextOf(Hex("2A030000 FFFFFFFF")), "INFO_TMC_INFO_CHANGED> tmcInfoChanged: -1 \n");
}

struct EventList {
  Bytes number;
  std::string label;
};
const EventList kEventLists[] = {
    {Hex("2C030000"), "INFO_TMC_NEW_EVENTS> tmcEvents:"},
    {Hex("2D030000"), "INFO_TMC_DEL_EVENTS> tmcEvents:"},
};

TEST(InfoTmcEvents, AreListedRightBehindTheLabel) {
  for (const EventList& list : kEventLists) {
    EXPECT_EQ(TextOf(list.number + Hex("02000000 'e1' 0000 'e2' 0000")),
              list.label + "   1. (e1)\n   2. (e2)\n");
    EXPECT_EQ(TextOf(list.number + Hex("02000000 00000000 'e2' 0000")),
              list.label + "   1. ()\n   2. (e2)\n");
  }
}

TEST(InfoTmcEvents, OddityWithoutEventsTheLabelStandsOpen) {
  for (const EventList& list : kEventLists) {
    EXPECT_EQ(TextOf(list.number + Hex("00000000")), list.label);
    EXPECT_EQ(TextOf(list.number + Hex("00000000 'e1' 0000")), list.label);
    EXPECT_EQ(TextOf(list.number + Hex("FFFFFFFF 'e1' 0000")), list.label);
    EXPECT_EQ(TextOf(list.number), list.label);
  }
}

TEST(InfoTmcEvents, CountThatLiesEndsWithTheBlock) {
  for (const EventList& list : kEventLists) {
    EXPECT_EQ(TextOf(list.number + Hex("FFFFFF7F 'e1' 0000 'e2'")),
              list.label + "   1. (e1)\n   2. (e2)\n");
  }
}

std::string Tuning(const std::string& mode, const std::string& parameters) {
  return "INFO_TMC_TUNING_MODE> tmcTuningMode: " + mode +
         "\nINFO_TMC_TUNING_MODE> tuningParameters: \"" + parameters + "\"\n";
}

TEST(InfoTmcTuningMode, ShowsBothItsFields) {
  EXPECT_EQ(TextOf(Hex("2E030000 01000000 02000000 'fm' 0000")),
            Tuning("tmcTuningAutomatic", "fm"));
  EXPECT_EQ(TextOf(Hex("2E030000 02000000 00000000 'fm' 0000")), Tuning("tmcTuningManual", ""));
}

TEST(InfoTmcTuningMode, AnyOtherModeIsManual) {
  for (const std::int32_t mode : {0, 3, -1, kLowest, kHighest}) {
    EXPECT_EQ(TextOf(Hex("2E030000") + Word(mode) + Word(0)), Tuning("tmcTuningManual", ""));
  }
}

}  // namespace
}  // namespace ventrik::tests
