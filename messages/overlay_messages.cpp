// SPDX-License-Identifier: Apache-2.0
#include "messages/overlay_messages.h"

#include <cstdio>
#include <optional>

#include "console/utf8.h"
#include "messages/builders.h"
#include "messages/printer_pieces.h"
#include "messages/tagged_text.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {

const OverlayRenderer* overlayRenderer = nullptr;

namespace {

struct Corners {
  std::string lowerLeft;  // the texts as they stand in the tags
  std::string upperRight;
};

Corners ReadCorners(std::string_view eis) {
  Corners corners;
  const auto lowerLeft = TakeTagValue(eis, "<GLL>");
  if (!lowerLeft) return corners;
  corners.lowerLeft = *lowerLeft;
  corners.upperRight = TagValue(eis, "<GUR>").value_or("");
  return corners;
}

OverlayArea AreaOf(const Corners& corners) {
  OverlayArea area = {};
  std::sscanf(corners.lowerLeft.c_str(), "%f %f", &area.lowerLeftLongitude,
              &area.lowerLeftLatitude);
  std::sscanf(corners.upperRight.c_str(), "%f %f", &area.upperRightLongitude,
              &area.upperRightLatitude);
  return area;
}

// Gives a surface back if the thread is cancelled while it offers it, as nobody else ever would. A
// server that has heard of it all the same still finds it under its name.
class OfferedSurface {
 public:
  explicit OfferedSurface(const std::string& sid) : sid_(sid) {}
  ~OfferedSurface() {
    if (!offered_) overlayRenderer->dropSid(sid_);
  }
  OfferedSurface(const OfferedSurface&) = delete;
  OfferedSurface& operator=(const OfferedSurface&) = delete;

  void Send(const std::string& answer, const platform::CancellationDisabled& whole) {
    const platform::CancellationAllowed sending(whole);
    send::REQU_MAP_OVERLAY_SURFACE(answer);
    offered_ = true;
  }

 private:
  const std::string& sid_;
  bool offered_ = false;
};

}  // namespace

OverlayArea ReadOverlayArea(std::string_view eis) {
  return AreaOf(ReadCorners(eis));
}

void HandleOverlayArea(const ReceivedBlock& block, const platform::CancellationDisabled& whole) {
  const std::string eis(OneString(block));
  const Corners corners = ReadCorners(eis);
  const OverlayArea area = AreaOf(corners);
  logger->print(L"tl=%ls -> %f %f\n", Utf8ToWide(corners.lowerLeft).c_str(),
                static_cast<double>(area.lowerLeftLongitude),
                static_cast<double>(area.lowerLeftLatitude));
  logger->print(L"ur=%ls -> %f %f\n", Utf8ToWide(corners.upperRight).c_str(),
                static_cast<double>(area.upperRightLongitude),
                static_cast<double>(area.upperRightLatitude));
  if (!weatherOn || overlayRenderer == nullptr) return;
  const std::string sid = overlayRenderer->getSid(area);
  std::fprintf(stderr, "SID=%s\n", sid.c_str());
  const std::string answer = eis + "<SID>" + sid + "<*>";
  OfferedSurface(sid).Send(answer, whole);
}

void HandleOverlaySurfaceInvalid(const ReceivedBlock& block) {
  const auto sid = TagValue(OneString(block), "<SID>");
  if (sid && overlayRenderer != nullptr) overlayRenderer->dropSid(std::string(*sid));
}

}  // namespace ventrik
