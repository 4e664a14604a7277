// SPDX-License-Identifier: Apache-2.0
// A renderer of weather surfaces, whatever it draws with.
#pragma once

namespace ventrik {

// All operations: one thread at a time, inside platform::CancellationDisabled.
class WeatherOverlayBase {
 public:
  virtual ~WeatherOverlayBase() = default;

  // Makes a surface with the picture of an area, given by its lower left and upper right corners in
  // degrees. Returns its identifier, which is the renderer's and stays until DropSid.
  virtual const char* GetSID(float lowerLeftLongitude, float lowerLeftLatitude,
                             float upperRightLongitude, float upperRightLatitude) = 0;

  // Gives a surface back. An unknown identifier is no error.
  virtual void DropSid(const char* sid) = 0;
};

}  // namespace ventrik
