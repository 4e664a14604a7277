// SPDX-License-Identifier: Apache-2.0
// An output device that draws nothing and keeps what it was told, one text for each call.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "overlay/bmp_output_device.h"

namespace ventrik::tests {

using Calls = std::vector<std::string>;

// "1,2,3,4": left, bottom, right, top.
inline std::string TextOf(const GeoRect& rect) {
  char text[64];
  std::snprintf(text, sizeof text, "%d,%d,%d,%d", rect.left, rect.bottom, rect.right, rect.top);
  return text;
}

class RecordingDevice : public CBMPOutputDevice {
 public:
  void SetAreas(const GeoRect& requested, const GeoRect& image, const GeoRect& shared) override {
    calls.push_back("SetAreas(" + TextOf(requested) + " " + TextOf(image) + " " + TextOf(shared) +
                    ")");
  }
  void BeginImage(std::int32_t width, std::int32_t height) override {
    Keep("BeginImage(%d,%d)", width, height);
  }
  // The colour as blue, green, red.
  void DrawRun(std::int32_t x, std::int32_t count, const std::uint8_t* colour) override {
    Keep("DrawRun(%d,%d,%02x%02x%02x)", x, count, colour[0], colour[1], colour[2]);
  }
  void SetPosition(std::int32_t x, std::int32_t y) override { Keep("SetPosition(%d,%d)", x, y); }
  void EndImage() override { calls.emplace_back("EndImage()"); }

  Calls calls;

 private:
  template <class... Arguments>
  void Keep(const char* format, Arguments... arguments) {
    char text[80];
    std::snprintf(text, sizeof text, format, arguments...);
    calls.emplace_back(text);
  }
};

}  // namespace ventrik::tests
