// SPDX-License-Identifier: Apache-2.0
// The wire side of the weather overlay: the area that the server shows, the surface that the tester
// offers for it, and the end of a surface. What renders is connected from above.
#pragma once

#include <string>
#include <string_view>

#include "messages/block_cursor.h"
#include "platform/cancellation.h"

namespace ventrik {

// A rectangle of the map, in degrees.
struct OverlayArea {
  float lowerLeftLongitude;
  float lowerLeftLatitude;
  float upperRightLongitude;
  float upperRightLatitude;
};

// The renderer's two operations, called by the listener thread alone.
struct OverlayRenderer {
  std::string (*getSid)(const OverlayArea& area);  // makes a surface and returns its identifier
  void (*dropSid)(const std::string& sid);         // gives a surface back
};

// Connected once, before the listener starts; null while there is no renderer, and then no surface
// is offered.
extern const OverlayRenderer* overlayRenderer;

// The area between "<GLL>...<*>" and the "<GUR>...<*>" behind it. Without a <GLL> all of it is 0,
// without a <GUR> the upper right.
OverlayArea ReadOverlayArea(std::string_view eis);

// INFO_MAP_OVERLAY_AREA: prints how the area was read and, if weatherOn, answers with a surface for
// it. The answer takes no commandLock, and only in its send may the thread be cancelled, which then
// gives the surface back. Listener thread.
void HandleOverlayArea(const ReceivedBlock& block, const platform::CancellationDisabled& whole);

// INFO_MAP_OVERLAY_SURFACE_INVALID: gives the surface back that the text's <SID> names. Listener
// thread.
void HandleOverlaySurfaceInvalid(const ReceivedBlock& block);

}  // namespace ventrik
