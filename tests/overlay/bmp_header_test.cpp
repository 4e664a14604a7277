// SPDX-License-Identifier: Apache-2.0
// The parts of a BMP file that stand before its runs.
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/overlay/decoder_fixture.h"

namespace ventrik::tests {
namespace {

using BmpHeader = DecoderTest;

TEST_F(BmpHeader, EachFieldIsReadForItself) {
  BmpFile file = FileOf(Codes({3, 1}), 2);
  file.fileSize = 0x01020304;
  file.reserved1 = 0x0506;
  file.reserved2 = 0x0708;
  file.dataOffset = 0x090A0B0C;
  file.width = 0x11121314;
  file.height = -5;
  // A packet is gone with the read that takes its beginning: a read of two fields would miss one.
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  std::vector<std::string> packets = file.Fields();
  packets.push_back(file.PaletteBytes());
  packets.push_back(file.codes);
  for (const std::string& packet : packets) {
    ASSERT_EQ(send(ends[1], packet.data(), packet.size(), 0), static_cast<ssize_t>(packet.size()));
  }
  close(ends[1]);
  std::uint8_t buffer[16];
  CBMPDecoder decoder(&device_, buffer, sizeof buffer);
  EXPECT_EQ(ReadBmp(decoder, ends[0]), 1);
  close(ends[0]);
  EXPECT_EQ(decoder.type, 19778);
  EXPECT_EQ(decoder.fileSize, 0x01020304u);
  EXPECT_EQ(decoder.reserved1, 0x0506);
  EXPECT_EQ(decoder.reserved2, 0x0708);
  EXPECT_EQ(decoder.dataOffset, 0x090A0B0Cu);
  EXPECT_EQ(TakeCalls(),
            (Calls{"BeginImage(286397204,-5)", "SetPosition(0,0)", "DrawRun(0,3,010203)"}));
}

TEST_F(BmpHeader, AnotherMagicNumberDrawsNothing) {
  BmpFile file = FileOf(Codes({3, 1}));
  for (const int type : {0, 0x42, 0x4D, 0x424D, 19779, 0xFFFF}) {
    file.type = static_cast<std::uint16_t>(type);
    EXPECT_EQ(Decode(file.Bytes()), 0) << type;
  }
  EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(BmpHeader, OnlyTheCompressionIsLookedAt) {
  BmpFile file = FileOf(Codes({3, 1}));
  file.fileSize = 1;
  file.dataOffset = 0xFFFFFFFF;
  file.headerSize = 124;
  file.planes = 9;
  file.bitCount = 24;
  file.imageSize = 7;
  file.xResolution = file.yResolution = 0x80000000;
  file.coloursImportant = 99;
  EXPECT_EQ(Decode(file.Bytes()), 1);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,3,010203)"}));
}

TEST_F(BmpHeader, AnotherCompressionBeginsTheImageAndDrawsNothing) {
  BmpFile file = FileOf(Codes({3, 1}) + kEndOfBitmap);
  for (const std::uint32_t compression : {0u, 2u, 3u, 0x101u, 0x80000001u}) {
    file.compression = compression;
    EXPECT_EQ(Decode(file.Bytes()), 1) << compression;
    EXPECT_EQ(TakeCalls(), Calls{"BeginImage(4,1)"}) << compression;
  }
}

TEST_F(BmpHeader, SizesArePassedOnWhateverTheyAre) {
  for (const auto& [width, height] :
       {std::pair<std::int32_t, std::int32_t>{0, 0}, {-1, -2147483647 - 1}, {2147483647, 1}}) {
    BmpFile file = FileOf("");
    file.width = width;
    file.height = height;
    EXPECT_EQ(Decode(file.Bytes()), 1);
    EXPECT_EQ(TakeCalls(),
              (Calls{"BeginImage(" + std::to_string(width) + "," + std::to_string(height) + ")",
                     "SetPosition(0,0)"}));
  }
}

TEST_F(BmpHeader, FileCutAnywhereNeverDrawsARun) {
  const BmpFile whole = FileOf(Codes({3, 1}));
  const std::string bytes = whole.Bytes();
  for (std::size_t length = 0; length <= kPaletteStart + 16; ++length) {
    const int result = Decode(bytes.substr(0, length));
    const Calls calls = TakeCalls();
    if (length < 2) {
      EXPECT_EQ(result, 0) << length;
      EXPECT_EQ(calls, Calls{}) << length;
      continue;
    }
    EXPECT_EQ(result, 1) << length;
    ASSERT_FALSE(calls.empty()) << length;
    // The lowest byte of the field is enough for these values.
    EXPECT_EQ(calls[0], length <= 18   ? "BeginImage(0,0)"
                        : length <= 22 ? "BeginImage(4,0)"
                                       : "BeginImage(4,1)")
        << length;
    // The compression stands at 30.
    EXPECT_EQ(calls.size(), length <= 30 ? 1u : 2u) << length;
  }
}

TEST_F(BmpHeader, UnreadableDescriptorDrawsNothing) {
  EXPECT_EQ(DecodeFrom(-1), 0);
  const int directory = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  EXPECT_EQ(DecodeFrom(directory), 0);
  close(directory);
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  EXPECT_EQ(DecodeFrom(ends[1]), 0) << "an end to write to";
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(TakeCalls(), Calls{});
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_F(BmpHeader, SecondReadGoesOnWithTheSameInfoDecoder) {
  std::uint8_t buffer[16];
  CBMPDecoder decoder(&device_, buffer, sizeof buffer);
  const std::string bytes = FileOf("").Bytes();
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  ASSERT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  close(ends[1]);
  EXPECT_EQ(ReadBmp(decoder, ends[0]), 1);
  const CBMPInfoDecoder* const first = decoder.infoDecoder.get();
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(ReadBmp(decoder, ends[0]), 1) << "the type is still the last file's";
  EXPECT_EQ(decoder.infoDecoder.get(), first);
  close(ends[0]);
}

// Palettes.

TEST_F(BmpHeader, FourthByteOfAPaletteEntryIsIgnored) {
  BmpFile file;
  file.palette = {{1, 2, 3, 0}, {1, 2, 3, 255}};
  file.codes = Codes({1, 0, 1, 1});
  Decode(file.Bytes());
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,1,010203)",
                                "DrawRun(1,1,010203)"}));
}

