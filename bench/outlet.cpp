// SPDX-License-Identifier: Apache-2.0
#include "bench/outlet.h"

#include <algorithm>
#include <utility>

#include "bench/damage.h"
#include "messages/block_cursor.h"
#include "messages/message_buffer.h"

namespace ventrik::bench {
namespace {

// What is posted within this time overtakes a reordered message.
constexpr std::chrono::milliseconds kOvertaking{100};

// What all faults together make of one message, at most.
constexpr std::int32_t kMostCopies = 200'000;

std::optional<std::int32_t> NumberOf(const Block& block) {
  if (block.size() < kWordSize) return std::nullopt;
  return ReceivedBlock{block.data(), block.size()}.Word(0);
}

}  // namespace

void Outlet::Arm(const std::vector<Fault>& faults, std::uint32_t seed) {
  int number = 0;
  for (const Fault& fault : faults) {
    const std::string series = "fault " + std::to_string(++number);
    if (StageOf(fault.kind) == FaultStage::answer) faults_.emplace_back(fault, seed, series);
  }
}

void Outlet::Post(IpcPeer* client, Block block, std::chrono::milliseconds after) {
  Parcel parcel{std::move(block), after};
  ApplyFaults(*client, parcel);
  for (std::int32_t copy = 1; copy < parcel.copies; ++copy) {
    sender_.Post(client, parcel.block, parcel.after);
  }
  if (parcel.copies > 0) sender_.Post(client, std::move(parcel.block), parcel.after);
}

void Outlet::ApplyFaults(const IpcPeer& client, Parcel& parcel) {
  const std::lock_guard<std::mutex> hold(lock_);
  const auto sinceStart = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now() - start_);
  const auto number = NumberOf(parcel.block);  // as it was before the first fault
  for (ArmedFault& fault : faults_) {
    if (!fault.Strikes(number.value_or(kNoNumber), sinceStart)) continue;
    Commit(fault, parcel);
    strikes_.push_back({fault.fault().kind, number, client.processId});
  }
  if (parcel.copies == 0)
    lost_.Count(number, std::string("struck by ") + FaultName(FaultKind::drop));
}

void Outlet::TellStrikes() {
  std::vector<Strike> strikes;
  {
    const std::lock_guard<std::mutex> hold(lock_);
    strikes.swap(strikes_);
  }
  for (const Strike& strike : strikes) {
    if (onStrike) onStrike(strike);
  }
}

void Outlet::Commit(ArmedFault& fault, Parcel& parcel) {
  switch (fault.fault().kind) {
    case FaultKind::drop:
      parcel.copies = 0;
      break;
    case FaultKind::late:
      parcel.after += fault.fault().duration;
      break;
    case FaultKind::duplicate:
      parcel.copies = std::min(2 * parcel.copies, kMostCopies);
      break;
    case FaultKind::reorder:
      parcel.after += kOvertaking;
      break;
    case FaultKind::flood:
      if (parcel.copies > 0) {
        parcel.copies = std::min(parcel.copies + fault.fault().copies, kMostCopies);
      }
      break;
    case FaultKind::oversize:
      parcel.block = Oversized(std::move(parcel.block));
      break;
    case FaultKind::unknown:
      parcel.block = WithUnknownNumber(std::move(parcel.block));
      break;
    case FaultKind::truncate:
      parcel.block = Truncated(std::move(parcel.block), fault.random());
      break;
    case FaultKind::lie:
      parcel.block = WithALie(std::move(parcel.block), fault.random());
      break;
    case FaultKind::endless:
      parcel.block = WithoutAnEnd(std::move(parcel.block));
      break;
    default:  // strikes at another stage
      break;
  }
}

std::string Outlet::FaultsDone() const {
  const std::lock_guard<std::mutex> hold(lock_);
  return DescribeFaultsDone(faults_);
}

std::vector<std::string> Outlet::Lost() const {
  const std::lock_guard<std::mutex> hold(lock_);
  return lost_.Lines();
}

}  // namespace ventrik::bench
