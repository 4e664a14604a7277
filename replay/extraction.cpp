// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction.h"

#include <algorithm>
#include <cstdint>

#include "replay/hex_digits.h"

namespace ventrik {
namespace {

constexpr int kSwitch = 0xE5;
constexpr int kStretch = 0xE6;
constexpr int kNoByte = -1;
constexpr std::size_t kField = 8;  // characters

// The log, with none behind its end.
class LogBytes {
 public:
  explicit LogBytes(std::string_view bytes) : bytes_(bytes) {}

  std::size_t size() const { return bytes_.size(); }
  int At(std::size_t position) const {
    return position < bytes_.size() ? static_cast<unsigned char>(bytes_[position]) : kNoByte;
  }
  // The first place from `from` on where this byte stands, or the end.
  std::size_t Find(int byte, std::size_t from) const {
    return std::min(bytes_.find(static_cast<char>(byte), from), bytes_.size());
  }
  // The same for an E6 with `digit` behind it.
  std::size_t FindStretchEnd(int digit, std::size_t from) const {
    std::size_t at = Find(kStretch, from);
    while (at < size() && At(at + 1) != digit) at = Find(kStretch, at + 1);
    return at;
  }
  // The first place from `from` on where a mark can begin, or the end.
  std::size_t FindMark(std::size_t from) const {
    const std::size_t at = bytes_.find_first_of("\xE5\xE6", from);
    return std::min(at, bytes_.size());
  }
  std::string_view Between(std::size_t begin, std::size_t end) const {
    return bytes_.substr(begin, end - begin);
  }

 private:
  std::string_view bytes_;
};

// The digits at the beginning of a text.
std::size_t DigitRun(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && HexDigit(text[count]) >= 0) ++count;
  return count;
}

// A field of digits with its filling. Its value goes to `value`.
bool IsField(std::string_view field, std::uint32_t& value) {
  const std::size_t digits = DigitRun(field);
  value = 0;
  for (std::size_t i = 0; i < digits; ++i) {
    value = value << 4 | static_cast<std::uint32_t>(HexDigit(field[i]));
  }
  return std::all_of(field.begin() + static_cast<std::ptrdiff_t>(digits), field.end(),
                     [](char filling) { return filling == ' ' || filling == '\0'; });
}

// Takes the bytes of the batch channel and closes its lines.
class BatchLines {
 public:
  BatchLines(bool keep, BatchChannel& channel) : keep_(keep), channel_(channel) {}

  // Returns whether the byte closed a line.
  bool Add(int byte, std::size_t position) {
    if (byte == '\r') return false;
    line_ += byte == '\0' ? ' ' : static_cast<char>(byte);
    if (line_.size() < kLongestLogLine && byte != '\n') return false;
    Close(position);
    return true;
  }

 private:
  void Close(std::size_t position) {
    const bool isRecord = IsRecordLine(line_);
    if (isRecord || keep_) channel_.log += line_;
    if (!isRecord) channel_.corruptLines.push_back({position, keep_});
    line_.clear();
  }

