// SPDX-License-Identifier: Apache-2.0
#include "bench/recorder.h"

#include <cerrno>
#include <cstring>

#include "bench/report.h"

namespace ventrik::bench {
namespace {

// The `digits` lowest hexadecimal digits of the value.
void AppendHex(std::string& text, std::uint32_t value, int digits) {
  for (int digit = digits - 1; digit >= 0; --digit) {
    text += "0123456789ABCDEF"[value >> (4 * digit) & 15u];
  }
}

}  // namespace

std::string FormatRecord(std::uint32_t milliseconds, ReceivedBlock payload) {
  std::string record;
  record.reserve(17 + 2 * payload.size);
  AppendHex(record, milliseconds, 8);
  AppendHex(record, static_cast<std::uint32_t>(payload.size), 8);
  for (std::size_t at = 0; at < payload.size; ++at) AppendHex(record, payload.data[at], 2);
  record += '\n';
  return record;
}

bool Recorder::Open(const std::string& path, std::string& error) {
  file_.reset(std::fopen(path.c_str(), "wbe"));
  if (file_) return true;
  error = path + ": " + std::strerror(errno);
  return false;
}

void Recorder::Record(std::chrono::milliseconds sinceStart, ReceivedBlock payload) {
  if (!file_) return;
  if (payload.size > kMaxRecordedPayload) {
    Report("message %d of %zu bytes is too long to be recorded", payload.Word(0), payload.size);
    return;
  }
  const std::string record = FormatRecord(static_cast<std::uint32_t>(sinceStart.count()), payload);
  const bool written = std::fwrite(record.data(), 1, record.size(), file_.get()) == record.size();
  if (written && std::fflush(file_.get()) == 0) return;
  Report("the recording ends here: %s", std::strerror(errno));
  file_.reset();
}

}  // namespace ventrik::bench
