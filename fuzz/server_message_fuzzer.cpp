// SPDX-License-Identifier: Apache-2.0
// Any block from the server must be handled: no crash, nothing read outside of it, no leak.
#include <cstddef>
#include <cstdint>

#include "console/response_printer.h"
#include "fuzz/fuzzed_console.h"
#include "messages/dispatch.h"
#include "messages/overlay_messages.h"

namespace {

const ventrik::OverlayRenderer kRenderer = {
    [](const ventrik::OverlayArea&) { return std::string("gwx_0"); },
    [](const std::string&) {},
};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  ventrik::PrepareConsole();
  ventrik::overlayRenderer = &kRenderer;
  ventrik::weatherOn = 1;
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ventrik::ClientApp app;
  ventrik::ResponsePrinter printer;
  app.pendingListAssignments.Store({{L"first", 1}, {L"second", 2}, {L"none", 0}});
  ventrik::HandleServerMessage(app, printer, data, size);
  return 0;
}
