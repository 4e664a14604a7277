// SPDX-License-Identifier: Apache-2.0
#include "overlay/weather_images.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "console/open_file.h"
#include "overlay/bmp_decoder.h"

namespace ventrik {
namespace {

constexpr std::string_view kTextEnding = ".logfile";
constexpr char kImageEnding[] = ".bmp";

struct EdgeLine {
  std::string_view beginning;
  std::int32_t GeoRect::*edge;
  std::int32_t (*units)(double degrees);
};

constexpr EdgeLine kEdgeLines[] = {
    {"\tUpper latitude:", &GeoRect::top, LatitudeUnits},
    {"\tLeft longitude:", &GeoRect::left, LongitudeUnits},
    {"\tLower latitude:", &GeoRect::bottom, LatitudeUnits},
    {"\tRight longitude:", &GeoRect::right, LongitudeUnits},
};

void TakeEdge(std::string_view line, GeoRect& rect) {
  for (const EdgeLine& row : kEdgeLines) {
    if (line.substr(0, row.beginning.size()) != row.beginning) continue;
    // One character stands between the colon and the number, whatever it is.
    line.remove_prefix(std::min(row.beginning.size() + 1, line.size()));
    rect.*row.edge = row.units(std::atof(line.data()));
  }
}

std::FILE* OpenPlainFile(const char* path) {
  const int descriptor = OpenWithoutWaiting(path, O_RDONLY);
  if (descriptor == -1) return nullptr;
  struct stat status = {};
  std::FILE* file = nullptr;
  if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) file = fdopen(descriptor, "rb");
  if (file == nullptr) close(descriptor);
  return file;
}

void PrintRect(const char* what, const GeoRect& rect) {
  const DegreeRect degrees = InDegrees(rect);
  std::fprintf(stderr, "  %s=\n  ll=%.3f,%.3f ur=%.3f,%.3f\n", what, degrees.left, degrees.bottom,
               degrees.right, degrees.top);
}

// The directories between the walk's beginning and the one it stands in.
struct Ancestor {
  const Ancestor* above;
  dev_t device;
  ino_t number;
};

bool LeadsBack(const Ancestor* ancestor, const struct stat& status) {
  for (; ancestor != nullptr; ancestor = ancestor->above) {
    if (ancestor->device == status.st_dev && ancestor->number == status.st_ino) return true;
  }
  return false;
}

bool EndsWith(const std::string& text, std::string_view ending) {
  return text.size() >= ending.size() &&
         text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

class Walk {
 public:
  Walk(CBMPOutputDevice* device, std::vector<CWeatherImageController*>& sets)
      : device_(device), sets_(sets) {}

  int Enter(const std::string& directory, const Ancestor* above) {
    struct stat own = {};
    if (stat(directory.c_str(), &own) != 0 || LeadsBack(above, own)) return 0;
    const Ancestor here = {above, own.st_dev, own.st_ino};
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory.c_str()), closedir);
    if (!entries) return 0;
    int result = 0;
    CWeatherImageController* set = nullptr;
    while (const dirent* entry = readdir(entries.get())) {
      const std::string path = directory + "/" + entry->d_name;
      struct stat status = {};
      const bool isThere = stat(path.c_str(), &status) == 0;
      // Meant for "." and ".."; what else ends in a full stop goes with them.
      if (path.back() == '.') continue;
      if (isThere && S_ISDIR(status.st_mode)) {
        result = Enter(path, &here);
      } else if (EndsWith(path, kTextEnding)) {
        if (set == nullptr) set = NewSet(directory);
        AddImage(*set, path.substr(0, path.size() - kTextEnding.size()));
      }
    }
    return result;
  }

 private:
  CWeatherImageController* NewSet(const std::string& directory) {
    auto* set = new CWeatherImageController(device_);
    sets_.push_back(set);
    std::fprintf(stderr, "findResourceSets set:%d dir:%s\n", static_cast<int>(sets_.size()) - 1,
                 directory.c_str());
    return set;
  }

  static void AddImage(CWeatherImageController& set, const std::string& baseName) {
    std::fprintf(stderr, "new file:%s\n", baseName.c_str());
    const GeoRect place = ReadGeoRect(baseName + std::string(kTextEnding));
    const DegreeRect degrees = InDegrees(place);
    std::fprintf(stderr, "  rect %f %f - %f %f\n", degrees.left, degrees.bottom, degrees.right,
                 degrees.top);
    set.Add(baseName + kImageEnding, place);
  }

  CBMPOutputDevice* const device_;
  std::vector<CWeatherImageController*>& sets_;
};

}  // namespace

void CWeatherImageController::Add(const std::string& path, const GeoRect& place) {
  images_.emplace(path, place);
}

void CWeatherImageController::render(const GeoRect& area) {
  std::fputs("CWeatherImageController::render\n", stderr);
  PrintRect("requested area", area);
  for (const auto& [path, place] : images_) {
    GeoRect shared = {};
    if (IntersectRect(area, place, shared) != 0) Draw(path, place, area, shared);
  }
}

void CWeatherImageController::Draw(const std::string& path, const GeoRect& place,
                                   const GeoRect& area, const GeoRect& shared) {
  std::fprintf(stderr, "  +%s\n", path.c_str());
  PrintRect("image", place);
  PrintRect("shared", shared);
  const int descriptor = OpenWithoutWaiting(path.c_str(), O_RDONLY);
  device_->SetAreas(area, place, shared);
  CBMPDecoder decoder(device_, readBuffer_.data(), static_cast<std::uint32_t>(readBuffer_.size()));
  ReadBmp(decoder, descriptor);  // nothing is drawn of a file that isn't there
  close(descriptor);
  FinishBmp(decoder);
}

int findResourceSets(const std::string& directory, CBMPOutputDevice* device,
                     std::vector<CWeatherImageController*>& sets) {
  return Walk(device, sets).Enter(directory, nullptr);
}

GeoRect ReadGeoRect(const std::string& path) {
  GeoRect rect = {};
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenPlainFile(path.c_str()),
                                                             std::fclose);
  if (!file) return rect;
  std::array<char, 512> line = {};
  while (std::fgets(line.data(), static_cast<int>(line.size()), file.get()) != nullptr) {
    TakeEdge(line.data(), rect);
  }
  return rect;
}

}  // namespace ventrik
