// SPDX-License-Identifier: Apache-2.0
#include "overlay/bmp_decoder.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::uint16_t kMagic = 19778;   // "BM"
constexpr std::uint32_t kRunLength8 = 1;  // the compression with runs of 8-bit pixels
constexpr std::size_t kEntrySize = 4;     // bytes of a palette entry: blue, green, red, none
constexpr std::size_t kIndices = 256;     // that a pixel can have

// The second byte of a pair whose first is 0.
constexpr std::uint8_t kEndOfLine = 0;
constexpr std::uint8_t kEndOfBitmap = 1;
constexpr std::uint8_t kDelta = 2;

// What can't be read leaves the memory as it was, and nobody asks: a file that is too short fails a
// test of its values.
void ReadBytes(int fd, void* memory, std::size_t size) {
  if (read(fd, memory, size) < 0) return;
}

// Both systems and the file put the low byte first.
template <class Field>
void ReadField(int fd, Field& field) {
  ReadBytes(fd, &field, sizeof field);
}

}  // namespace

CBMPDecoder::CBMPDecoder(CBMPOutputDevice* sink, std::uint8_t* readBuffer,
                         std::uint32_t readBufferSize)
    : device(sink), buffer(readBuffer), bufferSize(readBufferSize) {}

CBMPDecoder::~CBMPDecoder() = default;

int ReadBmp(CBMPDecoder& decoder, int fd) {
  ReadField(fd, decoder.type);
  ReadField(fd, decoder.fileSize);
  ReadField(fd, decoder.reserved1);
  ReadField(fd, decoder.reserved2);
  ReadField(fd, decoder.dataOffset);
  if (decoder.type != kMagic) return 0;
  if (!decoder.infoDecoder) decoder.infoDecoder = std::make_unique<CBMPInfoV3Decoder>(decoder);
  return decoder.infoDecoder->Decode(fd);
}

void FinishBmp(CBMPDecoder& decoder) {
  decoder.infoDecoder.reset();
  decoder.bufferSize = 0;
}

CBMPInfoDecoder::CBMPInfoDecoder(CBMPDecoder& owner)
    : owner_(&owner), device_(owner.device), buffer_(owner.buffer), bufferSize_(owner.bufferSize) {}

int CBMPInfoV3Decoder::Decode(int fd) {
  ReadHeader(fd);
  device_->BeginImage(imageWidth_, imageHeight_);
  if (compression_ != kRunLength8) return 1;
  if (!ReadPalette(fd)) return 0;
  return DecodeRuns(fd);
}

void CBMPInfoV3Decoder::ReadHeader(int fd) {
  ReadField(fd, headerSize_);
  ReadField(fd, imageWidth_);
  ReadField(fd, imageHeight_);
  ReadField(fd, planes_);
  ReadField(fd, bitCount_);
  ReadField(fd, compression_);
  ReadField(fd, imageSize_);
  ReadField(fd, xResolution_);
  ReadField(fd, yResolution_);
  ReadField(fd, coloursUsed_);
  ReadField(fd, coloursImportant_);
}

// The palette is what follows the header, and the data what follows the palette, whatever offset
// the file header gives. Where the file ends before the palette does, the rest of it is black, and
// so is what a pixel can name beyond a shorter palette.
bool CBMPInfoV3Decoder::ReadPalette(int fd) {
  // No process of the target has more memory than that.
  if (coloursUsed_ > std::numeric_limits<std::int32_t>::max() / kEntrySize) return false;
  const std::size_t size = std::size_t{coloursUsed_} * kEntrySize;
  const std::size_t room = std::max(size, kIndices * kEntrySize);
  palette_.reset(static_cast<std::uint8_t*>(std::calloc(room, 1)));
  if (palette_) ReadBytes(fd, palette_.get(), size);
  return palette_ != nullptr;
}

// The oddities are the format's as it is drawn here: an end of the bitmap doesn't end the loop, a
// delta moves without telling the device, and pixels in absolute mode are read as pairs.
int CBMPInfoV3Decoder::DecodeRuns(int fd) {
  // Wrap-around instead of overflow, however long the file.
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  // What a pair or a delta needs beyond the bytes read is whatever the buffer still holds.
  const auto byteAt = [this](std::size_t place) {
    return place < bufferSize_ ? buffer_[place] : std::uint8_t{0};
  };
  const std::uint8_t* const palette = palette_.get();
  device_->SetPosition(0, 0);
  while (true) {
    const ssize_t count = read(fd, buffer_, bufferSize_);
    if (count < 0) {
      logger->print(L"an error occured while reading, %s\n", std::strerror(errno));
      return 1;
    }
    if (count == 0) return 1;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); i += 2) {
      const std::uint8_t first = buffer_[i];
      const std::uint8_t second = byteAt(i + 1);
      if (first != 0) {
        device_->DrawRun(static_cast<std::int32_t>(x), first, palette + second * kEntrySize);
        x += first;
      } else if (second == kEndOfLine) {
        x = 0;
        ++y;
        device_->SetPosition(0, static_cast<std::int32_t>(y));
      } else if (second == kEndOfBitmap) {
        device_->EndImage();
      } else if (second == kDelta) {
        x += byteAt(i + 2);
        y += byteAt(i + 3);
        i += 2;
      }
    }
  }
}

}  // namespace ventrik
