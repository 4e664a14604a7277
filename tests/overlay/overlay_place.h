// SPDX-License-Identifier: Apache-2.0
// A working directory with weather images, and what is said on the way of drawing them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tests/support/recorded_console.h"
#include "tests/support/temporary_directory.h"

namespace ventrik::tests {

// What `work` writes to standard error.
std::string ErrorsOf(const std::function<void()>& work);

class OverlayPlace : public testing::Test {
 protected:
  OverlayPlace();
  ~OverlayPlace() override;

  // Files in the working directory; directories on the way are made.
  static void WriteFile(const std::string& path, const std::string& content);
  static std::string Content(const std::string& path);

  // A text file as the images' makers write them. Degrees.
  static std::string PlaceText(double left, double bottom, double right, double top);

  RecordedConsole console_;

 private:
  std::string before_;
  TemporaryDirectory directory_;
};

}  // namespace ventrik::tests
