// SPDX-License-Identifier: Apache-2.0
#include "bench/message_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

#include "bench/tally.h"
#include "messages/function_ids.h"
#include "tests/messages/bytes.h"
#include "tests/messages/message_samples.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::bench {
namespace {

using std::chrono::milliseconds;

const Bytes kSpell = Hex("2E010000 0D000000 '<GEOC>Ger<*>' 00000000");

std::string Line(const Bytes& bytes, LogFormat format, Direction direction = Direction::received) {
  return LogLine({milliseconds(12'345), direction, 4711, bytes.Block()}, format);
}

TEST(LogLine, TextHasTimeDirectionClientAndFields) {
  EXPECT_EQ(Line(kSpell, LogFormat::text),
            "  12.345 <- 4711 REQU_GET_SPELL inputEIS='<GEOC>Ger<*>'\n");
  EXPECT_EQ(Line(Hex("01000000 00000000"), LogFormat::text, Direction::sent),
            "  12.345 -> 4711 RESP_INIT result=0\n");
  EXPECT_EQ(Line(Hex("00000000"), LogFormat::text), "  12.345 <- 4711 REQU_INIT\n");
}

TEST(LogLine, TextOfTheUnknownIsItsBytes) {
  EXPECT_EQ(Line(Hex("39300000 AB"), LogFormat::text), "  12.345 <- 4711 39300000AB\n");
  EXPECT_EQ(Line(Hex("01"), LogFormat::text), "  12.345 <- 4711 01\n");
}

TEST(LogLine, TextStaysOneLineWhateverItHolds) {
  EXPECT_EQ(Line(Hex("2E010000 04000000 'a' 0A1B7F 00000000"), LogFormat::text),
            "  12.345 <- 4711 REQU_GET_SPELL inputEIS='a\\x0A\\x1B\\x7F'\n");
}

TEST(LogLine, JsonHasTheSame) {
  EXPECT_EQ(Line(kSpell, LogFormat::json), R"({"ms":12345,"from":4711,"message":"REQU_GET_SPELL",)"
                                           R"("fields":{"inputEIS":"<GEOC>Ger<*>"}})"
                                           "\n");
  EXPECT_EQ(Line(Hex("39300000 AB"), LogFormat::json, Direction::sent),
            R"({"ms":12345,"to":4711,"number":12345,"hex":"39300000AB"})"
            "\n");
  EXPECT_EQ(Line(Hex("01"), LogFormat::json), R"({"ms":12345,"from":4711,"hex":"01"})"
                                              "\n");
}

TEST(LogLine, JsonReplacesWhatIsNoUtf8) {
  const auto line =
      nlohmann::json::parse(Line(Hex("2E010000 01000000 FF 000000"), LogFormat::json));
  EXPECT_EQ(line["fields"]["inputEIS"], "\uFFFD");
}

TEST(LogLine, EveryMessageIsOneLineOfValidJson) {
  for (const MessageSample& sample : AllSamples()) {
    const std::string line = Line(sample.golden, LogFormat::json);
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    EXPECT_TRUE(nlohmann::json::accept(line)) << line;
    const std::string text = Line(sample.golden, LogFormat::text);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
    EXPECT_NE(text.find(FunctionName(sample.golden.Block().Word(0))), std::string::npos) << text;
  }
}

TEST(LogLine, OfFaultsThatStrike) {
  const LoggedStrike request{milliseconds(3201), {FaultKind::unread, REQU_GET_SPELL, 4711}};
  EXPECT_EQ(LogLine(request, LogFormat::text), "   3.201 !! 4711 unread REQU_GET_SPELL\n");
  EXPECT_EQ(LogLine(request, LogFormat::json),
            "{\"ms\":3201,\"fault\":\"unread\",\"client\":4711,\"message\":\"REQU_GET_SPELL\"}\n");
  const LoggedStrike unknown{milliseconds(5), {FaultKind::lie, 12345, 4711}};
  EXPECT_EQ(LogLine(unknown, LogFormat::text), "   0.005 !! 4711 lie 12345\n");
  EXPECT_EQ(LogLine(unknown, LogFormat::json),
            "{\"ms\":5,\"fault\":\"lie\",\"client\":4711,\"number\":12345}\n");
  const LoggedStrike handshake{milliseconds(0), {FaultKind::refuse}};
  EXPECT_EQ(LogLine(handshake, LogFormat::text), "   0.000 !! - refuse\n");
  EXPECT_EQ(LogLine(handshake, LogFormat::json), "{\"ms\":0,\"fault\":\"refuse\"}\n");
}

TEST(MessageLog, WritesEachLineAtOnce) {
  const tests::TemporaryDirectory directory;
  const std::string path = directory.path() + "/log";
  MessageLog log;
  std::string error;
  ASSERT_TRUE(log.Open(path, LogFormat::text, error)) << error;
  log.Write({milliseconds(1), Direction::sent, 5, Hex("65000000").Block()});
  log.Write(LoggedStrike{milliseconds(2), {FaultKind::slow}});
  std::ifstream file(path);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
            "   0.001 -> 5 RESP_SHUTDOWN\n   0.002 !! - slow\n");
}

TEST(MessageLog, FileThatCantBeMadeIsNamed) {
  MessageLog log;
  std::string error;
  EXPECT_FALSE(log.Open("/nosuch/log", LogFormat::text, error));
  EXPECT_EQ(error, "/nosuch/log: No such file or directory");
  log.Write({milliseconds(1), Direction::sent, 5, Hex("65000000").Block()});
}

TEST(Tally, CountsEachKindBothWays) {
  Tally tally;
  EXPECT_EQ(tally.Table(), "");
  tally.Received(kSpell.Block());
  tally.Received(kSpell.Block());
  tally.Sent(Hex("01000000 00000000").Block());
  tally.Received(Hex("39300000").Block());
  tally.Received(Hex("01").Block());
  EXPECT_EQ(tally.received(), 4u);
  EXPECT_EQ(tally.sent(), 1u);
  EXPECT_EQ(tally.Table(),
            "      1 RESP_INIT                            sent           1         8 bytes\n"
            "    302 REQU_GET_SPELL                       received       2        48 bytes\n"
            "  12345 (unknown)                            received       1         4 bytes\n"
            "      - (too short for a number)             received       1         1 bytes\n");
}

TEST(Tally, ManyUnknownNumbersShareALine) {
  Tally tally;
  for (std::uint32_t number = 100'000; number < 103'000; ++number) {
    Bytes message = Hex("00000000");
    for (int i = 0; i < 4; ++i) {
      message.value[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(number >> (8 * i));
    }
    tally.Received(message.Block());
  }
  EXPECT_EQ(tally.received(), 3000u);
  const std::string table = tally.Table();
  EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1001);
  EXPECT_NE(table.find("(other unknown numbers)              received    2000      8000 bytes"),
            std::string::npos);
}

}  // namespace
}  // namespace ventrik::bench
