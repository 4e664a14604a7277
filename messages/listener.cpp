// SPDX-License-Identifier: Apache-2.0
// Two listeners never receive at once: a new one takes its turn when the one that it replaces,
// which has been cancelled, has left. Whatever that one had in hand is then answered or owed to the
// new one (ipc/ipc.h).
#include "messages/listener.h"

#include <cstdio>
#include <memory>
#include <mutex>
#include <vector>

#include "ipc/client_communication_layer_posix.h"
#include "messages/dispatch.h"
#include "platform/cancellation.h"
#include "platform/thread_start.h"
#include "state/logger.h"
#include "state/out_of_memory.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kReceiveSize = 512000;  // bytes; the longest message is one byte shorter

std::mutex listenerTurn;

struct ListenerStart {
  ClientApp& app;
  COMMUNICATION_LAYER& layer;
  ResponsePrinter& printer;
  std::vector<char> buffer;
};

void PrintListenError(int result) {
  if (!listenerErrorsOn) return;
  logger->print(L"DDEMO:\t");
  logger->print(L"Listen Error: %d\n", result);
  logger->print(L"\n");
}

// Takes one message, or tells why there is none.
void ListenOnce(ListenerStart& start) {
  const int received = start.layer.Receive(start.buffer.data(), start.buffer.size());
  if (received >= 1) {
    HandleServerMessage(start.app, start.printer, start.buffer.data(),
                        static_cast<std::size_t>(received - 1));
  } else {
    // Without a pause: a server that stays away gives a fast stream of these lines.
    PrintListenError(received);
  }
}

void* ListenerThread(void* argument) {
  const std::unique_ptr<ListenerStart> start(static_cast<ListenerStart*>(argument));
  const std::lock_guard<std::mutex> turn(listenerTurn);
  while (!stopRequested) {
    RunIfMemoryLasts([&] { ListenOnce(*start); });
    pthread_testcancel();
  }
  std::fflush(stdout);
  return nullptr;
}

}  // namespace

void StartListener(ClientApp& app) {
  // First of all: without the memory for another one, the listener that there is goes on.
  auto start = std::make_unique<ListenerStart>(
      ListenerStart{app, *communicationLayer, *responsePrinter, std::vector<char>(kReceiveSize)});
  platform::CancelAndForget(app.listenerThread);
  std::fputs("creating listener thread\n", stderr);
  if (platform::StartThread(app.listenerThread, ListenerThread, start.get())) {
    static_cast<void>(start.release());  // the thread's now
  }
}

}  // namespace ventrik
