// SPDX-License-Identifier: Apache-2.0
#include "tests/messages/recording_layer.h"

#include <utility>

#include "state/process_state.h"

namespace ventrik {
namespace {

std::vector<Bytes> sentBlocks;

}  // namespace

struct COMMUNICATION_LAYER::Client {};

COMMUNICATION_LAYER::COMMUNICATION_LAYER() = default;
COMMUNICATION_LAYER::~COMMUNICATION_LAYER() = default;

int COMMUNICATION_LAYER::Send(const void* data, std::size_t length) {
  sentBlocks.push_back(Copy(data, length));
  return 0;
}

RecordingLayer::RecordingLayer() {
  sentBlocks.clear();
  communicationLayer = &layer_;
}

RecordingLayer::~RecordingLayer() {
  communicationLayer = nullptr;
}

std::vector<Bytes> RecordingLayer::TakeSent() {
  return std::exchange(sentBlocks, {});
}

}  // namespace ventrik
