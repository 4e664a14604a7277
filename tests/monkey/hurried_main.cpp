// SPDX-License-Identifier: Apache-2.0
// ventrik with a monkey in a hurry: it sleeps a hundredth of the time, or as many times less as the
// environment variable HURRY says. All else is the real program.
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

#include "console/logger_posix.h"
#include "monkey/pace.h"
#include "platform/graphics.h"
#include "shell/wiring.h"
#include "state/client_app.h"
#include "state/process_state.h"

namespace {

unsigned hurry = 100;

void TakeHurry() {
  const char* text = std::getenv("HURRY");
  if (text != nullptr) hurry = static_cast<unsigned>(std::max(1, std::atoi(text)));
}

int ShortSleep(unsigned microseconds) {
  return usleep(microseconds / hurry);
}

}  // namespace

int main() {
  TakeHurry();
  std::setlocale(LC_CTYPE, "C.UTF-8");
  platform::PrepareGraphics();
  ventrik::logger = new ventrik::Logger_posix;
  ventrik::ConnectRooms();
  ventrik::pauseSource = ShortSleep;
  ventrik::ClientApp::Instance().Run();
  return 0;
}
