// SPDX-License-Identifier: Apache-2.0
// The batch channel: lines, each of which is looked at before it is written. A line that stands in
// one piece in the log, as most do, is written from there; the others are put together first.
#include <algorithm>
#include <cstdint>
#include <string>

#include "replay/byte_search.h"
#include "replay/extraction.h"
#include "replay/gathered_output.h"
#include "replay/hex_digits.h"
#include "replay/record_reader.h"

namespace ventrik {
namespace {

// A field of digits with its filling. Its value goes to `value`.
bool IsField(std::string_view field, std::uint32_t& value) {
  const std::size_t digits = CountHexDigits(field);
  value = ParseHexField(field.substr(0, digits)).value;
  return std::all_of(field.begin() + static_cast<std::ptrdiff_t>(digits), field.end(),
                     [](char filling) { return filling == ' ' || filling == '\0'; });
}

// Takes the bytes of the channel and closes its lines.
class BatchLines {
 public:
  BatchLines(bool keep, const ByteSink& sink, const CorruptLineSink& tell)
      : keep_(keep), output_(sink), tell_(tell) {}

  // Takes the channel's bytes up to a mark or the end of the log. Returns false, in front of it, at
  // an empty line, which ends the channel.
  bool Take(RawLog& log) {
    while (!log.IsAtEnd() && log.Peek(0) != kChannelMark && log.Peek(0) != kStretchMark) {
      std::string_view run = log.Run();
      const std::size_t size = run.size();
      bool closes = false;
      while (!run.empty() && !(closes && run.front() == '\n')) {
        const std::string_view piece = FirstPiece(run);
        run.remove_prefix(piece.size());
        Add(piece, log.Position() + (size - run.size()) - 1);
        closes = piece.back() == '\n';
      }
      log.Advance(size - run.size());
      if (closes && log.Peek(0) == '\n') return false;
    }
    return true;
  }

  void Finish() { output_.HandOn(); }

 private:
  // Up to the end of a line, or as much as the line has room for.
  std::string_view FirstPiece(std::string_view run) const {
    const std::string_view fitting = run.substr(0, kLongestLogLine - line_.size());
    const std::size_t lineFeed = fitting.find('\n');
    return fitting.substr(0, lineFeed == std::string_view::npos ? lineFeed : lineFeed + 1);
  }

  // Adds bytes of which a line feed can only be the last.
  void Add(std::string_view piece, std::uint64_t lastPosition) {
    const bool endsLine = piece.back() == '\n';
    if (endsLine && line_.empty() && FindEither(piece, 0, '\r', '\0') == piece.size()) {
      return Close(piece, lastPosition);
    }
    Append(piece);
    if (!endsLine && line_.size() < kLongestLogLine) return;
    Close(line_, lastPosition);
    line_.clear();
  }

  void Append(std::string_view piece) {
    while (!piece.empty()) {
      const std::size_t plain = FindEither(piece, 0, '\r', '\0');
      line_ += piece.substr(0, plain);
      if (plain == piece.size()) return;
      if (piece[plain] == '\0') line_ += ' ';
      piece.remove_prefix(plain + 1);
    }
  }

  void Close(std::string_view line, std::uint64_t lastPosition) {
    const bool isRecord = IsRecordLine(line);
    if (!isRecord) tell_(lastPosition);
    if (isRecord || keep_) output_.Add(line);
  }

  const bool keep_;
  GatheredOutput output_;
  const CorruptLineSink& tell_;
  std::string line_;
};

}  // namespace

void CopyBatchChannel(RawLog& log, bool keep, const ByteSink& sink, const CorruptLineSink& tell) {
  BatchLines lines(keep, sink, tell);
  bool isOpen = false;
  bool isSkipping = false;  // only while open
  while (!log.IsAtEnd()) {
    if (!isOpen) {
      log.SkipTo(kChannelMark);  // stretches don't matter elsewhere
    } else if (isSkipping) {
      log.SkipTo(kStretchMark);
    } else if (!lines.Take(log)) {
      isOpen = false;
      continue;
    }
    if (log.Peek(0) == kChannelMark) {
      isOpen = log.Peek(1) == kBatchDigit;
      log.Advance(2);
    } else if (log.Peek(1) == kChannelMark && log.Peek(2) == kBatchDigit) {
      isSkipping = false;
      log.Advance(1);
    } else if (isSkipping && log.Peek(1) == '0') {
      isSkipping = false;
      log.Advance(2);
    } else {
      isSkipping = true;  // Oddity: also by what ends a stretch, where none is open
      log.Advance(1);
    }
  }
  lines.Finish();
}

bool IsRecordLine(std::string_view line) {
  std::uint32_t timestamp = 0;
  std::uint32_t length = 0;
  if (line.size() < 2 * kFieldLength) return false;
  if (!IsField(line.substr(0, kFieldLength), timestamp)) return false;
  if (!IsField(line.substr(kFieldLength, kFieldLength), length)) return false;
  const std::uint64_t digits = CountHexDigits(line.substr(2 * kFieldLength));
  if (digits != std::uint64_t{2} * length) return false;
  const std::uint64_t end = 2 * kFieldLength + digits;
  return end + 1 == line.size() && line.back() == '\n';
}

}  // namespace ventrik
