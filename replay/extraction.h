// SPDX-License-Identifier: Apache-2.0
// Splitting the engine's raw log into its channels.
//
// The log is one stream of bytes with marks in it: E5 and a digit open the channel of that digit,
// "3" for text and "4" for recorded messages; E6 and a digit begin and end stretches to leave out.
// Where a mark is cut off by the end of the log, the byte that is missing counts as none.
//
// The log comes, and what is extracted goes, piece by piece, so that a log of any size needs no
// more than two blocks of memory. The functions have no state of their own; any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "replay/raw_log.h"

namespace ventrik {

// Gets the next piece, cut anywhere; it is gone when the function returns.
using ByteSink = std::function<void(std::string_view piece)>;

// Gets the place in the log of the byte that closed a line which is no record.
using CorruptLineSink = std::function<void(std::uint64_t position)>;

inline constexpr std::size_t kLongestLogLine = 16384;  // bytes; a longer one is closed there

// Each goes through the log from its place to the end.

// The batch channel, line by line as batchlog plays it, NUL bytes as blanks and without carriage
// returns. Corrupt lines are told, and left out unless `keep`. An empty line ends the channel; a
// line without its line feed at the end of the log is dropped.
void CopyBatchChannel(RawLog& log, bool keep, const ByteSink& sink, const CorruptLineSink& tell);

// The text channel, byte by byte.
void CopyTextChannel(RawLog& log, const ByteSink& sink);

// Both channels in the order of the log, without the marks.
void CopyBothChannels(RawLog& log, const ByteSink& sink);

// Whether a line, with its line feed, is a record: an 8-character timestamp and an 8-character
// length, both of hexadecimal digits with blanks or NUL bytes behind them, and twice as many digits
// as the length says.
bool IsRecordLine(std::string_view line);

}  // namespace ventrik
