// SPDX-License-Identifier: Apache-2.0
// The line editor of the prompt, without a terminal: keys go in, what to print comes out.
//
// It redraws the visible part of the line after each key, from a saved cursor position:
//
//     ESC [ s     save the cursor, once, behind the prompt
//     ESC [ u     back to it
//     ESC [ n C   n columns to the right
//
// A line longer than the console is wide scrolls sideways. Keys: docs/user-guide.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "state/process_state.h"

namespace ventrik {

class LineEditor {
 public:
  // `columns` is the console's width. `historyCursor` and `overwrite` belong to the caller and are
  // changed by keys; the cursor is first set behind the newest entry.
  LineEditor(std::wstring prompt, std::int32_t columns, const std::vector<std::wstring>& history,
             std::int32_t& historyCursor, Flag& overwrite);

  // The prompt.
  std::wstring Begin() const;

  // Takes one key. Returns the redrawn line, or nothing in the middle of an escape sequence.
  std::wstring TakeKey(std::uint32_t key);

  // Whether the latest key ended the line.
  bool Done() const { return done_; }

  // The finished line and the line end.
  std::wstring End() const;

  const std::wstring& line() const { return line_; }
  std::size_t position() const { return position_; }

 private:
  enum class Sequence { kNone, kEscape, kSecond, kClosing };

  void TakePlainKey(std::uint32_t key);
  void TakeSequenceKey(std::uint32_t key);
  void HistoryUp();
  void HistoryDown();
  std::wstring Redraw() const;

  const std::wstring prompt_;
  const std::int32_t width_;  // columns left for the line; may be 0 or less
  const std::vector<std::wstring>& history_;
  std::int32_t& historyCursor_;
  Flag& overwrite_;
  std::wstring line_;
  std::size_t position_ = 0;  // of the cursor in line_
  Sequence sequence_ = Sequence::kNone;
  bool done_ = false;
};

}  // namespace ventrik
