// SPDX-License-Identifier: Apache-2.0
// ventrik, the console tester of the Kelmora API. Arguments are ignored.
#include <clocale>

#include "console/logger_posix.h"
#include "platform/graphics.h"
#include "shell/wiring.h"
#include "state/client_app.h"
#include "state/process_state.h"

int main() {
  // All text on standard output is UTF-8, whatever the environment says.
  std::setlocale(LC_CTYPE, "C.UTF-8");
  platform::PrepareGraphics();
  // Never destroyed: what ends after main still prints through it.
  ventrik::logger = new ventrik::Logger_posix;
  ventrik::ConnectRooms();
  ventrik::ClientApp::Instance().Run();
  return 0;
}
