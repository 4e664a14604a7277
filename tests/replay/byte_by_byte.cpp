// SPDX-License-Identifier: Apache-2.0
#include "tests/replay/byte_by_byte.h"

#include "replay/extraction.h"

namespace ventrik::tests {
namespace {

constexpr int kSwitch = 0xE5;
constexpr int kLeaveOut = 0xE6;

class Bytes {
 public:
  explicit Bytes(const std::string& log) : log_(log) {}
  std::size_t size() const { return log_.size(); }
  int operator[](std::size_t at) const {
    return at < log_.size() ? static_cast<unsigned char>(log_[at]) : -1;
  }
  char Char(std::size_t at) const { return log_[at]; }

 private:
  const std::string& log_;
};

}  // namespace

BatchChannel BatchByteByByte(const std::string& text, bool keep) {
  const Bytes log(text);
  BatchChannel channel;
  std::string line;
  bool inBatch = false;
  bool skipping = false;
  for (std::size_t at = 0; at < log.size();) {
    if (log[at] == kLeaveOut) {
      if (log[at + 1] == kSwitch && log[at + 2] == '4') {
        skipping = false;
      } else if (inBatch && skipping) {
        if (log[at + 1] == '0') {
          skipping = false;
          ++at;
        }
      } else if (inBatch) {
        skipping = true;
      }
      ++at;
      continue;
    }
    if (log[at] == kSwitch && !skipping) {
      inBatch = log[at + 1] == '4';
      at += 2;
      continue;
    }
    if (inBatch && !skipping) {
      if (log[at] != '\r') line += log[at] == 0 ? ' ' : log.Char(at);
      if (line.size() == 16384 || log[at] == '\n') {
        const bool valid = IsRecordLine(line);
        if (!valid) channel.corruptLines.push_back(at);
        if (valid || keep) channel.log += line;
        line.clear();
        if (log[at] == '\n' && log[at + 1] == '\n') inBatch = false;
      }
    }
    ++at;
  }
  return channel;
}

std::string TextByteByByte(const std::string& text) {
  const Bytes log(text);
  std::string output;
  bool inText = false;
  bool behindStretch = false;
  for (std::size_t at = 0; at < log.size();) {
    bool behindShort = false;
    if (log[at] == kLeaveOut && log[at + 1] == '3') {
      at += 3;
      while (at < log.size() && !(log[at] == kLeaveOut && log[at + 1] == '0')) ++at;
      at += 2;
      behindStretch = true;
    }
    if (log[at] == kLeaveOut && log[at + 1] == '1') {
      at += 3;
      while (at < log.size() && log[at] != kLeaveOut) ++at;
      at += 2;
      behindStretch = behindShort = true;
    }
    if (behindStretch && !behindShort && log[at] == kLeaveOut && log[at + 1] == '3') continue;
    if (at >= log.size()) break;
    if (log[at] == kSwitch) {
      inText = log[at + 1] == '3';
      at += inText && !behindStretch ? 2 : 1;
    } else {
      if (inText) output += log.Char(at);
      ++at;
    }
    behindStretch = false;
  }
  return output;
}

std::string BothByteByByte(const std::string& text) {
  const Bytes log(text);
  std::string output;
  std::size_t at = 0;
  while (at < log.size()) {
    const int digit = log[at + 1];
    if (log[at] != kSwitch || (digit != '3' && digit != '4')) {
      ++at;
      continue;
    }
    at += 2;
    while (at < log.size() && log[at] != kSwitch) {
      const int kind = log[at + 1];
      if (log[at] != kLeaveOut || (digit == '3' && kind != '3' && kind != '1')) {
        output += log.Char(at++);
      } else if (digit == '3') {
        at += 3;
        while (at < log.size() && !(log[at] == kLeaveOut && log[at + 1] == '0')) ++at;
        at += 2;
      } else if (log[at + 2] == kLeaveOut) {
        at += 4;
      } else {
        at += 3;
        while (at < log.size() && log[at] != '0' && log[at] != kLeaveOut) ++at;
        at += log[at] == kLeaveOut ? 2 : 1;
      }
    }
  }
  return output;
}

}  // namespace ventrik::tests
