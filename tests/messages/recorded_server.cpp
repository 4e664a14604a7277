// SPDX-License-Identifier: Apache-2.0
#include "tests/messages/recorded_server.h"

#include <utility>

#include "messages/listener.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

tests::RecordedServer* present = nullptr;
std::vector<std::string> events;
std::vector<Bytes> sentBlocks;

}  // namespace

struct COMMUNICATION_LAYER::Client {};

COMMUNICATION_LAYER::COMMUNICATION_LAYER() = default;
COMMUNICATION_LAYER::~COMMUNICATION_LAYER() = default;

int COMMUNICATION_LAYER::Send(const void* data, std::size_t length) {
  if (present->onSend) present->onSend();
  sentBlocks.push_back(Copy(data, length));
  events.push_back("send " + std::to_string(sentBlocks.back().Block().Word(0)));
  return present->sendResult;
}

void COMMUNICATION_LAYER::SetChannelName(std::string name) {
  events.push_back("name " + name);
}

int COMMUNICATION_LAYER::Disconnect() {
  events.push_back("disconnect");
  return 0;
}

void StartListener(ClientApp&) {
  events.push_back("listen");
}

namespace tests {

RecordedServer::RecordedServer() {
  events.clear();
  sentBlocks.clear();
  present = this;
  communicationLayer = &layer_;
}

RecordedServer::~RecordedServer() {
  communicationLayer = nullptr;
  present = nullptr;
}

std::vector<std::string> RecordedServer::TakeEvents() {
  return std::exchange(events, {});
}

std::vector<Bytes> RecordedServer::TakeSent() {
  return std::exchange(sentBlocks, {});
}

}  // namespace tests
}  // namespace ventrik
