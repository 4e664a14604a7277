// SPDX-License-Identifier: Apache-2.0
// What requests carry for the words and numbers of a line, also for those that make no sense.
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

using NavigationWords = NavigationTest;
using NavigationNumbers = NavigationTest;

TEST_F(NavigationWords, OnIsOneAndAnythingElseIsTwo) {
  ExpectSent({
      {L"adas(\"on\")", "F6010000 01000000"},
      {L"adas(\"off\")", "F6010000 02000000"},
      {L"adas(\"ON\")", "F6010000 02000000"},
      {L"adas(\"x\")", "F6010000 02000000"},
      {L"adas(\"o\")", "F6010000 02000000"},
      {L"adas(\" on\")", "F6010000 02000000"},
      {L"adas(\"\")", "F6010000 02000000"},
      {L"tmcm(\"On\",\"a\")", "20030000 02000000 01000000"},
      {L"demo(\"off\",\"0\",\"0\")", "10000000 02000000 0000000000000000 0000000000000000"},
      {L"list(\"\",\"0\",\"0\",\"\",\"s\",\"OFF\")",
       "32010000 00000000 00000000 00000000 00000000 00000000 02000000 00000000"},
  });
}

TEST_F(NavigationWords, OddityOnwardIsOn) {
  ExpectSent({{L"adas(\"onward\")", "F6010000 01000000"},
              {L"tmcm(\"on \",\"\")", "20030000 01000000 00000000"}});
}

TEST_F(NavigationWords, EachCommandReadsTheWordsOfItsOwnTable) {
  ExpectSent({
      {L"audio(\"AudioIdle\")", "F5010000 00000000"},
      {L"audio(\"AudioAutomatic\")", "F5010000 01000000"},
      {L"lang(\"LangDansk\",\"0\")", "58020000 01000000 00000000"},
      {L"meas(\"imperialyards\")", "03000000 02000000"},
      {L"meas(\"imperialfeet\")", "03000000 04000000"},
      {L"posdet(\"once\",\"0\")", "CA000000 01000000 00000000"},
      {L"posdet(\"onChange\",\"0\")", "CA000000 02000000 00000000"},
      {L"tmca(\"tmcAvoid\",\"s\")", "29030000 01000000 00000000"},
      {L"tmci(\"\",\"once\")", "2B030000 00000000 01000000"},
      {L"tmci(\"\",\"frequency\")", "2B030000 00000000 04000000"},
      {L"tmcrm(\"tmcManual\",\"0\")", "22030000 02000000 00000000"},
      {L"tmcrm(\"tmcAutomatic\",\"0\")", "22030000 01000000 00000000"},
      {L"list(\"\",\"0\",\"0\",\"hierarchicalDescSort\",\"s\",\"on\")",
       "32010000 00000000 00000000 00000000 20000000 00000000 01000000 00000000"},
  });
}

TEST_F(NavigationWords, UnknownWordGoesOutAsItsTablesDefault) {
  ExpectSent({
      {L"audio(\"AudioManual\")", "F5010000 02000000"},
      {L"audio(\"\")", "F5010000 02000000"},
      {L"blk(\"RemoveBlock\",\"s\")", "92010000 01000000 00000000"},
      {L"meas(\"undefined\")", "03000000 01000000"},
      {L"meas(\"kilometres\")", "03000000 01000000"},
      {L"meas(\"Metric\")", "03000000 01000000"},
      {L"posdet(\"disable\",\"5\")", "CA000000 00000000 05000000"},
      {L"rswarn(\"warningsOff\",\"5\")", "5B020000 00000000 05000000"},
      {L"sscm(\"safetyWarningsOn\")", "5D020000 01000000"},
      {L"tmca(\"tmcAuto\",\"s\")", "29030000 00000000 00000000"},
      {L"tmci(\"x\",\"y\")", "2B030000 00000000 00000000"},
      {L"tmcrm(\"tmcdelay\",\"5\")", "22030000 00000000 05000000"},
      {L"tmctm(\"tmcTuningAutomatic\",\"x\")", "2F030000 01000000 01000000 'x' 000000"},
      {L"list(\"\",\"0\",\"0\",\"defaultSort\",\"s\",\"on\")",
       "32010000 00000000 00000000 00000000 00000000 00000000 01000000 00000000"},
      {L"sci(\"\",\"0\",\"0\",\"x\",\"0\")",
       "BC020000 00000000 00000000 00000000 00000000 00000000 00000000"},
      {L"wep(\"\",\"x\",\"s\")", "74000000 00000000 00000000 00000000 00000000"},
  });
}

