// SPDX-License-Identifier: Apache-2.0
#include "tests/replay/replay_fixture.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "monkey/monkey.h"
#include "replay/batchlog.h"
#include "state/process_state.h"

namespace ventrik::tests {
namespace {

void ResetReplay() {
  stopBatchlog = 0;
  packagePhase = 0;
  livePhase = 0;
  packageResume = 0;
  Monkey::Instance().monkeyRunning = 0;
}

std::string Digits(const char* format, std::uint32_t number) {
  char text[9];
  std::snprintf(text, sizeof text, format, number);
  return text;
}

}  // namespace

const std::string kUnreadableRecord = "0000000000000001gg\n";
const std::wstring kUnreadable = L"Error, can't read 2*1 bytes, file must be corrupt (at pos ";
const std::wstring kFinished = L"Batchlog finished\n";
const std::wstring kStopped = L"Batchlog stopped\n";
const std::wstring kCanNotOpen = ErrorText(L"Can not open file!");
const std::wstring kPressC = L"Press the \"c\" key to continue";

std::string Record(std::uint32_t timestamp, const std::string& payload) {
  const Bytes bytes = Hex(payload);
  std::string record = Digits("%08X", timestamp);
  record += Digits("%08X", static_cast<std::uint32_t>(bytes.value.size()));
  for (const std::uint8_t byte : bytes.value) record += Digits("%02X", byte);
  return record + "\n";
}

std::wstring Named(const std::wstring& time, const std::wstring& name,
                   const std::wstring& position) {
  return L"Cmd>" + time + L" \033[1;32m " + name + L"(\"\") ... \033[0;37mpos: " + position +
         L"  \n";
}

std::wstring Unnamed(int id, const std::wstring& position) {
  return L"Cmd>\033[1;32m command id is: " + std::to_wstring(id) + L"(\"\") ... \033[0;37mpos: " +
         position + L"  \n";
}

Texts WithoutTicks(Texts texts) {
  for (std::wstring& text : texts) {
    if (text.rfind(L"delay ", 0) == 0) text.resize(text.rfind(L"tick ") + 5);
  }
  return texts;
}

ReplayTest::ReplayTest() : inputBefore_(dup(STDIN_FILENO)) {
  ResetReplay();
  EXPECT_EQ(pipe(input_), 0);
  dup2(input_[0], STDIN_FILENO);
}

ReplayTest::~ReplayTest() {
  dup2(inputBefore_, STDIN_FILENO);
  for (const int end : {inputBefore_, input_[0], input_[1]}) close(end);
  ResetReplay();
}

void ReplayTest::Play(const std::string& log, double speed, std::int32_t pauseMinutes) {
  WriteFile("played.log", log);
  RunBatchlog(app_, "played.log", speed, pauseMinutes);
}

void ReplayTest::Type(const std::string& text) const {
  EXPECT_EQ(write(input_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

std::string ReplayTest::LeftInInput() const {
  char text[64];
  fcntl(input_[0], F_SETFL, O_NONBLOCK);
  const ssize_t count = read(input_[0], text, sizeof text);
  return count > 0 ? std::string(text, static_cast<std::size_t>(count)) : "";
}

}  // namespace ventrik::tests
