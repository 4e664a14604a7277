// SPDX-License-Identifier: Apache-2.0
#include "replay/batchlog.h"

#include <time.h>
#include <unistd.h>

#include <memory>

#include "console/press_c.h"
#include "console/utf8.h"
#include "messages/block_cursor.h"
#include "messages/builders.h"
#include "messages/function_ids.h"
#include "messages/milli_clock.h"
#include "monkey/monkey.h"
#include "replay/display_line.h"
#include "replay/log_file.h"
#include "replay/pace.h"
#include "replay/record_reader.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::uint32_t kMillisecondsPerMinute = 60'000;
constexpr unsigned kPackagePoll = 10'000;  // microseconds between looks at packagePhase

// Texts of responses wait while a line is shown, also if the thread ends on the way.
class OutputHolder {
 public:
  OutputHolder() { holdOutput = 1; }
  ~OutputHolder() { holdOutput = 0; }
  OutputHolder(const OutputHolder&) = delete;
  OutputHolder& operator=(const OutputHolder&) = delete;
};

bool IsWhole(const HexField& field) {
  return field.result == static_cast<int>(kFieldLength);
}

bool IsPackageRecord(std::int32_t id) {
  return id == CMD_STATE_PACKAGE || id == CMD_PACKAGE_PIECE || id == CMD_PACKAGE_END;
}

// In one piece, so that a long delay is no later than a short one. A signal cuts it short. A
// cancellation point.
void Sleep(std::uint32_t milliseconds) {
  timespec duration = {};
  duration.tv_sec = static_cast<time_t>(milliseconds / 1000);
  duration.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
  nanosleep(&duration, nullptr);
}

class Replay {
 public:
  Replay(ClientApp& app, LogFile& file, double speed, std::int32_t pauseMinutes)
      : app_(app), file_(file), speed_(speed), pauseMinutes_(pauseMinutes) {}

  void Run() {
    ReadFirstTimestamp();
    pauseLimit_ = first_ + static_cast<std::uint32_t>(pauseMinutes_) * kMillisecondsPerMinute;
    stopBatchlog = 0;
    while (!file_.IsAtEnd() && !stopBatchlog) {
      if (packagePhase && livePhase) {
        usleep(kPackagePoll);  // the listener clears packagePhase
      } else if (!PlayRecord() || !GoToNextRecord()) {
        return;
      }
    }
  }

 private:
  HexField ReadField() { return ParseHexField(file_.Read(kFieldLength)); }

  // Oddity: whatever stands there, it is taken for a timestamp.
  void ReadFirstTimestamp() {
    first_ = ReadField().value;
    current_ = next_ = first_;
  }

  // Each returns false at the end of the replay.

  bool PlayRecord() {
    const HexField length = ReadField();
    if (!IsWhole(length)) {
      logger->print(L"GnLog to batchlog converter has missed something");
      return false;
    }
    if (length.endsInNul && !isObsolete_) {
      logger->print(L"The log is obsoleted");
      isObsolete_ = true;
    }
    if (!ReadPayload(length.value)) return false;
    const OutputHolder held;
    const std::int32_t id = ReceivedBlock{payload_.bytes.data(), 4}.Word(0);
    EnterPhases(id);
    Decide(id, length.value);
    return true;
  }

  bool ReadPayload(std::uint32_t length) {
    const std::uint64_t characters = std::uint64_t{2} * length;
    if (characters > kMostHexCharacters) {
      logger->print(
          L"Error, can't read 2*%u bytes, file must be corrupt or ventrik needs upgrade (at pos "
          L"0x%x)",
          length, FilePosition());
      return false;
    }
    const int result = ParseHexBytes(file_.Read(static_cast<std::size_t>(characters)), payload_);
    // Oddity: compared unsigned, so that a payload with a wrong digit in it passes.
    if (static_cast<std::uint32_t>(result) < length) {
      logger->print(L"Error, can't read 2*%u bytes, file must be corrupt (at pos 0x%x)", length,
                    FilePosition());
      return false;
    }
    position_ += 2 * kFieldLength;
    payloadPosition_ = position_;
    position_ += static_cast<std::uint32_t>(characters);
    return true;
  }

