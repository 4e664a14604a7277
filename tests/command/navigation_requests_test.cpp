// SPDX-License-Identifier: Apache-2.0
#include <map>

#include "command/command_table.h"
#include "state/process_state.h"
#include "tests/command/navigation_fixture.h"

namespace ventrik::tests {
namespace {

struct Request {
  const wchar_t* keyword;
  std::uint32_t count;        // parameters that it takes, 0 for any number
  const wchar_t* parameters;  // as they are typed
  const char* sent;
};

// Every command that sends a request, with the lists of NavigationTest::FillLists().
const Request kRequests[] = {
    {L"adac", 0, L"", "F8010000"},
    {L"adar", 0, L"", "F9010000"},
    {L"adas", 1, L"(\"on\")", "F6010000 01000000"},
    {L"addsrc", 1, L"(\"usb\")", "38010000 03000000 'usb' 00"},
    {L"audio", 1, L"(\"AudioSafetyCamera\")", "F5010000 03000000"},
    {L"begrec", 0, L"", "A0010000"},
    {L"blk", 2, L"(\"AddBlock\",\"s\")", "92010000 00000000 02000000 'NAME' 00000000 C396 'l' 00"},
    {L"connaval", 0, L"(\"1\",\"umts\")", "60020000 01000000 04000000 'umts' 00000000"},
    {L"connavail", 2, L"(\"2\",\"wlan0\")", "60020000 02000000 05000000 'wlan0' 000000"},
    {L"conninf", 0, L"(\"gprs\")", "61020000 04000000 'gprs' 00000000"},
    {L"conninfo", 1, L"(\"lte\")", "61020000 03000000 'lte' 00"},
    {L"demo", 3, L"(\"on\",\"8.5\",\"49.25\")",
     "10000000 01000000 0000000000002140 0000000000A04840"},
    {L"det", 2, L"(\"<A>1<*>\",\"s\")",
     "34010000 07000000 02000000 '<A>1<*>' 00 'NAME' 00000000 C396 'l' 00"},
    {L"device_status", 1, L"(\"/tmp\")", "EB030000 04000000 '/tmp' 00000000"},
    {L"done", 0, L"", "64000000"},
    {L"endrec", 0, L"", "A1010000"},
    {L"info", 1, L"(\"ab\")", "2C010000 02000000 'ab' 0000"},
    {L"init", 0, L"", "00000000"},
    {L"lang", 2, L"(\"LangHindi\",\"7\")", "58020000 1A000000 07000000"},
    {L"list", 6, L"(\"<A>1<*>\",\"1\",\"20\",\"farFirst\",\"s\",\"on\")",
     "32010000 07000000 01000000 14000000 08000000 02000000 01000000 "
     "'<A>1<*>' 00 'NAME' 00000000 C396 'l' 00"},
    {L"map", 1, L"(\"<ZOOM>5<*>\")", "BE020000 0A000000 '<ZOOM>5<*>' 0000"},
    {L"meas", 1, L"(\"metric\")", "03000000 08000000"},
    {L"opt", 1, L"(\"a\")", "30010000 01000000 'a' 000000"},
    {L"overlay", 1, L"(\"<SID>5<*>\")", "7D000000 09000000 '<SID>5<*>' 000000"},
    {L"playprompt", 1, L"(\"100000\")", "FB010000 A0860100"},
    {L"posdet", 2, L"(\"frequency\",\"1000\")", "CA000000 04000000 E8030000"},
    {L"rfnew", 2, L"(\"/a.trip\",\"m\")",
     "9E010000 07000000 02000000 '/a.trip' 00 02000000 10000000"},
    {L"rkill", 1, L"(\"h\")", "96010000 02000000 07000000 FFFFFFFF"},
    {L"rmsrc", 1, L"(\"card\")", "3A010000 04000000 'card' 00000000"},
    {L"rnew", 2, L"(\"d\",\"m\")",
     "94010000 02000000 02000000 'home' 00000000 02000000 'x' 000000 'yy' 0000 "
     "'work' 00000000 00000000 02000000 10000000"},
    {L"rrfac", 0, L"", "78000000"},
    {L"rswarn", 2, L"(\"valueMode\",\"130\")", "5B020000 01000000 82000000"},
    {L"savevolthlog", 1, L"(\"5\")", "2B230000 05000000"},
    {L"sci", 5, L"(\"main\",\"12\",\"-34\",\"poiData\",\"60\")",
     "BC020000 04000000 0C000000 DEFFFFFF 04000000 3C000000 'main' 00000000"},
    {L"spell", 1, L"(\"<C>\u00D6<*>\")", "2E010000 08000000 '<C>' C396 '<*>' 00000000"},
    {L"ssca", 1, L"(\"beep\")", "76020000 04000000 'beep' 00000000"},
    {L"sscm", 1, L"(\"safetyWarningsOff\")", "5D020000 00000000"},
    {L"sshot", 2, L"(\"map1\",\"a.bmp\")",
     "76000000 04000000 05000000 'map1' 00000000 'a.bmp' 000000"},
    {L"start", 1, L"(\"7\")", "98010000 07000000"},
    {L"stop", 0, L"", "99010000"},
    {L"tmca", 2, L"(\"tmcIgnore\",\"s\")",
     "29030000 02000000 02000000 'NAME' 00000000 C396 'l' 00"},
    {L"tmcdebug", 1, L"(\"EVENT\")", "2A230000 05000000 'EVENT' 00"},
    {L"tmci", 2, L"(\"tmcAvoided\",\"onChange\")", "2B030000 10000000 02000000"},
    {L"tmcm", 2, L"(\"on\",\"abc\")", "20030000 01000000 03000000"},
    {L"tmcrm", 2, L"(\"tmcDelay\",\"600\")", "22030000 04000000 58020000"},
    {L"tmctm", 2, L"(\"tmcTuningManual\",\"fm\")", "2F030000 02000000 02000000 'fm' 0000"},
    {L"update", 1, L"(\"/fs/usb\")", "E8030000 07000000 '/fs/usb' 00"},
    {L"userinput", 1, L"(\"key\")", "5F020000 03000000 'key' 00"},
    {L"verd", 0, L"", "85030000"},
    {L"vers", 0, L"", "84030000"},
    {L"volume", 1, L"(\"<VOL>30<*>\")", "62020000 0A000000 '<VOL>30<*>' 0000"},
    {L"vrloc", 1, L"(\"town\")", "36010000 04000000 'town' 00000000"},
    {L"wep", 3, L"(\"eis\",\"visible\",\"s\")",
     "74000000 03000000 04000000 02000000 'eis' 00 'NAME' 00000000 C396 'l' 00"},
};

TEST(NavigationTable, HoldsTheseCommandsWithTheseCounts) {
  std::map<std::wstring, std::uint32_t> expected;
  for (const Request& request : kRequests) expected[request.keyword] = request.count;
  ASSERT_EQ(expected.size(), 53u);
  std::map<std::wstring, std::uint32_t> found;
  const CommandRows rows = NavigationCommands();
  for (const CommandRow* row = rows.begin; row != rows.end; ++row) {
    found[row->keyword] = row->expectedCount;
  }
  EXPECT_EQ(found, expected);
}

using NavigationRequests = NavigationTest;

TEST_F(NavigationRequests, EachCommandSendsItsRequestAndPrintsNothing) {
  for (const Request& request : kRequests) {
    FillLists();
    ExpectSent({{std::wstring(request.keyword) + request.parameters, request.sent}});
  }
}

TEST_F(NavigationRequests, OnlyListWaitsForItsResponse) {
  for (const Request& request : kRequests) {
    FillLists();
    waitResponseId = 0;
    Run(std::wstring(request.keyword) + request.parameters);
    EXPECT_EQ(waitResponseId, request.keyword == std::wstring(L"list") ? 307 : 0)
        << request.keyword;
  }
}

TEST_F(NavigationRequests, CommandsWithoutACountTakeAnyNumberAndIgnoreThem) {
  ExpectSent({
      {L"adac(\"x\")", "F8010000"},
      {L"adar(\"x\",\"y\")", "F9010000"},
      {L"begrec(\"\")", "A0010000"},
      {L"done(\"x\",\"y\",\"z\",\"1\",\"2\",\"3\")", "64000000"},
      {L"endrec(\"x\")", "A1010000"},
      {L"init(\"x\")", "00000000"},
      {L"rrfac(\"x\")", "78000000"},
      {L"stop(\"x\")", "99010000"},
      {L"stop()", "99010000"},
      {L"verd(\"a\")", "85030000"},
      {L"vers(\"a\",\"b\")", "84030000"},
  });
}

TEST_F(NavigationRequests, OddityShortConnectionCommandsTakeMissingParametersAsEmpty) {
  ExpectSent({
      {L"connaval", "60020000 00000000 00000000 00000000"},
      {L"connaval()", "60020000 00000000 00000000 00000000"},
      {L"connaval(\"1\")", "60020000 01000000 00000000 00000000"},
      {L"connaval(\"-5\",\"\")", "60020000 FBFFFFFF 00000000 00000000"},
      {L"connaval(\"1\",\"abc\",\"x\")", "60020000 01000000 03000000 'abc' 00"},
      {L"conninf", "61020000 00000000 00000000"},
      {L"conninf()", "61020000 00000000 00000000"},
      {L"conninf(\"abc\",\"x\",\"y\")", "61020000 03000000 'abc' 00"},
  });
}

TEST_F(NavigationRequests, ParameterOfTheLineBeforeIsNotReadAgain) {
  Run(L"connaval(\"1\",\"umts\")");
  ExpectSent({{L"connaval", "60020000 00000000 00000000 00000000"}});
}

TEST_F(NavigationRequests, TextIsPaddedToTheNextWord) {
  ExpectSent({
      {L"spell(\"\")", "2E010000 00000000 00000000"},
      {L"spell(\"abc\")", "2E010000 03000000 'abc' 00"},
      {L"spell(\"abcd\")", "2E010000 04000000 'abcd' 00000000"},
      {L"spell(\"a b)\")", "2E010000 04000000 'a b)' 00000000"},
      {L"spell(\"\u20AC\")", "2E010000 03000000 E282AC 00"},
  });
}

TEST_F(NavigationRequests, EveryTextIsUtf8ExceptAScreenshotsFileName) {
  FillLists();
  ExpectSent({
      {L"addsrc(\"\u00E9\")", "38010000 02000000 C3A9 0000"},
      {L"connaval(\"1\",\"\u00E9\")", "60020000 01000000 02000000 C3A9 0000"},
      {L"connavail(\"1\",\"\u00E9\")", "60020000 01000000 02000000 C3A9 0000"},
      {L"conninf(\"\u00E9\")", "61020000 02000000 C3A9 0000"},
      {L"conninfo(\"\u00E9\")", "61020000 02000000 C3A9 0000"},
      {L"det(\"\u00E9\",\"s\")",
       "34010000 02000000 02000000 C3A9 0000 'NAME' 00000000 C396 'l' 00"},
      {L"device_status(\"\u00E9\")", "EB030000 02000000 C3A9 0000"},
      {L"info(\"\u00E9\")", "2C010000 02000000 C3A9 0000"},
      {L"list(\"\u00E9\",\"1\",\"2\",\"\",\"new\",\"on\")",
       "32010000 02000000 01000000 02000000 00000000 00000000 01000000 C3A9 0000"},
      {L"map(\"\u00E9\")", "BE020000 02000000 C3A9 0000"},
      {L"opt(\"\u00E9\")", "30010000 02000000 C3A9 0000"},
      {L"overlay(\"\u00E9\")", "7D000000 02000000 C3A9 0000"},
      {L"rfnew(\"\u00E9\",\"new\")", "9E010000 02000000 00000000 C3A9 0000"},
      {L"rmsrc(\"\u00E9\")", "3A010000 02000000 C3A9 0000"},
      {L"sci(\"\u00E9\",\"1\",\"2\",\"\",\"3\")",
       "BC020000 02000000 01000000 02000000 00000000 03000000 C3A9 0000"},
      {L"spell(\"\u00E9\")", "2E010000 02000000 C3A9 0000"},
      {L"ssca(\"\u00E9\")", "76020000 02000000 C3A9 0000"},
      {L"sshot(\"\u00E9\",\"\u00E9\u20AC\")", "76000000 02000000 02000000 C3A9 0000 E9 '?' 0000"},
      {L"tmcm(\"on\",\"\u00E9\")", "20030000 01000000 02000000"},
      {L"tmctm(\"tmcTuningManual\",\"\u00E9\")", "2F030000 02000000 02000000 C3A9 0000"},
      {L"update(\"\u00E9\")", "E8030000 02000000 C3A9 0000"},
      {L"userinput(\"\u00E9\")", "5F020000 02000000 C3A9 0000"},
      {L"volume(\"\u00E9\")", "62020000 02000000 C3A9 0000"},
      {L"vrloc(\"\u00E9\")", "36010000 02000000 C3A9 0000"},
      {L"wep(\"\u00E9\",\"zoom\",\"new\")", "74000000 02000000 01000000 00000000 C3A9 0000"},
  });
}

TEST_F(NavigationRequests, OddityTrafficModeSendsTheTextsUtf8LengthOnly) {
  ExpectSent({
      {L"tmcm(\"on\",\"\u00E9\u20AC\")", "20030000 01000000 05000000"},
      {L"tmcm(\"off\",\"\")", "20030000 02000000 00000000"},
  });
}

TEST_F(NavigationRequests, KeywordsAreWholeWords) {
  for (const std::wstring word : {L"connava", L"conninfos", L"tmc", L"sta", L"stopp", L"device"}) {
    Run(word + L"(\"1\")");
    EXPECT_EQ(console_.TakeTexts(), Texts{kUnknownCommand}) << word;
  }
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

TEST_F(NavigationRequests, FailedSendChangesNothingForTheCommand) {
  server_.sendResult = -1;
  FillLists();
  for (const Request& request : kRequests) {
    Run(std::wstring(request.keyword) + request.parameters);
    EXPECT_EQ(server_.TakeSent().size(), 1u) << request.keyword;
    EXPECT_EQ(Printed(), L"") << request.keyword;
    if (request.keyword == std::wstring(L"done")) FillLists();
  }
  EXPECT_EQ(waitResponseId, 307);
  EXPECT_EQ(app_.listRequested, 1);
}

TEST_F(NavigationRequests, WithoutALayerCommandsRunAndSendNothing) {
  COMMUNICATION_LAYER* const layer = communicationLayer;
  communicationLayer = nullptr;
  Run(L"init");
  Run(L"verd");
  Run(L"server(\"x\")");
  communicationLayer = layer;
  EXPECT_EQ(server_.TakeEvents(), Events{});
  EXPECT_EQ(Printed(), L"The server is changed to x.\n");
}

}  // namespace
}  // namespace ventrik::tests
