// SPDX-License-Identifier: Apache-2.0
#include "tests/overlay/overlay_place.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace ventrik::tests {

std::string ErrorsOf(const std::function<void()>& work) {
  testing::internal::CaptureStderr();
  work();
  return testing::internal::GetCapturedStderr();
}

OverlayPlace::OverlayPlace() : before_(std::filesystem::current_path()) {
  std::filesystem::current_path(directory_.path());
}

OverlayPlace::~OverlayPlace() {
  std::filesystem::current_path(before_);
}

void OverlayPlace::WriteFile(const std::string& path, const std::string& content) {
  const auto folder = std::filesystem::path(path).parent_path();
  if (!folder.empty()) std::filesystem::create_directories(folder);
  std::ofstream(path, std::ios::binary) << content;
}

std::string OverlayPlace::Content(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

std::string OverlayPlace::PlaceText(double left, double bottom, double right, double top) {
  char text[256];
  std::snprintf(text, sizeof text,
                "Rain\n\tUpper latitude: %.9f\n\tLeft longitude: %.9f\n"
                "\tLower latitude: %.9f\n\tRight longitude: %.9f\n",
                top, left, bottom, right);
  return text;
}

}  // namespace ventrik::tests
