// SPDX-License-Identifier: Apache-2.0
// Any bytes must come apart as a raw log, and as a reader of single bytes would take them apart.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "replay/extraction.h"
#include "tests/replay/byte_by_byte.h"

namespace {

using namespace ventrik;

// In small windows, which end in the middle of everything.
RawLog InWindows(const std::string& log) {
  const auto read = [&log, at = std::size_t{0}](char* to, std::size_t most) mutable {
    const std::size_t count = log.copy(to, most, at);
    at += count;
    return count;
  };
  return RawLog(read, RawLog::kSmallestWindow);
}

void CheckBatch(const std::string& log, bool keep) {
  tests::BatchChannel channel;
  RawLog windows = InWindows(log);
  CopyBatchChannel(
      windows, keep, [&channel](std::string_view piece) { channel.log += piece; },
      [&channel](std::uint64_t position) { channel.corruptLines.push_back(position); });
  const tests::BatchChannel expected = tests::BatchByteByByte(log, keep);
  if (channel.log != expected.log) std::abort();
  if (channel.corruptLines != expected.corruptLines) std::abort();
}

void Check(const std::string& log, void (*copy)(RawLog&, const ByteSink&),
           std::string (*byteByByte)(const std::string&)) {
  std::string copied;
  RawLog windows = InWindows(log);
  copy(windows, [&copied](std::string_view piece) { copied += piece; });
  if (copied != byteByByte(log)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string log(reinterpret_cast<const char*>(data), size);
  CheckBatch(log, false);
  CheckBatch(log, true);
  Check(log, CopyTextChannel, tests::TextByteByByte);
  Check(log, CopyBothChannels, tests::BothByteByByte);
  return 0;
}
