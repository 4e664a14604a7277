// SPDX-License-Identifier: Apache-2.0
// Splitting the engine's raw log into its channels.
//
// The log is one stream of bytes with marks in it: E5 and a digit open the channel of that digit,
// "3" for text and "4" for recorded messages; E6 and a digit begin and end stretches to leave out.
// Where a mark is cut off by the end of the log, the byte that is missing counts as none. Pure
// functions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ventrik {

// A line of the batch channel that isn't a record.
struct CorruptLine {
  std::size_t position;  // of the byte that closed it, in the log
  bool kept;             // it was written nonetheless
};

struct BatchChannel {
  std::string log;  // as batchlog plays it
  std::vector<CorruptLine> corruptLines;
};

inline constexpr std::size_t kLongestLogLine = 16384;  // bytes; a longer one is closed there

// The batch channel, line by line, NUL bytes as blanks and without carriage returns. Corrupt lines
// are left out unless `keep`. An empty line ends the channel; a line without its line feed at the
// end of the log is dropped.
BatchChannel ExtractBatchChannel(std::string_view log, bool keep);

// The text channel, byte by byte.
std::string ExtractTextChannel(std::string_view log);

// Both channels in the order of the log, without the marks.
std::string ExtractBothChannels(std::string_view log);

// Whether a line, with its line feed, is a record: an 8-character timestamp and an 8-character
// length, both of hexadecimal digits with blanks or NUL bytes behind them, and twice as many digits
// as the length says.
bool IsRecordLine(std::string_view line);

}  // namespace ventrik
