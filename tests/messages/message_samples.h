// SPDX-License-Identifier: Apache-2.0
// Every message once or more, as bytes and as fields.
//
// The bytes are written out in full; what the encoders, the layouts and the readers make of them is
// the business of the tests.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/messages/bytes.h"

namespace ventrik {

struct MessageSample {
  Bytes golden;
  std::string fields;  // as Describe() has them (messages/described_fields.h)
};

struct RequestSample {
  Bytes encoded;  // what the message's encoder made
  Bytes golden;
  std::string fields;
};

// Every message that the tester can build.
std::vector<RequestSample> RequestSamples();

// Every message that the tester can print.
std::vector<MessageSample> ResponseSamples();

inline std::vector<MessageSample> AllSamples() {
  std::vector<MessageSample> samples = ResponseSamples();
  for (RequestSample& request : RequestSamples()) {
    samples.push_back({request.golden, request.fields});
  }
  return samples;
}

inline void PrintTo(const MessageSample& sample, std::ostream* out) {
  *out << sample.golden;
}
inline void PrintTo(const RequestSample& sample, std::ostream* out) {
  *out << sample.golden;
}

}  // namespace ventrik
