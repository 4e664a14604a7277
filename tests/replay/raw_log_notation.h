// SPDX-License-Identifier: Apache-2.0
// Raw logs in a notation that can be read, and what is extracted from them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "replay/extraction.h"

namespace ventrik::tests {

extern const std::string kFirstRecord;
extern const std::string kSecondRecord;
extern const std::string kBadLine;

// "@" stands for the mark E5, "#" for E6, "~" for a NUL.
std::string Raw(std::string log);

// What was extracted, with the marks that are in it written in the same way.
std::string Shown(std::string extracted);

using Positions = std::vector<std::uint64_t>;

struct BatchChannel {
  std::string log;
  Positions corruptLines;
};

// A log that comes in windows of that size. Valid while the bytes are.
RawLog InWindows(const std::string& log, std::size_t window = RawLog::kUsualWindow);

// From a log as it is, not in the notation.
BatchChannel CopiedBatch(RawLog log, bool keep);
std::string Copied(void (*copy)(RawLog&, const ByteSink&), RawLog log);

// From a log in the notation.
BatchChannel BatchOf(const std::string& log, bool keep = false);
// The same of a log without a corrupt line.
std::string SoundBatchOf(const std::string& log);
std::string TextOf(const std::string& log);
std::string BothOf(const std::string& log);

// A record line of that many payload bytes; `field` is its length field.
std::string LongRecord(std::size_t length, const char* field);

}  // namespace ventrik::tests
