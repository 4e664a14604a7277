// SPDX-License-Identifier: Apache-2.0
#include "bench/request_faults.h"

#include <cerrno>
#include <cstdint>
#include <thread>
#include <utility>

#include "messages/block_cursor.h"
#include "messages/message_buffer.h"

namespace ventrik::bench {
namespace {

constexpr std::size_t kMostUnread = 100;          // a client that goes on must not eat the memory
constexpr std::chrono::seconds kLongestWait{20};  // more than any tester's 15
constexpr int kRefused = ECONNREFUSED;

// The message's first word; nothing if it has none. Waits for it, open to cancellation.
Block TakeNumber(const IpcMessage& message, const platform::CancellationDisabled& disabled) {
  if (message.receiveId == -1 || message.remaining < kWordSize) return {};
  Block bytes(kWordSize);
  const platform::CancellationAllowed allowed(disabled);
  MsgRead(message.receiveId, bytes.data(), bytes.size(), message.offset);
  return bytes;
}

std::optional<std::int32_t> NumberOf(const Block& bytes) {
  if (bytes.empty()) return std::nullopt;
  return ReceivedBlock{bytes.data(), bytes.size()}.Word(0);
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
    if (onStrike) onStrike({what.kind});
    if (what.kind == FaultKind::refuse) return kRefused;
    std::this_thread::sleep_for(what.duration);
  }
  return 0;
}

RequestFaults::Fate RequestFaults::Request(IpcMessage* message,
                                           std::chrono::milliseconds sinceStart,
                                           const platform::CancellationDisabled& disabled) {
  // What is not let go is kept, also when the thread is cancelled.
  struct InHand {
    RequestFaults& faults;
    IpcMessage* message;
    std::chrono::milliseconds since;
    ~InHand() {
      if (message != nullptr) faults.Keep(message, since);
    }
  };
  takenAhead_.clear();
  if (faults_.empty()) return Fate::read;
  GiveUpOld(sinceStart);
  InHand inHand{*this, message, sinceStart};
  takenAhead_ = TakeNumber(*message, disabled);
  const auto number = NumberOf(takenAhead_);
  const std::uint32_t process = message->senderProcess;
  for (ArmedFault& fault : faults_) {
    const Fault& what = fault.fault();
    if (StageOf(what.kind) != FaultStage::request) continue;
    if (!fault.Strikes(number.value_or(kNoNumber), sinceStart)) continue;
    if (onStrike) onStrike({what.kind, number, process});
    switch (what.kind) {
      case FaultKind::hang: {
        const platform::CancellationAllowed waiting(disabled);
        std::this_thread::sleep_for(what.duration);
        break;
      }
      case FaultKind::miscount:
        Miscount(std::exchange(inHand.message, nullptr));
        return Fate::gone;
      case FaultKind::die:
      case FaultKind::restart:
        deadFor_ = what.duration;
        return what.kind == FaultKind::die ? Fate::die : Fate::restart;
      default:
        return Fate::gone;
    }
  }
  inHand.message = nullptr;
  return Fate::read;
}

void RequestFaults::Keep(IpcMessage* message, std::chrono::milliseconds since) {
  unread_.push_back({message, since});
  if (unread_.size() > kMostUnread) GiveUpOldest();
}

void RequestFaults::GiveUpOld(std::chrono::milliseconds now) {
  while (!unread_.empty() && now - unread_.front().since > kLongestWait) GiveUpOldest();
}

void RequestFaults::GiveUpOldest() {
  ipc_finish(unread_.front().message, EIO);
  unread_.pop_front();
}

void RequestFaults::GiveBack() {
  while (!unread_.empty()) GiveUpOldest();
}

std::string RequestFaults::FaultsDone() const {
  return DescribeFaultsDone(faults_);
}

}  // namespace ventrik::bench
