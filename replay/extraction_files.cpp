// SPDX-License-Identifier: Apache-2.0
#include "replay/extraction_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "console/open_file.h"
#include "platform/cancellation.h"
#include "platform/unique_fd.h"
#include "replay/batchlog.h"
#include "replay/extraction.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr double kOwnPace = 1.0;

struct stat StatusOf(const char* path) {
  struct stat status = {};
  if (stat(path, &status) != 0) status = {};
  return status;
}

// A log to be read. Its end is where it ended when it was opened.
class InputLog {
 public:
  explicit InputLog(const char* path) : file_(OpenWithoutWaiting(path, O_RDONLY)) {
    if (!file_ || fstat(file_.get(), &status_) != 0) status_.st_mode = S_IFDIR;
  }

  // Whether there is such a file; a folder is none.
  bool IsOpen() const { return !S_ISDIR(status_.st_mode); }

  std::uint64_t size() const { return static_cast<std::uint64_t>(status_.st_size); }

  // Whether that path leads to the same file.
  bool IsAt(const char* path) const {
    const struct stat other = StatusOf(path);
    return other.st_ino == status_.st_ino && other.st_dev == status_.st_dev;
  }

  // The next bytes; none as well where it can't be read.
  std::size_t Read(char* to, std::size_t most) {
    const platform::CancellationDisabled whole;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(most, size() - position_));
    const ssize_t count = read(file_.get(), to, wanted);
    if (count <= 0) return 0;
    position_ += static_cast<std::uint64_t>(count);
    return static_cast<std::size_t>(count);
  }

 private:
  const platform::UniqueFd file_;
  struct stat status_ = {};
  std::uint64_t position_ = 0;
};

// How many bytes of a log have to be in memory at once: all if it is to be overwritten by what
// comes out of it. None if that is more than memory can hold.
std::size_t WindowFor(const InputLog& input, const char* output) {
  if (!input.IsAt(output)) return RawLog::kUsualWindow;
  constexpr std::uint64_t kMost = SIZE_MAX / 2;
  return input.size() < kMost ? static_cast<std::size_t>(input.size()) + 1 : 0;
}

// The file that is written, or nothing where that fails.
class OutputLog {
 public:
  explicit OutputLog(const char* path)
      : file_(OpenWithoutWaiting(path, O_WRONLY | O_CREAT | O_TRUNC)) {}

  void Write(std::string_view piece) const {
    const platform::CancellationDisabled whole;
    while (!piece.empty()) {
      const ssize_t count = write(file_.get(), piece.data(), piece.size());
      if (count <= 0) return;
      piece.remove_prefix(static_cast<std::size_t>(count));
    }
  }

 private:
  const platform::UniqueFd file_;
};

void SayThatItCantBeOpened() {
  logger->print(L"%sError: Can not open file!\n%s", ColourRed, ColourReset);
}

void TellOfCorruptLine(std::uint64_t position, bool keep) {
  logger->print(L"Warning: corrupt line at 0x%x%s\n", static_cast<unsigned>(position),
                keep ? "" : ", skipped");
}

// Has `copy` take the log apart. Returns whether it could be opened.
template <class Copy>
bool CopyFile(const char* path, const char* output, Copy copy) {
  InputLog input(path);
  if (!input.IsOpen()) return false;
  const std::size_t window = WindowFor(input, output);
  RawLog log([&input](char* to, std::size_t most) { return input.Read(to, most); }, window);
  if (window == 0 || !log.HasMemory()) return false;
  log.Peek(0);  // what the window holds is safe from the output now
  const OutputLog file(output);
  copy(log, [&file](std::string_view piece) { file.Write(piece); });
  return true;
}

template <class Copy>
void Extract(const char* path, const char* output, Copy copy) {
  if (!CopyFile(path, output, copy)) SayThatItCantBeOpened();
  logger->print(L"Extraction finished\n");
}

}  // namespace

void ExtractBatchChannel(const char* path, const char* output, bool keep) {
  Extract(path, output, [keep](RawLog& log, const ByteSink& sink) {
    CopyBatchChannel(log, keep, sink,
                     [keep](std::uint64_t position) { TellOfCorruptLine(position, keep); });
  });
}

void ExtractTextChannel(const char* path, const char* output) {
  Extract(path, output, CopyTextChannel);
}

void ExtractAll(const char* path, const char* output) {
  ExtractBatchChannel(path, "extracted_batch.log", false);
  ExtractTextChannel(path, "extracted_dullog.txt");
  Extract(path, output, CopyBothChannels);
}

void ExtractAndReplay(ClientApp& app, const char* path) {
  if (!InputLog(path).IsOpen()) return SayThatItCantBeOpened();
  ExtractBatchChannel(path, "ext_batch.log", false);
  ExtractTextChannel(path, "ext_dullog.txt");
  RunBatchlog(app, "ext_batch.log", kOwnPace, 0);
}

}  // namespace ventrik
