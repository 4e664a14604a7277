// SPDX-License-Identifier: Apache-2.0
// The runs of a BMP file, and the blocks in which they are read.
#include <fcntl.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "tests/overlay/decoder_fixture.h"

namespace ventrik::tests {
namespace {

using BmpRuns = DecoderTest;

TEST_F(BmpRuns, RunsFollowEachOtherOnTheirLine) {
  EXPECT_EQ(CallsOf(Codes({1, 0, 255, 1, 2, 2})),
            (Calls{"DrawRun(0,1,000102)", "DrawRun(1,255,010203)", "DrawRun(256,2,020304)"}));
}

TEST_F(BmpRuns, EndOfLineGoesToTheNextLinesStart) {
  EXPECT_EQ(CallsOf(Codes({2, 1}) + kEndOfLine + kEndOfLine + Codes({3, 1})),
            (Calls{"DrawRun(0,2,010203)", "SetPosition(0,1)", "SetPosition(0,2)",
                   "DrawRun(0,3,010203)"}));
}

TEST_F(BmpRuns, TwoLinesSetThePositionTwice) {
  EXPECT_EQ(
      CallsOf(Codes({4, 1}) + kEndOfLine + Codes({4, 2}) + kEndOfBitmap),
      (Calls{"DrawRun(0,4,010203)", "SetPosition(0,1)", "DrawRun(0,4,020304)", "EndImage()"}));
}

TEST_F(BmpRuns, BlackRunsAreToldToTheDeviceAsWell) {
  BmpFile file = FileOf(Codes({5, 4, 1, 1}));  // index 4 isn't in the palette
  Decode(file.Bytes());
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,5,000000)",
                                "DrawRun(5,1,010203)"}));
}

TEST_F(BmpRuns, OddityEndOfBitmapDoesNotEndTheDecoding) {
  EXPECT_EQ(CallsOf(Codes({1, 1}) + kEndOfBitmap + Codes({2, 1}) + kEndOfLine + kEndOfBitmap +
                    kEndOfBitmap),
            (Calls{"DrawRun(0,1,010203)", "EndImage()", "DrawRun(1,2,010203)", "SetPosition(0,1)",
                   "EndImage()", "EndImage()"}));
}

TEST_F(BmpRuns, FileWithoutAnEndCodeNeverEndsTheImage) {
  EXPECT_EQ(CallsOf(Codes({1, 1}) + kEndOfLine),
            (Calls{"DrawRun(0,1,010203)", "SetPosition(0,1)"}));
  EXPECT_EQ(CallsOf(""), Calls{});
}

TEST_F(BmpRuns, OddityDeltaMovesWithoutTellingTheDevice) {
  EXPECT_EQ(CallsOf(Codes({1, 1, 0, 2, 10, 3, 1, 1}) + kEndOfLine + Codes({1, 1})),
            (Calls{"DrawRun(0,1,010203)", "DrawRun(11,1,010203)", "SetPosition(0,4)",
                   "DrawRun(0,1,010203)"}));
}

TEST_F(BmpRuns, OddityAbsoluteModeIsReadAsPairs) {
  // Three pixels of their own colours and a byte to fill up.
  EXPECT_EQ(CallsOf(Codes({0, 3, 1, 2, 3, 0, 0, 255, 2, 1})),
            (Calls{"DrawRun(0,1,020304)", "DrawRun(1,3,000102)", "DrawRun(4,2,010203)"}));
}

TEST_F(BmpRuns, PositionWrapsAround) {
  std::string codes;
  for (int i = 0; i < 300; ++i) codes += Codes({0, 2, 0, 255});
  EXPECT_EQ(CallsOf(codes + kEndOfLine),
            Calls{"SetPosition(0," + std::to_string(300 * 255 + 1) + ")"});
  // Neither a column nor a line beyond 31 bits can be had in reasonable time; 16 bits can.
  codes.clear();
  for (int i = 0; i < 258; ++i) codes += Codes({255, 9});
  const Calls calls = CallsOf(codes);
  ASSERT_EQ(calls.size(), 258u);
  EXPECT_EQ(calls[257], "DrawRun(65535,255,000000)");
}

