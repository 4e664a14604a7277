// SPDX-License-Identifier: Apache-2.0
// A raw log on its way through an extraction: a place in it, and a window of bytes from there on.
//
// The log comes piece by piece from a function and is gone through once, forwards. Behind its end
// there are no bytes to fall into: what is looked at there is kNoByte, and nothing goes further.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace ventrik {

inline constexpr int kChannelMark = 0xE5;
inline constexpr int kStretchMark = 0xE6;
inline constexpr int kBatchDigit = '4';
inline constexpr int kTextDigit = '3';
inline constexpr int kNoByte = -1;

// Stores the log's next bytes, at most `most`, and returns how many; 0 at the end.
using ByteSource = std::function<std::size_t(char* to, std::size_t most)>;

// Not a thing for several threads.
class RawLog {
 public:
  static constexpr std::size_t kUsualWindow = 262144;  // bytes
  static constexpr std::size_t kSmallestWindow = 8;

  explicit RawLog(ByteSource source, std::size_t window = kUsualWindow);

  // Whether there was memory for the window. Without it the log counts as empty.
  bool HasMemory() const { return bytes_ != nullptr; }

  std::uint64_t Position() const { return windowPosition_ + next_; }
  bool IsAtEnd() { return Peek(0) == kNoByte; }

  // The byte `ahead` of the place, 0 to 3, or kNoByte.
  int Peek(std::size_t ahead) {
    if (next_ + ahead >= end_) Fill();
    return next_ + ahead < end_ ? static_cast<unsigned char>(bytes_[next_ + ahead]) : kNoByte;
  }

  // Whether a stretch mark with this digit stands at the place.
  bool IsAtStretchMark(int digit) { return Peek(0) == kStretchMark && Peek(1) == digit; }

  // Goes on by so many bytes, at most 4 or what Run has returned.
  void Advance(std::size_t count) {
    if (next_ + count > end_) Fill();
    next_ = next_ + count < end_ ? next_ + count : end_;
  }

  // Go on to the first place, from the present one on, where one of these stands, or to the end.
  void SkipTo(int byte);
  void SkipToEither(int one, int other);
  void SkipToStretchMark(int digit);

  // The bytes from the place up to the next mark behind it, or a part of them that begins there; if
  // a mark stands at the place, it is the first of them. Empty at the end alone. Valid until the
  // place changes or another byte is looked at.
  std::string_view Run();

 private:
  std::string_view Window() const { return {bytes_.get() + next_, end_ - next_}; }
  void Fill();

  const ByteSource source_;
  const std::size_t size_;  // of the window
  const std::unique_ptr<char[]> bytes_;
  std::uint64_t windowPosition_ = 0;  // in the log, of the window's first byte
  std::size_t next_ = 0;              // the place, in the window
  std::size_t end_ = 0;
  bool isSourceEmpty_ = false;
};

}  // namespace ventrik