  const bool keep_;
  BatchChannel& channel_;
  std::string line_;
};

// Where the text goes on behind what is left out.
struct Behind {
  std::size_t at;
  bool isStretch;    // something was left out
  bool isShortKind;  // at last a stretch of the second kind
};

// A stretch of the first kind can have one of the second kind directly behind it.
Behind BehindTextStretch(const LogBytes& log, std::size_t at) {
  Behind behind{at, false, false};
  if (log.At(at) == kStretch && log.At(at + 1) == '3') {
    behind = {std::min(log.FindStretchEnd('0', at + 3) + 2, log.size()), true, false};
  }
  if (log.At(behind.at) == kStretch && log.At(behind.at + 1) == '1') {
    behind = {std::min(log.Find(kStretch, behind.at + 3) + 2, log.size()), true, true};
  }
  return behind;
}

// Whether a stretch begins here that is left out on its own, although another one ended here.
bool IsStretchOfItsOwn(const LogBytes& log, const Behind& behind) {
  return behind.isStretch && !behind.isShortKind && log.At(behind.at) == kStretch &&
         log.At(behind.at + 1) == '3';
}

// The same for text in a file of both channels, where every stretch ends alike.
std::size_t BehindMixedTextStretch(const LogBytes& log, std::size_t at) {
  const int kind = log.At(at + 1);
  if (kind != '3' && kind != '1') return at;
  return std::min(log.FindStretchEnd('0', at + 3) + 2, log.size());
}

// The same for records there.
std::size_t BehindMixedBatchStretch(const LogBytes& log, std::size_t at) {
  if (log.At(at + 2) == kStretch) return std::min(at + 4, log.size());
  std::size_t end = at + 3;
  while (end < log.size() && log.At(end) != '0' && log.At(end) != kStretch) ++end;
  return std::min(log.At(end) == kStretch ? end + 2 : end + 1, log.size());
}

// Appends a channel's bytes up to the next switch, where it returns.
std::size_t AppendChannel(const LogBytes& log, std::size_t at,
                          std::size_t (*behindStretch)(const LogBytes& log, std::size_t at),
                          std::string& output) {
  while (at < log.size() && log.At(at) != kSwitch) {
    if (log.At(at) == kStretch) {
      const std::size_t behind = behindStretch(log, at);
      if (behind != at) {
        at = behind;
        continue;
      }
    }
    const std::size_t end = std::max(log.FindMark(at), at + 1);
    output += log.Between(at, std::min(end, log.size()));
    at = end;
  }
  return std::min(at, log.size());
}

}  // namespace

BatchChannel ExtractBatchChannel(std::string_view bytes, bool keep) {
  BatchChannel channel;
  BatchLines lines(keep, channel);
  const LogBytes log(bytes);
  bool inBatch = false;
  bool skipping = false;
  for (std::size_t at = 0; at < log.size();) {
    const int byte = log.At(at);
    if (byte == kStretch) {
      const bool ends = skipping && log.At(at + 1) == '0';
      if (log.At(at + 1) == kSwitch && log.At(at + 2) == '4') {
        skipping = false;
      } else if (inBatch && ends) {
        skipping = false;
        ++at;
      } else if (inBatch) {
        skipping = true;
      }
      ++at;
    } else if (byte == kSwitch && !skipping) {
      inBatch = log.At(at + 1) == '4';
      at += 2;
    } else {
      if (inBatch && !skipping && lines.Add(byte, at) && byte == '\n' && log.At(at + 1) == '\n') {
        inBatch = false;
      }
      ++at;
    }
  }
  return channel;
}

std::string ExtractTextChannel(std::string_view bytes) {
  std::string output;
  const LogBytes log(bytes);
  bool inText = false;
  for (std::size_t at = 0; at < log.size();) {
    const Behind behind = BehindTextStretch(log, at);
    at = behind.at;
    if (IsStretchOfItsOwn(log, behind)) continue;
    if (log.At(at) == kSwitch) {
      inText = log.At(at + 1) == '3';
      // Oddity: directly behind a stretch the digit stays, and is written if it opens the text.
      at += inText && !behind.isStretch ? 2 : 1;
    } else if (at < log.size()) {
      const std::size_t end = log.FindMark(at + 1);
      if (inText) output += log.Between(at, end);
      at = end;
    }
  }
  return output;
}

std::string ExtractBothChannels(std::string_view bytes) {
  std::string output;
  const LogBytes log(bytes);
  std::size_t at = log.Find(kSwitch, 0);
  while (at < log.size()) {
    if (log.At(at + 1) == '4') {
      at = AppendChannel(log, at + 2, BehindMixedBatchStretch, output);
    } else if (log.At(at + 1) == '3') {
      at = AppendChannel(log, at + 2, BehindMixedTextStretch, output);
    } else {
      at = log.Find(kSwitch, at + 1);
    }
  }
  return output;
}

bool IsRecordLine(std::string_view line) {
  std::uint32_t timestamp = 0;
  std::uint32_t length = 0;
  if (line.size() < 2 * kField) return false;
  if (!IsField(line.substr(0, kField), timestamp)) return false;
  if (!IsField(line.substr(kField, kField), length)) return false;
  const std::uint64_t digits = DigitRun(line.substr(2 * kField));
  if (digits != std::uint64_t{2} * length) return false;
  const std::uint64_t end = 2 * kField + digits;
  return end + 1 == line.size() && line.back() == '\n';
}

}  // namespace ventrik