// Reading in blocks.

TEST_F(BmpRuns, EveryEvenBlockSizeGivesTheSameRuns) {
  std::string codes;
  for (int line = 0; line < 20; ++line) {
    for (int run = 1; run <= 20; ++run) codes += Codes({run, run % 4});
    codes += kEndOfLine;
  }
  codes += kEndOfBitmap;
  const Calls whole = CallsOf(codes);
  ASSERT_EQ(whole.size(), 20u * 20 + 20 + 1);
  for (const std::uint32_t size : {2u, 4u, 6u, 64u, 840u, 842u, 65536u}) {
    EXPECT_EQ(CallsOf(codes, size), whole) << size;
  }
}

TEST_F(BmpRuns, PipeThatGivesLittleAtATimeGivesTheSameRuns) {
  std::string codes;
  for (int i = 0; i < 10000; ++i) codes += Codes({1 + i % 200, i % 4});
  const std::string bytes = FileOf(codes).Bytes();
  Decode(bytes);
  const Calls whole = TakeCalls();
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  std::thread writer([&bytes, &ends] {
    // The headers and the palette are read in one go each.
    ASSERT_EQ(write(ends[1], bytes.data(), 70), 70);
    for (std::size_t at = 70; at < bytes.size(); at += 250) {
      const std::size_t part = std::min<std::size_t>(250, bytes.size() - at);
      ASSERT_EQ(write(ends[1], bytes.data() + at, part), static_cast<ssize_t>(part));
    }
    close(ends[1]);
  });
  EXPECT_EQ(DecodeFrom(ends[0]), 1);
  writer.join();
  close(ends[0]);
  EXPECT_EQ(TakeCalls(), whole);
}

TEST_F(BmpRuns, OddityLastByteOfAnOddFileIsPairedWithWhatTheBufferHolds) {
  stale_ = Codes({9, 9, 9, 2});
  EXPECT_EQ(CallsOf(Codes({1, 1, 5})), (Calls{"DrawRun(0,1,010203)", "DrawRun(1,5,020304)"}));
  // What it holds after the first block is that block.
  EXPECT_EQ(CallsOf(Codes({1, 1, 2, 3, 5}), 4),
            (Calls{"DrawRun(0,1,010203)", "DrawRun(1,2,030405)", "DrawRun(3,5,010203)"}));
}

TEST_F(BmpRuns, OddityDeltaAtTheFilesEndTakesWhatTheBufferHolds) {
  // The block of four is followed by the two that begin the delta; 7 and 6 are left from before.
  EXPECT_EQ(CallsOf(Codes({1, 1, 7, 6, 0, 2}), 4),
            (Calls{"DrawRun(0,1,010203)", "DrawRun(1,7,000000)"}));
  stale_ = Codes({0, 0, 7, 6});
  EXPECT_EQ(CallsOf(Codes({0, 2}), 6), Calls{}) << "a move that nothing follows";
}

TEST_F(BmpRuns, OddityDeltaAcrossTheEndOfTheBufferMovesByNothing) {
  // Its second half then begins the next block and is read as a pair.
  EXPECT_EQ(CallsOf(Codes({1, 1, 0, 2, 10, 3, 1, 1}), 4),
            (Calls{"DrawRun(0,1,010203)", "DrawRun(1,10,030405)", "DrawRun(11,1,010203)"}));
}

