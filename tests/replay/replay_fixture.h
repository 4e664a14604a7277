// SPDX-License-Identifier: Apache-2.0
// Batch logs for tests, and a replay with everything around it in the test's hands.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/command/command_fixture.h"
#include "tests/messages/bytes.h"

namespace ventrik::tests {

// A whole record as batchlog plays it, with its line feed. The payload is in the notation of Hex().
std::string Record(std::uint32_t timestamp, const std::string& payload);

// A record whose reading fails, which ends a replay in the silent pass.
extern const std::string kUnreadableRecord;
extern const std::wstring kUnreadable;
extern const std::wstring kFinished;
extern const std::wstring kStopped;
extern const std::wstring kCanNotOpen;
extern const std::wstring kPressC;

// The line of a record with a name and nothing to show, and of one with neither.
std::wstring Named(const std::wstring& time, const std::wstring& name,
                   const std::wstring& position);
std::wstring Unnamed(int id, const std::wstring& position);

// The same texts, with the clock's reading behind an announced delay cut off.
Texts WithoutTicks(Texts texts);

// Every word of the replay as at the start, before and after, and a working directory and a
// standard input of its own, where nothing has been typed.
class ReplayTest : public CommandFileTest {
 protected:
  ReplayTest();
  ~ReplayTest() override;

  // Writes the file and plays it.
  void Play(const std::string& log, double speed = 1.0, std::int32_t pauseMinutes = 0);

  Texts PrintedTexts() { return WithoutTicks(console_.TakeTexts()); }

  void Type(const std::string& text) const;
  // What has been typed and not been read.
  std::string LeftInInput() const;

 private:
  int input_[2];
  const int inputBefore_;
};

}  // namespace ventrik::tests
