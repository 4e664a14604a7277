// SPDX-License-Identifier: Apache-2.0
#include "messages/overlay_messages.h"

#include <cstdio>
#include <optional>

#include "console/utf8.h"
#include "messages/builders.h"
#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {

const OverlayRenderer* overlayRenderer = nullptr;

namespace {

constexpr std::string_view kTagEnd = "<*>";

struct Corners {
  std::string lowerLeft;  // the texts as they stand in the tags
  std::string upperRight;
};

// Takes the text of the first `tag` out of `rest`, which becomes what stands behind its end. None
// if the tag or its end is missing.
std::optional<std::string> TakeTag(std::string_view& rest, std::string_view tag) {
  const std::size_t begin = rest.find(tag);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t valueBegin = begin + tag.size();
  const std::size_t end = rest.find(kTagEnd, valueBegin);
  if (end == std::string_view::npos) return std::nullopt;
  std::string value(rest.substr(valueBegin, end - valueBegin));
  rest.remove_prefix(end + kTagEnd.size());
  return value;
}

Corners ReadCorners(std::string_view eis) {
  Corners corners;
  const std::optional<std::string> lowerLeft = TakeTag(eis, "<GLL>");
  if (!lowerLeft) return corners;
  corners.lowerLeft = *lowerLeft;
  corners.upperRight = TakeTag(eis, "<GUR>").value_or("");
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

std::string_view Eis(const ReceivedBlock& block) {
  return BlockCursor(block, 2).OptionalString(block.Word(1));
}

}  // namespace

OverlayArea ReadOverlayArea(std::string_view eis) {
  return AreaOf(ReadCorners(eis));
}

void HandleOverlayArea(const ReceivedBlock& block, const platform::CancellationDisabled& whole) {
  const std::string eis(Eis(block));
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
  std::string_view eis = Eis(block);
  const std::optional<std::string> sid = TakeTag(eis, "<SID>");
  if (sid && overlayRenderer != nullptr) overlayRenderer->dropSid(*sid);
}

}  // namespace ventrik
