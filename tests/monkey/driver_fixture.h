// SPDX-License-Identifier: Apache-2.0
// The monkey's thread for a test: its draws are all 0, its sleeps are over at once, its clock
// stands.
#pragma once

#include <functional>
#include <string>

#include "monkey/monkey.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {

// The line before one that is sent, and in place of one that is invalid.
std::wstring Sent(const std::wstring& line);
std::wstring Invalid(const std::wstring& line);

extern const std::wstring kFinished;

// The process's own monkey as new, before and after. Its thread has ended when a test ends.
class DriverTest : public CommandFileTest {
 protected:
  DriverTest();
  ~DriverTest() override;

  // The configuration that each start reads.
  static void Configure(const std::string& file) { WriteFile("monkey_config.txt", file); }

  // Runs a line that starts the monkey, and waits until its thread has ended. Returns what was
  // printed but for the texts below.
  Texts RunToEnd(const std::wstring& line);

  // Waits until no thread is left, and sorts what was printed so far.
  Texts AwaitTheEnd();
  void CancelTheThread();

  // Calls `act` with the number of each pause from now on, 1 for the first.
  void AtPause(const std::function<void(int number)>& act);

  Texts started_;              // by the starting command, in between the thread's texts
  std::size_t itemCount_ = 0;  // texts of items that were defined

  ZeroDraws zeroes_;
  RecordedPauses pauses_;
  Monkey& monkey_;
};

}  // namespace ventrik::tests
