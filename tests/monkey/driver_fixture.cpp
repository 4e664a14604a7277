// SPDX-License-Identifier: Apache-2.0
#include "tests/monkey/driver_fixture.h"

#include "command/command_table.h"
#include "command/navigation_sequences.h"
#include "monkey/driver.h"
#include "platform/thread_start.h"
#include "state/process_state.h"
#include "tests/monkey/set_clock.h"

namespace ventrik::tests {
namespace {

constexpr int kHang = 60000;  // milliseconds

bool BeginsWith(const std::wstring& text, const std::wstring& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

void ConnectOnce() {
  static const bool connected = [] {
    ConnectCommands(MonkeyCommands());
    return true;
  }();
  static_cast<void>(connected);
}

}  // namespace

const std::wstring kFinished = L"Monkey finished.\n";

std::wstring Sent(const std::wstring& line) {
  return L"\033[1;31mCmd> \033[1;32mMONKEY:" + line + L"\033[0;37m\n";
}

std::wstring Invalid(const std::wstring& line) {
  return L"\033[1;31mcmd> \033[1;32mINVALID:" + line + L"\033[0;37m\n";
}

DriverTest::DriverTest() : monkey_(Monkey::Instance()) {
  ConnectOnce();
  Reset(monkey_);
  SetMilliClock(0);
}

DriverTest::~DriverTest() {
  CancelTheThread();
  stopRequested = 0;
  breakStall = nullptr;
  Reset(monkey_);
}

Texts DriverTest::RunToEnd(const std::wstring& line) {
  Run(line);
  return AwaitTheEnd();
}

Texts DriverTest::AwaitTheEnd() {
  EXPECT_TRUE(platform::WaitForThreads(kHang));
  Texts others;
  for (const std::wstring& text : console_.TakeTexts()) {
    if (BeginsWith(text, L"New SStringArray item is added")) {
      ++itemCount_;
    } else if (BeginsWith(text, L"Monkey started") || BeginsWith(text, L"Infinite")) {
      started_.push_back(text);
    } else {
      others.push_back(text);
    }
  }
  return others;
}

void DriverTest::CancelTheThread() {
  platform::CancelAndForget(app_.monkeyThread);
  EXPECT_TRUE(platform::WaitForThreads(kHang));
}

void DriverTest::AtPause(const std::function<void(int number)>& act) {
  pauses_.onPause = [act, number = 0](unsigned) mutable { act(++number); };
}

}  // namespace ventrik::tests
