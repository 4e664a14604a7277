// SPDX-License-Identifier: Apache-2.0
#include "bench/model/replies.h"

#include <algorithm>
#include <string>
#include <utility>

namespace ventrik::bench {
namespace {

Block Encode(FunctionId id, const MessageFields& fields) {
  Block block;
  std::string error;
  EncodeMessage(id, fields, block, error);
  return block;
}

bool IsAmong(const std::vector<std::string_view>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

Block EncodeAnswer(FunctionId id, MessageFields fields,
                   const std::vector<std::string_view>& repeated) {
  Block block = Encode(id, fields);
  if (block.size() <= kMaxAnswer) return block;
  const auto isRepeated = [&repeated](const MessageField& field) {
    return IsAmong(repeated, field.name);
  };
  fields.erase(std::remove_if(fields.begin(), fields.end(), isRepeated), fields.end());
  return Encode(id, fields);
}

}  // namespace

void Replies::Answer(FunctionId id, MessageFields fields,
                     const std::vector<std::string_view>& repeated) {
  messages_.push_back(
      {Audience::requester, kAnswerTime, EncodeAnswer(id, std::move(fields), repeated)});
}

void Replies::AnswerLater(FunctionId id, std::function<MessageFields()> fields,
                          std::vector<std::string_view> repeated) {
  auto make = [id, fields = std::move(fields), repeated = std::move(repeated)] {
    return EncodeAnswer(id, fields(), repeated);
  };
  messages_.push_back({Audience::requester, kAnswerTime, {}, std::move(make)});
}

void Replies::DoLater(std::function<void()> work) {
  auto make = [work = std::move(work)] {
    work();
    return Block();
  };
  messages_.push_back({Audience::requester, kAnswerTime, {}, std::move(make)});
}

void Replies::Notify(FunctionId id, const MessageFields& fields, Milliseconds after) {
  messages_.push_back({Audience::everyone, after, Encode(id, fields)});
}

void Replies::Tell(ClientNumber client, FunctionId id, const MessageFields& fields) {
  messages_.push_back({Audience::one, kAnswerTime, Encode(id, fields), nullptr, client});
}

std::vector<Outgoing> Replies::Take() {
  return std::exchange(messages_, {});
}

}  // namespace ventrik::bench
