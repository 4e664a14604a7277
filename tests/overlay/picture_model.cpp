// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/picture_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace ventrik::tests {
namespace {

constexpr int kTolerance = 2;  // in each channel

// How near to a pixel's centre an edge leaves it free: OpenGL places corners on a grid of 1/256
// pixel, and its numbers have 24 bits.
constexpr double kNear = 1.0 / 128;

struct Span {
  double from;
  double to;
};

Span Ordered(double one, double other) {
  return {std::min(one, other), std::max(one, other)};
}

// Cells whose centre is inside, from first to last.
std::pair<int, int> Cells(const Span& span, int limit) {
  const double first = std::ceil(std::clamp(span.from, -1.0, limit + 1.0) - 0.5);
  const double last = std::ceil(std::clamp(span.to, -1.0, limit + 1.0) - 0.5) - 1;
  return {std::max(0, static_cast<int>(first)), std::min(limit - 1, static_cast<int>(last))};
}

bool IsNear(const std::uint8_t* seen, const PictureModel::Pixel& expected) {
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (std::abs(seen[i] - expected[i]) > kTolerance) return false;
  }
  return true;
}

std::string Describe(int column, int row, const std::uint8_t* seen,
                     const PictureModel::Pixel& expected) {
  std::string text = "column " + std::to_string(column) + " row " + std::to_string(row) + ":";
  for (std::size_t i = 0; i < expected.size(); ++i) {
    text += " " + std::to_string(seen[i]) + "/" + std::to_string(expected[i]);
  }
  return text;
}

bool IsAtCentre(double edge) {
  return std::fabs(edge - 0.5 - std::round(edge - 0.5)) < kNear;
}

}  // namespace

void PictureModel::Transform::Translate(double x, double y) {
  offsetX += scaleX * x;
  offsetY += scaleY * y;
}

void PictureModel::Transform::Scale(double x, double y) {
  scaleX *= x;
  scaleY *= y;
}

PictureModel::PictureModel(const GeoRect& area, const std::vector<TestImage>& images)
    : pixels_(kWidth * kHeight), free_(kWidth * kHeight), transforms_(1) {
  DrawFrame();
  // Pixels with y downwards from the picture's southern edge, then units of the map.
  Transform map;
  map.Translate(-1, 1);
  map.Scale(2.0 / kWidth, -2.0 / kHeight);
  const double wide = static_cast<double>(area.right) - area.left;
  const double high = static_cast<double>(area.top) - area.bottom;
  map.Scale(wide == 0 ? 0 : kWidth / wide, high == 0 ? 0 : kHeight / high);
  map.Translate(-static_cast<double>(area.left), -static_cast<double>(area.bottom));
  transforms_.push_back(map);
  for (const TestImage& image : images) DrawImage(image);
}

// A rectangle of 98 percent of both directions, coloured from its corners, which are given in rows
// of the surface: those of the south come last.
void PictureModel::DrawFrame() {
  constexpr double kLeft = 6.4;
  constexpr double kRight = 633.6;
  constexpr double kNorth = 4.8;
  constexpr double kSouth = 475.2;
  const Colour southWest = {1, 0, 0, 0.75};
  const Colour northWest = {0.1, 0.1, 0.1, 0.75};
  const Colour southEast = {0, 1, 0, 0.25};
  const Colour northEast = {0.1, 0.1, 0.1, 0.25};
  for (int row = 5; row <= 474; ++row) {
    for (int column = 6; column <= 633; ++column) {
      const double east = (column + 0.5 - kLeft) / (kRight - kLeft);
      const double north = (kSouth - (row + 0.5)) / (kSouth - kNorth);
      // Two triangles: one at the south-west, one at the north-east.
      const bool isFirst = east + north <= 1;
      const Colour& corner = isFirst ? southWest : northEast;
      const Colour& across = isFirst ? southEast : northWest;
      const Colour& along = isFirst ? northWest : southEast;
      const double toAcross = isFirst ? east : 1 - east;
      const double toAlong = isFirst ? north : 1 - north;
      const auto mix = [&](double Colour::*part) {
        return corner.*part + toAcross * (across.*part - corner.*part) +
               toAlong * (along.*part - corner.*part);
      };
      Blend(column, row,
            {mix(&Colour::red), mix(&Colour::green), mix(&Colour::blue), mix(&Colour::alpha)});
    }
  }
  // Lines of three pixels around these edges.
  const Colour yellow = {1, 1, 0.1, 1};
  FillWindow(5, 7, 5, 474, yellow);
  FillWindow(632, 634, 5, 474, yellow);
  FillWindow(6, 633, 3, 5, yellow);
  FillWindow(6, 633, 474, 476, yellow);
  for (int step = 0; step < 3; ++step) {
    for (int other = 0; other < 3; ++other) {
      for (const int column : {5, 632}) {
        for (const int row : {3, 474}) Free(column + step, row + other);
      }
    }
  }
}

