// SPDX-License-Identifier: Apache-2.0
#include "replay/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "console/open_file.h"
#include "platform/cancellation.h"

namespace ventrik {

LogFile::~LogFile() {
  const platform::CancellationDisabled whole;
  if (descriptor_ != -1) close(descriptor_);
}

bool LogFile::Open(const char* path) {
  descriptor_ = OpenWithoutWaiting(path, O_RDONLY);
  struct stat status = {};
  return descriptor_ != -1 && fstat(descriptor_, &status) == 0 && !S_ISDIR(status.st_mode);
}

std::string_view LogFile::Read(std::size_t count) {
  if (end_ - next_ < count) Fetch();
  const std::size_t there = std::min(count, end_ - next_);
  if (there < count) isAtEnd_ = true;
  const std::string_view bytes(block_.data() + next_, there);
  next_ += there;
  return bytes;
}

bool LogFile::Skip(char byte) {
  const std::string_view read = Read(1);
  if (read.empty()) return false;
  if (read.front() == byte) return true;
  --next_;
  return false;
}

void LogFile::Seek(std::uint64_t position) {
  blockPosition_ = position;
  next_ = end_ = 0;
  isAtEnd_ = false;
}

// Moves what is left to the block's beginning and fills the rest, as far as the file goes.
void LogFile::Fetch() {
  blockPosition_ += next_;
  end_ -= next_;
  std::memmove(block_.data(), block_.data() + next_, end_);
  next_ = 0;
  ssize_t count = 1;
  while (count > 0 && end_ < block_.size()) {
    count = pread(descriptor_, block_.data() + end_, block_.size() - end_,
                  static_cast<off_t>(blockPosition_ + end_));
    if (count > 0) end_ += static_cast<std::size_t>(count);
  }
}

}  // namespace ventrik
