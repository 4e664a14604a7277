// SPDX-License-Identifier: Apache-2.0
// Files for the BMP decoder, from every kind of descriptor, and what it tells its device.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "overlay/bmp_decoder.h"
#include "tests/overlay/bmp_file.h"
#include "tests/overlay/recording_device.h"
#include "tests/support/recorded_console.h"

namespace ventrik::tests {

class DecoderTest : public testing::Test {
 protected:
  // Decodes a file of these bytes. What the read buffer holds before is `stale`.
  int Decode(const std::string& bytes, std::uint32_t bufferSize = 65536);
  // The same from any descriptor, which is left open.
  int DecodeFrom(int descriptor, std::uint32_t bufferSize = 65536);

  // A file of 300 colours at most: entry n is n, n + 1, n + 2.
  static BmpFile FileOf(const std::string& codes, std::size_t colours = 4);

  // The calls since the last taking.
  Calls TakeCalls() { return std::exchange(device_.calls, {}); }
  // The same for these codes, without BeginImage and the first SetPosition, which it checks.
  Calls CallsOf(const std::string& codes, std::uint32_t bufferSize = 65536);

  RecordedConsole console_;
  RecordingDevice device_;
  std::string stale_;
};

}  // namespace ventrik::tests