TEST_F(BmpHeader, OddityNoColoursUsedMeansNoPaletteAndNot256) {
  BmpFile file = FileOf(Codes({2, 0, 2, 255}), 0);
  EXPECT_EQ(Decode(file.Bytes()), 1);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,2,000000)",
                                "DrawRun(2,2,000000)"}));
}

TEST_F(BmpHeader, IndexBeyondThePaletteIsBlack) {
  Decode(FileOf(Codes({1, 2, 1, 3, 1, 255}), 3).Bytes());
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,1,020304)",
                                "DrawRun(1,1,000000)", "DrawRun(2,1,000000)"}));
}

TEST_F(BmpHeader, PaletteOfMoreThan256EntriesIsSkippedWhole) {
  Decode(FileOf(Codes({1, 255, 1, 0}), 300).Bytes());
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,1,ff0001)",
                                "DrawRun(1,1,000102)"}));
}

TEST_F(BmpHeader, OddityPaletteFollowsTheHeaderWhateverItsSizeAndTheOffset) {
  BmpFile file = FileOf("", 1);
  file.headerSize = 44;
  file.dataOffset = 62;
  file.codes = Codes({9, 8, 7, 6, 5, 0});  // read as runs
  Decode(file.Bytes());
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,9,000000)",
                                "DrawRun(9,7,000000)", "DrawRun(16,5,000102)"}));
}

TEST_F(BmpHeader, PaletteCutByTheFilesEndLeavesNoRuns) {
  BmpFile file = FileOf(Codes({1, 0}), 2);
  file.coloursUsed = 1'000'000;
  EXPECT_EQ(Decode(file.Bytes()), 1);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)"}));
}

TEST_F(BmpHeader, PaletteThatIsCutIsBlackBehindItsEnd) {
  BmpFile file;
  file.coloursUsed = 3;
  // The palette comes alone and short, the runs come later.
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  std::vector<std::string> packets = file.Fields();
  packets.push_back(Codes({1, 2, 3, 4, 5, 6}));
  packets.push_back(Codes({1, 0, 1, 1, 1, 2}));
  for (const std::string& packet : packets) send(ends[1], packet.data(), packet.size(), 0);
  close(ends[1]);
  EXPECT_EQ(DecodeFrom(ends[0]), 1);
  close(ends[0]);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,1,010203)",
                                "DrawRun(1,1,050600)", "DrawRun(2,1,000000)"}));
}

TEST_F(BmpHeader, PaletteLargerThanTheMemoryGivesUp) {
  BmpFile file = FileOf(Codes({1, 0}));
  for (const std::uint32_t count : {0x20000000u, 0x40000000u, 0x40000001u, 0xFFFFFFFFu}) {
    file.coloursUsed = count;
    EXPECT_EQ(Decode(file.Bytes()), 0) << count;
    EXPECT_EQ(TakeCalls(), Calls{"BeginImage(4,1)"}) << count;
  }
}

}  // namespace
}  // namespace ventrik::tests