  void EnterPhases(std::int32_t id) {
    if (id == CMD_STATE_PACKAGE && !livePhase) {
      packagePhase = 1;
      packageResume = FilePosition();
    }
    if (id == CMD_PACKAGE_END && packagePhase) livePhase = 1;
  }

  void Decide(std::int32_t id, std::uint32_t length) {
    const bool package = packagePhase != 0;
    const bool live = livePhase != 0;
    if (package && live) {
      file_.Seek(packageResume);
    } else if (live ? !IsPackageRecord(id)
                    : package && IsPackageRecord(id) && id != CMD_PACKAGE_END) {
      Send(length);
    }
  }

  void Send(std::uint32_t length) {
    const std::string line =
        DisplayLine({payload_, length, next_ - first_, payloadPosition_}, app_.commandIdNames);
    const CommandLockHolder hold;
    logger->print(L"%ls\n", Utf8ToWide(line).c_str());
    send::SendRaw(payload_.bytes.data(), length);
  }

  bool GoToNextRecord() {
    SkipLineFeed();
    if (isObsolete_) SkipExtraField();
    const HexField timestamp = ReadField();
    if (!IsWhole(timestamp) || file_.IsAtEnd()) return BeginLivePass();
    next_ = timestamp.value;
    Wait();
    current_ = next_;
    PauseOnce();
    return true;
  }

  void SkipLineFeed() {
    if (file_.Skip('\n')) ++position_;
  }

  void SkipExtraField() {
    ReadField();
    position_ += kFieldLength;
    SkipLineFeed();
  }

  bool BeginLivePass() {
    if (packagePhase || livePhase) return false;
    livePhase = 1;
    file_.Seek(0);
    ReadFirstTimestamp();
    return true;
  }

  void Wait() {
    const ReplayDelay delay = DelayBetween(current_, next_, speed_);
    if (delay.isAnnounced) {
      logger->print(L"delay %d ms  tick %u\n", static_cast<int>(delay.milliseconds), MilliClock());
    }
    if (packagePhase || livePhase) Sleep(delay.milliseconds);
  }

  void PauseOnce() {
    if (pauseMinutes_ == 0 || next_ <= pauseLimit_ || Monkey::Instance().monkeyRunning) return;
    AskForC();
    pauseMinutes_ = 0;
  }

  std::uint32_t FilePosition() const { return static_cast<std::uint32_t>(file_.Position()); }

  ClientApp& app_;
  LogFile& file_;
  const double speed_;
  std::int32_t pauseMinutes_;  // 0 once the pause has been made
  std::uint32_t first_ = 0;    // timestamps, in milliseconds
  std::uint32_t current_ = 0;
  std::uint32_t next_ = 0;
  std::uint32_t pauseLimit_ = 0;
  bool isObsolete_ = false;
  std::uint32_t position_ = 0;  // in the text; runs on through all passes
  std::uint32_t payloadPosition_ = 0;
  Payload payload_;  // keeps what a short record doesn't overwrite
};

}  // namespace

void RunBatchlog(ClientApp& app, const char* path, double speed, std::int32_t pauseMinutes) {
  const auto file = std::make_unique<LogFile>();  // too large for the stacks of some systems
  if (!file->Open(path)) {
    logger->print(L"%sError: Can not open file!\n%s", ColourRed, ColourReset);
    return;
  }
  Replay(app, *file, speed, pauseMinutes).Run();
  logger->print(stopBatchlog ? L"Batchlog stopped\n" : L"Batchlog finished\n");
  packagePhase = 0;
  livePhase = 0;
}

}  // namespace ventrik
