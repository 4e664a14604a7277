// SPDX-License-Identifier: Apache-2.0
// What a surface has to show, reckoned pixel by pixel without EGL and OpenGL.
//
// The model keeps a stack of scales and offsets, as a picture's geometry is one, and paints
// rectangles on a grid of 8-bit pixels with alpha blending. Pixels whose centre lies on the edge of
// a run, and the corners of the frame's outline, are free: OpenGL leaves to the machine whether an
// edge takes the centres it runs through, and how a wide line ends.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "overlay/geo_rect.h"
#include "tests/overlay/bmp_file.h"

namespace ventrik::tests {

inline constexpr int kWidth = 640;
inline constexpr int kHeight = 480;

// An image and its place, in whole units of the map.
struct TestImage {
  GeoRect place;
  BmpFile file;
};

class PictureModel {
 public:
  // A picture of an area with these images, in the order in which they are drawn.
  PictureModel(const GeoRect& area, const std::vector<TestImage>& images);

  struct Comparison {
    int compared = 0;
    int free = 0;
    int wrong = 0;  // beyond the tolerance in some channel
    std::string firstWrong;
  };
  // Against the bytes of a surface, row by row from the north.
  Comparison Compare(const std::vector<std::uint8_t>& surface) const;

  using Pixel = std::array<int, 4>;  // red, green, blue, alpha
  Pixel At(int column, int row) const { return pixels_[Place(column, row)]; }

 private:
  struct Colour {
    double red;
    double green;
    double blue;
    double alpha;
  };
  // From the coordinates in use to -1 .. 1 over the picture, north up.
  struct Transform {
    double scaleX = 1;
    double offsetX = 0;
    double scaleY = 1;
    double offsetY = 0;
    void Translate(double x, double y);
    void Scale(double x, double y);
  };

  static std::size_t Place(int column, int row) {
    return static_cast<std::size_t>(row) * kWidth + static_cast<std::size_t>(column);
  }
  void DrawFrame();
  void DrawImage(const TestImage& image);
  void DrawRuns(const BmpFile& file);
  void DrawRun(std::uint32_t x, std::uint32_t y, std::uint32_t count, const Entry& entry);
  void FillWindow(int firstColumn, int lastColumn, int firstRow, int lastRow, const Colour& colour);
  void Free(int column, int row);
  void Blend(int column, int row, const Colour& colour);

  std::vector<Pixel> pixels_;
  std::vector<bool> free_;
  std::vector<Transform> transforms_;  // the last is in use
};

}  // namespace ventrik::tests
