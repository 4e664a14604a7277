// SPDX-License-Identifier: Apache-2.0
#include "shell/line_editor.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "state/logger.h"

namespace ventrik {
namespace {

// Columns; a terminal's size has 16 bits. COLUMNS may claim more, which is not worth the memory.
constexpr std::size_t kWidestTerminal = 65535;

constexpr std::uint32_t kEnter = 10;
constexpr std::uint32_t kEscape = 27;
constexpr std::uint32_t kBackspace = 127;

constexpr const wchar_t* kSaveCursor = L"\033[s";
constexpr const wchar_t* kRestoreCursor = L"\033[u";

std::wstring Wide(const char* ascii) {
  return std::wstring(ascii, ascii + std::string(ascii).size());
}

std::wstring MoveRight(std::int32_t columns) {
  return L"\033[" + std::to_wstring(columns) + L"C";
}

// As printed through %ls: a 0 ends the text.
std::wstring UpToZero(const std::wstring& text) {
  return text.substr(0, text.find(L'\0'));
}

}  // namespace

LineEditor::LineEditor(std::wstring prompt, std::int32_t columns,
                       const std::vector<std::wstring>& history, std::int32_t& historyCursor,
                       Flag& overwrite)
    : prompt_(std::move(prompt)),
      width_(static_cast<std::int32_t>(static_cast<std::uint32_t>(columns) -
                                       static_cast<std::uint32_t>(prompt_.size()) - 1)),
      history_(history),
      historyCursor_(historyCursor),
      overwrite_(overwrite) {
  historyCursor_ = static_cast<std::int32_t>(history.size());
}

std::wstring LineEditor::Begin() const {
  return prompt_ + Wide(ColourGreen) + kSaveCursor;
}

std::wstring LineEditor::TakeKey(std::uint32_t key) {
  if (sequence_ == Sequence::kNone) {
    TakePlainKey(key);
  } else {
    TakeSequenceKey(key);
  }
  if (sequence_ != Sequence::kNone) return {};
  done_ = key == kEnter;
  return Redraw();
}

void LineEditor::TakePlainKey(std::uint32_t key) {
  if (key == kEscape) {
    sequence_ = Sequence::kEscape;
  } else if (key == kBackspace) {
    if (position_ > 0) line_.erase(--position_, 1);
  } else if (key != kEnter) {
    const auto character = static_cast<wchar_t>(key);
    if (overwrite_ && position_ < line_.size()) {
      line_[position_] = character;
    } else {
      line_.insert(position_, 1, character);
    }
    ++position_;
  }
}

void LineEditor::TakeSequenceKey(std::uint32_t key) {
  if (sequence_ == Sequence::kEscape) {  // any key, normally "["
    sequence_ = Sequence::kSecond;
    return;
  }
  if (sequence_ == Sequence::kClosing) {  // any key, normally "~"
    sequence_ = Sequence::kNone;
    return;
  }
  const bool closes = key >= L'1' && key <= L'4';
  sequence_ = closes ? Sequence::kClosing : Sequence::kNone;
  switch (key) {
    case L'D':  // left
      if (position_ > 0) --position_;
      break;
    case L'C':  // right
      if (position_ < line_.size()) ++position_;
      break;
    case L'A':
      HistoryUp();
      break;
    case L'B':
      HistoryDown();
      break;
    case L'1':  // Home
      position_ = 0;
      break;
    case L'2':  // Insert
      overwrite_ = !overwrite_;
      break;
    case L'3':  // Delete
      if (position_ < line_.size()) line_.erase(position_, 1);
      break;
    case L'4':  // End
      position_ = line_.size();
      break;
    default:
      break;
  }
}

void LineEditor::HistoryUp() {
  if (historyCursor_ <= 0) return;
  --historyCursor_;
  line_ = history_[static_cast<std::size_t>(historyCursor_)];
  position_ = line_.size();
}

void LineEditor::HistoryDown() {
  line_.clear();
  const auto size = static_cast<std::int32_t>(history_.size());
  if (historyCursor_ < size - 1) {
    ++historyCursor_;
    line_ = history_[static_cast<std::size_t>(historyCursor_)];
  } else {
    historyCursor_ = size;
  }
  position_ = line_.size();
}

std::wstring LineEditor::Redraw() const {
  const auto position = static_cast<std::int64_t>(position_);
  const bool fits = position < width_;
  const auto room = static_cast<std::size_t>(std::max(width_, 0));
  std::wstring visible;
  if (fits) {
    visible = UpToZero(line_.substr(0, room));
  } else if (width_ > 0) {
    visible = UpToZero(line_.substr(position_ - room, room));
  }
  // A negative width pads to its magnitude, as printf's does.
  const auto padded = static_cast<std::size_t>(std::abs(static_cast<long long>(width_)));
  visible.resize(std::max(visible.size(), std::min(padded, kWidestTerminal)), L' ');
  const auto column = fits ? static_cast<std::int32_t>(position) : width_;
  // Oddity: at the start of the line a move by -1 is sent, which terminals ignore.
  const std::int32_t move = column == 0 ? -1 : column;
  return kRestoreCursor + visible + kRestoreCursor + MoveRight(move);
}

std::wstring LineEditor::End() const {
  return kRestoreCursor + UpToZero(line_) + Wide(ColourReset) + L"\n";
}

}  // namespace ventrik