TEST_F(NavigationWords, SeveralFlagsStandInOneParameter) {
  ExpectSent({
      {L"wep(\"\",\"zoom|visible\",\"s\")", "74000000 00000000 05000000 00000000 00000000"},
      {L"wep(\"\",\"setTemporaryItems, zoomToRouteDifferences\",\"s\")",
       "74000000 00000000 10010000 00000000 00000000"},
      {L"sci(\"\",\"0\",\"0\",\"geoCoordinate|weatherData tmcData\",\"0\")",
       "BC020000 00000000 00000000 00000000 19000000 00000000 00000000"},
      {L"tmci(\"tmcIgnoredMessages|tmcOnRoute\",\"once\")", "2B030000 21000000 01000000"},
      {L"tmci(\"tmcNonSignificent\",\"once\")", "2B030000 04000000 01000000"},
  });
}

TEST_F(NavigationNumbers, PrefixDecidesTheBaseAndTextBehindIsIgnored) {
  ExpectSent({
      {L"start(\"0x10\")", "98010000 10000000"},
      {L"start(\"0X1f\")", "98010000 1F000000"},
      {L"start(\"010\")", "98010000 08000000"},
      {L"start(\"08\")", "98010000 00000000"},
      {L"start(\"-0x10\")", "98010000 F0FFFFFF"},
      {L"start(\" +7\")", "98010000 07000000"},
      {L"start(\"12abc\")", "98010000 0C000000"},
      {L"start(\"1.9\")", "98010000 01000000"},
  });
}

TEST_F(NavigationNumbers, NoNumberIsZero) {
  ExpectSent({
      {L"start(\"\")", "98010000 00000000"},
      {L"start(\"ten\")", "98010000 00000000"},
      {L"playprompt(\"x\")", "FB010000 00000000"},
      {L"savevolthlog(\"-\")", "2B230000 00000000"},
      {L"lang(\"LangGerman\",\"x\")", "58020000 02000000 00000000"},
      {L"posdet(\"once\",\"\")", "CA000000 01000000 00000000"},
      {L"rswarn(\"valueMode\",\"fast\")", "5B020000 01000000 00000000"},
      {L"tmcrm(\"tmcDelay\",\"x\")", "22030000 04000000 00000000"},
  });
}

TEST_F(NavigationNumbers, NumberBeyond32BitsIsTheNearestThatFits) {
  ExpectSent({
      {L"start(\"2147483647\")", "98010000 FFFFFF7F"},
      {L"start(\"2147483648\")", "98010000 FFFFFF7F"},
      {L"start(\"-2147483648\")", "98010000 00000080"},
      {L"start(\"-2147483649\")", "98010000 00000080"},
      {L"start(\"0xFFFFFFFF\")", "98010000 FFFFFF7F"},
      {L"start(\"99999999999999999999\")", "98010000 FFFFFF7F"},
      {L"start(\"-99999999999999999999\")", "98010000 00000080"},
      {L"playprompt(\"4294967296\")", "FB010000 FFFFFF7F"},
      {L"savevolthlog(\"-4294967297\")", "2B230000 00000080"},
      {L"connavail(\"4294967297\",\"\")", "60020000 FFFFFF7F 00000000 00000000"},
      {L"lang(\"LangGerman\",\"4294967295\")", "58020000 02000000 FFFFFF7F"},
      {L"posdet(\"once\",\"99999999999\")", "CA000000 01000000 FFFFFF7F"},
      {L"rswarn(\"valueMode\",\"-99999999999\")", "5B020000 01000000 00000080"},
      {L"tmcrm(\"tmcDelay\",\"99999999999\")", "22030000 04000000 FFFFFF7F"},
      {L"sci(\"\",\"99999999999\",\"-99999999999\",\"\",\"2147483648\")",
       "BC020000 00000000 FFFFFF7F 00000080 00000000 FFFFFF7F 00000000"},
      {L"list(\"\",\"99999999999\",\"-99999999999\",\"\",\"s\",\"on\")",
       "32010000 00000000 FFFFFF7F 00000080 00000000 00000000 01000000 00000000"},
  });
}

TEST_F(NavigationNumbers, DemoStartsAtADoubleWithAPoint) {
  ExpectSent({
      {L"demo(\"on\",\"19.0625\",\"-47.5\")",
       "10000000 01000000 0000000000103340 0000000000C047C0"},
      {L"demo(\"on\",\"0.1\",\"1e3\")", "10000000 01000000 9A9999999999B93F 0000000000408F40"},
      {L"demo(\"on\",\"-180\",\"+90\")", "10000000 01000000 00000000008066C0 0000000000805640"},
  });
}

TEST_F(NavigationNumbers, DemoReadsNoNumberAsZeroAndStopsAtAComma) {
  ExpectSent({
      {L"demo(\"on\",\"east\",\"\")", "10000000 01000000 0000000000000000 0000000000000000"},
      {L"demo(\"on\",\"47,5\",\"8.5E\")", "10000000 01000000 0000000000804740 0000000000002140"},
  });
}

}  // namespace
}  // namespace ventrik::tests
