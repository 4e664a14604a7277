// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/decoder_fixture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace ventrik::tests {

int DecoderTest::Decode(const std::string& bytes, std::uint32_t bufferSize) {
  const int file = memfd_create("bmp", MFD_CLOEXEC);
  EXPECT_EQ(write(file, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  lseek(file, 0, SEEK_SET);
  const int result = DecodeFrom(file, bufferSize);
  close(file);
  return result;
}

int DecoderTest::DecodeFrom(int descriptor, std::uint32_t bufferSize) {
  // Of its exact size, so that the address sanitizer sees a step beyond it.
  const auto buffer = std::make_unique<std::uint8_t[]>(bufferSize);
  std::copy(stale_.begin(), stale_.end(), buffer.get());
  CBMPDecoder decoder(&device_, buffer.get(), bufferSize);
  const int result = ReadBmp(decoder, descriptor);
  FinishBmp(decoder);
  EXPECT_EQ(decoder.infoDecoder, nullptr);
  EXPECT_EQ(decoder.bufferSize, 0u);
  return result;
}

BmpFile DecoderTest::FileOf(const std::string& codes, std::size_t colours) {
  BmpFile file;
  for (std::size_t i = 0; i < colours; ++i) {
    const auto number = static_cast<std::uint8_t>(i);
    file.palette.push_back({number, static_cast<std::uint8_t>(number + 1),
                            static_cast<std::uint8_t>(number + 2), 0x77});
  }
  file.codes = codes;
  return file;
}

Calls DecoderTest::CallsOf(const std::string& codes, std::uint32_t bufferSize) {
  EXPECT_EQ(Decode(FileOf(codes).Bytes(), bufferSize), 1);
  Calls calls = TakeCalls();
  EXPECT_GE(calls.size(), 2u);
  if (calls.size() < 2) return calls;
  EXPECT_EQ(calls[0], "BeginImage(4,1)");
  EXPECT_EQ(calls[1], "SetPosition(0,0)");
  calls.erase(calls.begin(), calls.begin() + 2);
  return calls;
}

}  // namespace ventrik::tests