void PictureModel::DrawImage(const TestImage& image) {
  transforms_.push_back(transforms_.back());
  Transform& here = transforms_.back();
  const BmpFile& file = image.file;
  const GeoRect& place = image.place;
  here.Translate(place.left, place.bottom);
  const double wide = static_cast<double>(place.right) - place.left;
  const double high = static_cast<double>(place.top) - place.bottom;
  here.Scale(file.width == 0 ? 0 : wide / file.width, file.height == 0 ? 0 : high / file.height);
  if (file.compression == 1) DrawRuns(file);
}

void PictureModel::DrawRuns(const BmpFile& file) {
  std::uint32_t x = 0;
  std::uint32_t line = 0;
  std::uint32_t drawnLine = 0;
  for (std::size_t i = 0; i + 1 < file.codes.size(); i += 2) {
    const auto first = static_cast<std::uint8_t>(file.codes[i]);
    const auto second = static_cast<std::uint8_t>(file.codes[i + 1]);
    if (first != 0) {
      if (second < file.palette.size()) DrawRun(x, drawnLine, first, file.palette[second]);
      x += first;
    } else if (second == 0) {
      x = 0;
      drawnLine = ++line;
    } else if (second == 1) {
      transforms_.pop_back();
    } else if (second == 2 && i + 3 < file.codes.size()) {
      x += static_cast<std::uint8_t>(file.codes[i + 2]);
      line += static_cast<std::uint8_t>(file.codes[i + 3]);
      i += 2;
    }
  }
}

void PictureModel::DrawRun(std::uint32_t x, std::uint32_t y, std::uint32_t count,
                           const Entry& entry) {
  if (entry.red == 0 && entry.green == 0 && entry.blue == 0) return;
  const Transform& here = transforms_.back();
  const auto column = [&here](std::uint32_t at) {
    return (here.scaleX * static_cast<std::int16_t>(at) + here.offsetX + 1) / 2 * kWidth;
  };
  const auto row = [&here](std::uint32_t at) {
    return (here.scaleY * static_cast<std::int16_t>(at) + here.offsetY + 1) / 2 * kHeight;
  };
  const Span columns = Ordered(column(x), column(x + count));
  const Span rows = Ordered(row(y), row(y + 1));
  if (columns.from == columns.to || rows.from == rows.to) return;
  const auto [firstColumn, lastColumn] = Cells(columns, kWidth);
  const auto [firstRow, lastRow] = Cells(rows, kHeight);
  FillWindow(firstColumn, lastColumn, firstRow, lastRow,
             {entry.red / 255.0, entry.green / 255.0, entry.blue / 255.0, 0.8});
  for (const double edge : {columns.from, columns.to}) {
    if (!IsAtCentre(edge)) continue;
    for (int at = std::max(0, firstRow - 1); at <= std::min(kHeight - 1, lastRow + 1); ++at) {
      Free(static_cast<int>(std::lround(edge - 0.5)), at);
    }
  }
  for (const double edge : {rows.from, rows.to}) {
    if (!IsAtCentre(edge)) continue;
    for (int at = std::max(0, firstColumn - 1); at <= std::min(kWidth - 1, lastColumn + 1); ++at) {
      Free(at, static_cast<int>(std::lround(edge - 0.5)));
    }
  }
}

void PictureModel::FillWindow(int firstColumn, int lastColumn, int firstRow, int lastRow,
                              const Colour& colour) {
  for (int row = firstRow; row <= lastRow; ++row) {
    for (int column = firstColumn; column <= lastColumn; ++column) Blend(column, row, colour);
  }
}

void PictureModel::Free(int column, int row) {
  if (column < 0 || column >= kWidth || row < 0 || row >= kHeight) return;
  free_[Place(column, row)] = true;
}

void PictureModel::Blend(int column, int row, const Colour& colour) {
  Pixel& pixel = pixels_[Place(column, row)];
  const double parts[] = {colour.red, colour.green, colour.blue, colour.alpha};
  for (std::size_t i = 0; i < pixel.size(); ++i) {
    const double value = 255 * parts[i] * colour.alpha + pixel[i] * (1 - colour.alpha);
    pixel[i] = static_cast<int>(std::lround(std::min(value, 255.0)));
  }
}

PictureModel::Comparison PictureModel::Compare(const std::vector<std::uint8_t>& surface) const {
  Comparison result;
  if (surface.size() != pixels_.size() * 4) {
    result.wrong = kWidth * kHeight;
    result.firstWrong = "a surface of " + std::to_string(surface.size()) + " bytes";
    return result;
  }
  for (int row = 0; row < kHeight; ++row) {
    for (int column = 0; column < kWidth; ++column) {
      const std::size_t place = Place(column, row);
      if (free_[place]) {
        ++result.free;
        continue;
      }
      ++result.compared;
      const std::uint8_t* const seen = &surface[place * 4];
      if (IsNear(seen, pixels_[place])) continue;
      if (result.wrong++ == 0) result.firstWrong = Describe(column, row, seen, pixels_[place]);
    }
  }
  return result;
}

}  // namespace ventrik::tests
