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
  const platform::CancellationAllowed sending(whole);
  send::REQU_MAP_OVERLAY_SURFACE(answer);
}

void HandleOverlaySurfaceInvalid(const ReceivedBlock& block) {
  const auto sid = TagValue(OneString(block), "<SID>");
  if (sid && overlayRenderer != nullptr) overlayRenderer->dropSid(std::string(*sid));
}

}  // namespace ventrik
