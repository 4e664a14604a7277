// SPDX-License-Identifier: Apache-2.0
// What a model sent, one line a message, to be compared as a whole.
#pragma once

#include <string>
#include <vector>

#include "tests/bench/model/model_fixture.h"

namespace ventrik::bench {

inline std::string ValueText(const FieldValue& value) {
  std::string text;
  if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number);
  if (const auto* string = std::get_if<std::string>(&value)) return '\'' + *string + '\'';
  if (const auto* words = std::get_if<std::vector<std::int32_t>>(&value)) {
    for (const std::int32_t word : *words) text += (text.empty() ? "" : ",") + std::to_string(word);
    return '[' + text + ']';
  }
  if (const auto* strings = std::get_if<std::vector<std::string>>(&value)) {
    for (const std::string& string : *strings) text += '\'' + string + '\'';
    return '[' + text + ']';
  }
  return "?";  // doubles and destinations, which none of these tests is about
}

// "RESP_PLAY_PROMPT prompt=3 validState=1"; with "all: " before it if it is for everyone, and "1: "
// if it is for that client.
inline std::string SentText(const Sent& message) {
  std::string text;
  if (message.audience == Audience::everyone) text = "all: ";
  if (message.audience == Audience::one) text = std::to_string(message.client) + ": ";
  text += FunctionName(message.id);
  for (const MessageField& field : message.fields) {
    text += ' ' + field.name + '=' + ValueText(field.value);
  }
  return text;
}

using Lines = std::vector<std::string>;

inline Lines SentLines(const std::vector<Sent>& messages) {
  Lines lines;
  for (const Sent& message : messages) lines.push_back(SentText(message));
  return lines;
}

}  // namespace ventrik::bench
