// SPDX-License-Identifier: Apache-2.0
// A batch log as it is read: in blocks, with the few operations that a replay needs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ventrik {

inline constexpr std::size_t kLongestRead = 16384;  // bytes

// One thread. Its memory is one block, whatever the size of the file.
class LogFile {
 public:
  LogFile() = default;
  ~LogFile();
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  // Expects no file open. Returns false if there is no such file that can be read; a folder is
  // none. What has no places to go back to, such as a pipe, is empty.
  bool Open(const char* path);

  // Goes on by `count` bytes, at most kLongestRead, and returns them; fewer at the end of the file,
  // or where it can't be read, which counts as its end. Valid until the next call. A cancellation
  // point.
  std::string_view Read(std::size_t count);

  // Goes on by one byte if that is `byte`, and returns whether it was. A cancellation point.
  bool Skip(char byte);

  // Whether a read has met the end since the file was opened or Seek was called.
  bool IsAtEnd() const { return isAtEnd_; }

  // Where the next byte is read.
  std::uint64_t Position() const { return blockPosition_ + next_; }
  void Seek(std::uint64_t position);

 private:
  void Fetch();

  int descriptor_ = -1;
  std::uint64_t blockPosition_ = 0;  // in the file, of the block's first byte
  std::size_t next_ = 0;             // in the block, up to its end
  std::size_t end_ = 0;
  bool isAtEnd_ = false;
  std::array<char, 4 * kLongestRead> block_;
};

}  // namespace ventrik
