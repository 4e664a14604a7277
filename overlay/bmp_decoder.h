// SPDX-License-Identifier: Apache-2.0
// Decoding of BMP images with 8 bits a pixel and run-length compression.
//
// An image is never held as pixels: each run of equal ones goes straight to an output device. So
// memory doesn't grow with the image.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "overlay/bmp_output_device.h"

namespace ventrik {

class CBMPInfoDecoder;

// One for each image that is drawn. The fields of the file's header are named as in the file and
// stay 0 where it is too short.
struct CBMPDecoder {
  CBMPDecoder(CBMPOutputDevice* sink, std::uint8_t* readBuffer, std::uint32_t readBufferSize);
  ~CBMPDecoder();
  CBMPDecoder(const CBMPDecoder&) = delete;
  CBMPDecoder& operator=(const CBMPDecoder&) = delete;

  std::uint16_t type = 0;
  std::uint32_t fileSize = 0;
  std::uint16_t reserved1 = 0;
  std::uint16_t reserved2 = 0;
  std::uint32_t dataOffset = 0;
  std::unique_ptr<CBMPInfoDecoder> infoDecoder;  // made when it is first needed
  CBMPOutputDevice* device;
  std::uint8_t* buffer;      // the caller's, `bufferSize` bytes; what it holds before can matter
  std::uint32_t bufferSize;  // even, or pairs come apart at its end
};

// Reads the image that stands at the current position of a descriptor, up to its end, and draws it.
// The descriptor is read with blocking reads, field by field. Returns 1 once the data was reached,
// also if it can't be read or is of another compression, and 0 if this is no BMP file or its
// palette is too large for the memory. One thread for each decoder.
int ReadBmp(CBMPDecoder& decoder, int fd);

// Gives back what ReadBmp made. The buffer counts as empty from then on.
void FinishBmp(CBMPDecoder& decoder);

// The part of a file behind the file header, of one version.
class CBMPInfoDecoder {
 public:
  explicit CBMPInfoDecoder(CBMPDecoder& owner);
  virtual ~CBMPInfoDecoder() = default;
  CBMPInfoDecoder(const CBMPInfoDecoder&) = delete;
  CBMPInfoDecoder& operator=(const CBMPInfoDecoder&) = delete;

  // Reads and draws; the result is the one of ReadBmp.
  virtual int Decode(int fd) = 0;

 protected:
  CBMPDecoder* const owner_;
  CBMPOutputDevice* const device_;
  std::uint8_t* const buffer_;
  const std::uint32_t bufferSize_;
};

// The version with a header of 40 bytes. Which version a file says it has isn't asked: each is
// taken for this one.
class CBMPInfoV3Decoder : public CBMPInfoDecoder {
 public:
  using CBMPInfoDecoder::CBMPInfoDecoder;
  int Decode(int fd) override;

 private:
  struct Freed {
    void operator()(std::uint8_t* memory) const { std::free(memory); }
  };

  void ReadHeader(int fd);
  bool ReadPalette(int fd);
  int DecodeRuns(int fd);

  std::uint32_t headerSize_ = 0;  // as the header has them, in its order
  std::int32_t imageWidth_ = 0;
  std::int32_t imageHeight_ = 0;
  std::uint16_t planes_ = 0;
  std::uint16_t bitCount_ = 0;
  std::uint32_t compression_ = 0;
  std::uint32_t imageSize_ = 0;
  std::uint32_t xResolution_ = 0;
  std::uint32_t yResolution_ = 0;
  std::uint32_t coloursUsed_ = 0;
  std::uint32_t coloursImportant_ = 0;
  std::unique_ptr<std::uint8_t[], Freed> palette_;  // coloursUsed_ entries of 4 bytes, 256 at least
};

}  // namespace ventrik