TEST_F(BmpRuns, OddityStaleBytesOfAShortBlockMoveADelta) {
  // The second block is two bytes long; behind them the first one's 4 and 5 are left.
  const Calls calls = CallsOf(Codes({0, 3, 4, 5, 0, 2}) + "", 4);
  EXPECT_EQ(calls, Calls{"DrawRun(0,4,000000)"});
  // The same with a third block, to see where the delta went: a packet is a block.
  int ends[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends), 0);
  std::vector<std::string> packets = FileOf("").Fields();
  packets.push_back(FileOf("").PaletteBytes());
  packets.push_back(Codes({0, 3, 4, 5}));
  packets.push_back(Codes({0, 2}));
  packets.push_back(Codes({1, 1, 0, 0}));
  for (const std::string& packet : packets) send(ends[1], packet.data(), packet.size(), 0);
  close(ends[1]);
  TakeCalls();
  EXPECT_EQ(DecodeFrom(ends[0], 4), 1);
  close(ends[0]);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,4,000000)",
                                "DrawRun(8,1,010203)", "SetPosition(0,6)"}));
}

TEST_F(BmpRuns, OddBufferTakesPairsApart) {
  // Blocks of three: (2,1) (1,nothing) | (1,2) (1,nothing) | (3,1), whose last byte is stale.
  EXPECT_EQ(CallsOf(Codes({2, 1, 1, 1, 2, 1, 3}), 3),
            (Calls{"DrawRun(0,2,010203)", "DrawRun(2,1,000102)", "DrawRun(3,1,020304)",
                   "DrawRun(4,1,000102)", "DrawRun(5,3,020304)"}));
}

TEST_F(BmpRuns, BufferOfOneByteOrNoneEnds) {
  EXPECT_EQ(CallsOf(Codes({2, 1, 0}), 1),
            (Calls{"DrawRun(0,2,000102)", "DrawRun(2,1,000102)", "SetPosition(0,1)"}));
  EXPECT_EQ(CallsOf(Codes({2, 1}), 0), Calls{});
}

TEST_F(BmpRuns, ReadErrorIsToldOnTheConsole) {
  const std::string bytes = FileOf(Codes({1, 1})).Bytes();
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0);
  ASSERT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  EXPECT_EQ(DecodeFrom(ends[0]), 1);
  close(ends[0]);
  close(ends[1]);
  EXPECT_EQ(TakeCalls(), (Calls{"BeginImage(4,1)", "SetPosition(0,0)", "DrawRun(0,1,010203)"}));
  EXPECT_EQ(console_.TakeText(),
            L"an error occured while reading, Resource temporarily unavailable\n");
}

TEST_F(BmpRuns, NothingIsPrintedOtherwise) {
  CallsOf(Codes({1, 1}) + kEndOfBitmap);
  EXPECT_EQ(console_.TakeText(), L"");
}

// Notes how much of the heap is in use while an image is drawn.
class HeapWatch : public RecordingDevice {
 public:
  void DrawRun(std::int32_t, std::int32_t, const std::uint8_t*) override {
    const std::size_t inUse = mallinfo2().uordblks;
    if (runs++ == 0) first = inUse;
    most = std::max(most, inUse);
  }
  std::size_t runs = 0;
  std::size_t first = 0;
  std::size_t most = 0;
};

TEST_F(BmpRuns, MemoryDoesNotGrowWithTheImage) {
  BmpFile file = FileOf("");
  for (int i = 0; i < 500'000; ++i) file.codes += Codes({255, i % 256});
  const std::string bytes = file.Bytes();
  HeapWatch watch;
  const int descriptor = memfd_create("bmp", MFD_CLOEXEC);
  ASSERT_EQ(write(descriptor, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  lseek(descriptor, 0, SEEK_SET);
  std::uint8_t buffer[4096];
  CBMPDecoder decoder(&watch, buffer, sizeof buffer);
  EXPECT_EQ(ReadBmp(decoder, descriptor), 1);
  FinishBmp(decoder);
  close(descriptor);
  EXPECT_EQ(watch.runs, 500'000u);
  EXPECT_EQ(watch.most, watch.first) << "bytes of the heap in use";
}

}  // namespace
}  // namespace ventrik::tests
