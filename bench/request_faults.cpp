// SPDX-License-Identifier: Apache-2.0
#include "bench/request_faults.h"

#include <cerrno>
#include <cstdint>
#include <thread>

#include "messages/block_cursor.h"

namespace ventrik::bench {
namespace {

constexpr std::size_t kMostUnanswered = 100;  // a client that goes on must not eat the memory
constexpr int kRefused = ECONNREFUSED;

// The message's number, looked at without taking anything.
std::int32_t PeekNumber(const IpcMessage& message) {
  std::uint8_t bytes[4] = {};
  if (message.receiveId == -1 || message.remaining < sizeof bytes) return -1;
  MsgRead(message.receiveId, bytes, sizeof bytes, message.offset);
  return ReceivedBlock{bytes, sizeof bytes}.Word(0);
}

// Answers with one byte less than there was, so that its sender takes it for a failure.
void Miscount(IpcMessage* message) {
  if (message->receiveId != -1 && message->remaining > 0) {
    MsgReply(message->receiveId, static_cast<long>(message->remaining) - 1, nullptr, 0);
    message->receiveId = -1;
  }
  ipc_finish(message, 0);
}

}  // namespace

RequestFaults::~RequestFaults() {
  GiveBack();
}

void RequestFaults::Arm(const std::vector<Fault>& faults, std::uint32_t seed) {
  int number = 0;
  for (const Fault& fault : faults) {
    const std::string series = "fault " + std::to_string(++number);
    if (StageOf(fault.kind) != FaultStage::answer) faults_.emplace_back(fault, seed, series);
  }
}

int RequestFaults::Handshake(std::chrono::milliseconds sinceStart) {
  for (ArmedFault& fault : faults_) {
    const Fault& what = fault.fault();
    if (StageOf(what.kind) != FaultStage::handshake) continue;
    if (!fault.Strikes(std::nullopt, sinceStart)) continue;
    if (what.kind == FaultKind::refuse) return kRefused;
    std::this_thread::sleep_for(what.duration);
  }
  return 0;
}

RequestFaults::Fate RequestFaults::Request(IpcMessage* message,
                                           std::chrono::milliseconds sinceStart,
                                           const platform::CancellationDisabled& disabled) {
  if (faults_.empty()) return Fate::read;
  const std::int32_t number = PeekNumber(*message);
  for (ArmedFault& fault : faults_) {
    const Fault& what = fault.fault();
    if (StageOf(what.kind) != FaultStage::request) continue;
    if (!fault.Strikes(number, sinceStart)) continue;
    switch (what.kind) {
      case FaultKind::hang: {
        const platform::CancellationAllowed waiting(disabled);
        std::this_thread::sleep_for(what.duration);
        break;
      }
      case FaultKind::miscount:
        Miscount(message);
        return Fate::gone;
      case FaultKind::die:
        Keep(message);
        deadFor_ = what.duration;
        return Fate::die;
      default:
        Keep(message);
        return Fate::gone;
    }
  }
  return Fate::read;
}

void RequestFaults::Keep(IpcMessage* message) {
  unanswered_.push_back(message);
  if (unanswered_.size() <= kMostUnanswered) return;
  ipc_finish(unanswered_.front(), EIO);
  unanswered_.pop_front();
}

void RequestFaults::GiveBack() {
  for (IpcMessage* message : unanswered_) ipc_finish(message, EIO);
  unanswered_.clear();
}

std::string RequestFaults::FaultsDone() const {
  return DescribeFaultsDone(faults_);
}

}  // namespace ventrik::bench
