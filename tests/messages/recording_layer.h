// SPDX-License-Identifier: Apache-2.0
// Stands in for the communication layer: what is sent is kept instead.
//
// recording_layer.cpp defines COMMUNICATION_LAYER's operations, so a program that has it must not
// use a real one.
#pragma once

#include <vector>

#include "ipc/client_communication_layer_posix.h"
#include "tests/messages/bytes.h"

namespace ventrik {

// The process-wide layer for a scope.
class RecordingLayer {
 public:
  RecordingLayer();
  ~RecordingLayer();
  RecordingLayer(const RecordingLayer&) = delete;
  RecordingLayer& operator=(const RecordingLayer&) = delete;

  // The blocks sent since the last call, oldest first.
  std::vector<Bytes> TakeSent();

 private:
  COMMUNICATION_LAYER layer_;
};

}  // namespace ventrik
