// SPDX-License-Identifier: Apache-2.0
// Every message cut short at every byte, and every count and length word replaced by a lie. Blocks
// lie against unreadable memory, so leaving one ends the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "messages/function_ids.h"
#include "messages/message_layout.h"
#include "tests/messages/guarded_block.h"
#include "tests/messages/message_samples.h"

namespace ventrik {
namespace {

// The bytes that the texts and list elements of the fields stand for, at least.
struct Weight {
  std::size_t operator()(std::int32_t) const { return 0; }
  std::size_t operator()(double) const { return 0; }
  std::size_t operator()(const std::string& text) const { return text.size(); }
  std::size_t operator()(const std::vector<std::int32_t>& words) const { return 4 * words.size(); }
  std::size_t operator()(const std::vector<std::string>& texts) const {
    std::size_t sum = 0;
    for (const std::string& text : texts) sum += std::max<std::size_t>(text.size(), 1);
    return sum;
  }
  std::size_t operator()(const DestinationValues& destinations) const {
    std::size_t sum = 0;
    for (const auto& [text, items] : destinations) {
      sum += std::max<std::size_t>(text.size(), 1) + (*this)(items);
    }
    return sum;
  }
};

// Decodes a guarded copy of the first `size` bytes. What comes out must have come from there, and
// must be fit to be encoded again.
void DecodeInsideOf(const Bytes& bytes, std::size_t size) {
  const GuardedBlock guarded(bytes.value.data(), size);
  const std::optional<MessageFields> fields = DecodeMessage(guarded.Block());
  ASSERT_EQ(fields.has_value(), size >= 4);
  if (!fields) return;

  std::size_t weight = 4;
  for (const MessageField& field : *fields) weight += std::visit(Weight(), field.value);
  EXPECT_LE(weight, size);

  std::vector<std::uint8_t> encoded;
  std::string error;
  const auto id = static_cast<FunctionId>(guarded.Block().Word(0));
  EXPECT_TRUE(EncodeMessage(id, *fields, encoded, error)) << error;
}

TEST(MessagePrefix, EveryPrefixOfEveryMessageIsReadWithinTheBlock) {
  for (const MessageSample& sample : AllSamples()) {
    SCOPED_TRACE(sample.golden);
    for (std::size_t size = 0; size <= sample.golden.value.size(); ++size) {
      SCOPED_TRACE(size);
      DecodeInsideOf(sample.golden, size);
    }
  }
}

TEST(MessagePrefix, NoWordCanLeadOutOfTheBlock) {
  for (const MessageSample& sample : AllSamples()) {
    SCOPED_TRACE(sample.golden);
    for (std::size_t offset = 4; offset + 4 <= sample.golden.value.size(); offset += 4) {
      for (const std::int32_t lie : {-1, 0, 1, 1000, 0x7FFFFFFF, -0x7FFFFFFF - 1}) {
        Bytes lying = sample.golden;
        std::memcpy(lying.value.data() + offset, &lie, sizeof lie);
        DecodeInsideOf(lying, lying.value.size());
      }
    }
  }
}

TEST(MessagePrefix, TextsWithoutAnyTerminatorStayWithinTheBlock) {
  for (const MessageSample& sample : AllSamples()) {
    SCOPED_TRACE(sample.golden);
    Bytes endless = sample.golden;
    std::fill(endless.value.begin() + 4, endless.value.end(), std::uint8_t{'x'});
    for (std::size_t size = 4; size <= endless.value.size(); ++size) DecodeInsideOf(endless, size);
  }
}

}  // namespace
}  // namespace ventrik
