// SPDX-License-Identifier: Apache-2.0
// Both channels in one file, by rules for the stretches that differ from those of each alone.
#include "replay/extraction.h"
#include "replay/gathered_output.h"

namespace ventrik {
namespace {

// Expects a stretch mark. Goes on behind the stretch; returns false, at the mark, if it is content.
using LeaveOut = bool (*)(RawLog& log);

// Both kinds end alike.
bool LeaveOutOfText(RawLog& log) {
  if (!log.IsAtStretchMark('3') && !log.IsAtStretchMark('1')) return false;
  log.Advance(3);
  log.SkipToStretchMark('0');
  log.Advance(2);
  return true;
}

// Oddity: any "0" ends it, also one of a record.
bool LeaveOutOfBatch(RawLog& log) {
  if (log.Peek(2) == kStretchMark) {
    log.Advance(4);
    return true;
  }
  log.Advance(3);
  log.SkipToEither('0', kStretchMark);
  log.Advance(log.Peek(0) == kStretchMark ? 2 : 1);
  return true;
}

// Copies a channel up to the next channel mark, or to the end.
void CopyChannel(RawLog& log, LeaveOut leaveOut, GatheredOutput& output) {
  while (!log.IsAtEnd() && log.Peek(0) != kChannelMark) {
    if (log.Peek(0) == kStretchMark && leaveOut(log)) continue;
    const std::string_view run = log.Run();
    output.Add(run);
    log.Advance(run.size());
  }
}

}  // namespace

void CopyBothChannels(RawLog& log, const ByteSink& sink) {
  GatheredOutput output(sink);
  log.SkipTo(kChannelMark);
  while (!log.IsAtEnd()) {
    const int digit = log.Peek(1);
    const bool isWanted = digit == kBatchDigit || digit == kTextDigit;
    log.Advance(isWanted ? 2 : 1);
    if (isWanted) CopyChannel(log, digit == kBatchDigit ? LeaveOutOfBatch : LeaveOutOfText, output);
    log.SkipTo(kChannelMark);
  }
  output.HandOn();
}

}  // namespace ventrik
