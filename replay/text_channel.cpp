// SPDX-License-Identifier: Apache-2.0
// The text channel, byte by byte, with two kinds of stretches to leave out: E6 "3" up to E6 "0",
// and E6 "1" up to any E6 and one more byte. Both look for their end three bytes further.
#include "replay/extraction.h"
#include "replay/gathered_output.h"

namespace ventrik {
namespace {

// The last of the stretches that were left out at a place.
enum class LeftOut { nothing, longKind, shortKind };

// Goes on behind what is to be left out here. A stretch of the long kind can have one of the short
// kind directly behind it, which is left out as well.
LeftOut LeaveOut(RawLog& log) {
  LeftOut leftOut = LeftOut::nothing;
  if (log.IsAtStretchMark('3')) {
    log.Advance(3);
    log.SkipToStretchMark('0');
    log.Advance(2);
    leftOut = LeftOut::longKind;
  }
  if (log.IsAtStretchMark('1')) {
    log.Advance(3);
    log.SkipTo(kStretchMark);
    log.Advance(2);
    leftOut = LeftOut::shortKind;
  }
  return leftOut;
}

}  // namespace

void CopyTextChannel(RawLog& log, const ByteSink& sink) {
  GatheredOutput output(sink);
  bool isOpen = false;
  while (!log.IsAtEnd()) {
    const LeftOut leftOut = LeaveOut(log);
    // Directly behind another one, a stretch of the long kind is one of its own.
    if (leftOut == LeftOut::longKind && log.IsAtStretchMark('3')) continue;
    if (log.Peek(0) == kChannelMark) {
      isOpen = log.Peek(1) == kTextDigit;
      // Oddity: directly behind a stretch the digit stays, and is written if it opens the text.
      log.Advance(isOpen && leftOut == LeftOut::nothing ? 2 : 1);
    } else {
      // Oddity: a mark directly behind a stretch of the short kind is text.
      const std::string_view run = log.Run();
      if (isOpen) output.Add(run);
      log.Advance(run.size());
    }
  }
  output.HandOn();
}

}  // namespace ventrik
