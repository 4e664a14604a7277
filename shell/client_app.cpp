// SPDX-License-Identifier: Apache-2.0
// The life of the application object: what the process does when it comes and when it goes.
#include "state/client_app.h"

#include <pthread.h>
#include <unistd.h>

#include <utility>

#include "console/response_printer.h"
#include "ipc/client_communication_layer_posix.h"
#include "messages/response_filter.h"
#include "platform/thread_start.h"
#include "shell/command_id_names.h"
#include "shell/configuration.h"
#include "shell/ending.h"
#include "shell/history.h"
#include "shell/signals.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

// How long the end of the process waits for cancelled threads to unwind.
constexpr int kThreadPatience = 2000;  // milliseconds

class Lifetime {
 public:
  Lifetime() {
    LoadResponseFilter(app);
    LoadConfiguration(app);
    app.commandIdNames = CommandIdNames();
    responsePrinter = new ResponsePrinter;
    communicationLayer = new COMMUNICATION_LAYER;
    communicationLayer->SetChannelName(GetChannelName());
    InstallSignalHandlers(app);
  }

  ~Lifetime() {
    SaveHistory();
    EndThreads(app);
    delete std::exchange(responsePrinter, nullptr);
    delete std::exchange(communicationLayer, nullptr);
    app.history.clear();
    app.batchFiles.With([](auto& stack) {
      while (!stack.empty()) stack.pop_back();
    });
  }

  Lifetime(const Lifetime&) = delete;
  Lifetime& operator=(const Lifetime&) = delete;

  ClientApp app;
};

}  // namespace

void EndThreads(ClientApp& app) {
  // The replay too, although it would end with the process: it sends through what is freed then.
  for (const pthread_t thread : {app.listenerThread, app.monkeyThread, app.batchlogThread}) {
    if (thread != 0) pthread_cancel(thread);
  }
  if (platform::WaitForThreads(kThreadPatience)) return;
  SaveHistory();
  StopLog(*responsePrinter);
  _exit(0);
}

ClientApp& ClientApp::Instance() {
  static Lifetime lifetime;
  return lifetime.app;
}

}  // namespace ventrik
