// SPDX-License-Identifier: Apache-2.0
#include "messages/printer_pieces.h"

#include <cstddef>

#include "messages/message_buffer.h"
#include "messages/message_text.h"
#include "messages/word_printers.h"
#include "state/logger.h"

namespace ventrik {
namespace {

constexpr const char* kAudioSources[] = {
    "AudioIdle",
    "AudioAutomatic",
    "AudioManual",
    "AudioSafetyCamera",
};
constexpr std::size_t kAudioSourceCount = sizeof kAudioSources / sizeof kAudioSources[0];

}  // namespace

const char* ValidWord(std::int32_t state) {
  return state == 1 ? "valid" : "invalid";
}

const char* OnOffWord(std::int32_t state) {
  return state == 1 ? "on" : "off";
}

const char* TrueFalseWord(std::int32_t state) {
  return state == 1 ? "true" : "false";
}

const char* AudioSourceWord(std::int32_t source) {
  const auto index = static_cast<std::uint32_t>(source);
  return index < kAudioSourceCount ? kAudioSources[index] : "invalid value";
}

std::vector<std::string_view> NextStrings(BlockCursor& cursor, std::int32_t count) {
  std::vector<std::string_view> strings;
  for (std::int32_t i = 0; i < count && !cursor.AtEnd(); ++i) {
    strings.push_back(cursor.NextString());
  }
  return strings;
}

std::vector<std::int32_t> NextWords(BlockCursor& cursor, std::int32_t count) {
  std::vector<std::int32_t> words;
  for (std::int32_t i = 0; i < count && cursor.Remaining() >= kWordSize; ++i) {
    words.push_back(cursor.NextWord());
  }
  return words;
}

std::string_view OneString(const ReceivedBlock& block) {
  return BlockCursor(block, 2).OptionalString(block.Word(1));
}

void AppendQuotedLine(std::string& text, std::string_view label, std::string_view value) {
  text += label;
  AppendLine(text, "\"", value, "\"\n");
}

void AppendQuotedList(std::string& text, std::string_view label,
                      const std::vector<std::string_view>& strings) {
  text += label;
  for (const std::string_view string : strings) AppendLine(text, "\"", string, "\" ");
  text += '\n';
}

void AppendRouteModes(std::string& text, std::string_view label, BlockCursor& cursor,
                      std::int32_t count) {
  text += label;
  for (std::int32_t i = 0; i < count && cursor.Remaining() >= kWordSize; ++i) {
    AppendLine(text, "\"", NextRouteMode(cursor), "\" ");
  }
  text += '\n';
}

void AppendNumbers(std::string& text, std::string_view label,
                   const std::vector<std::int32_t>& numbers) {
  text += label;
  for (const std::int32_t number : numbers) AppendFormat(text, "%d ", number);
  text += '\n';
}

void AppendNumbered(std::string& text, std::int32_t number, std::string_view entry) {
  AppendLine(text, "   ", std::to_string(number), ". (");
  AppendLine(text, "", entry, ")\n");
}

void AppendEvents(std::string& text, std::string_view label, BlockCursor& cursor,
                  std::int32_t count) {
  text += label;
  int number = 0;
  for (const std::string_view event : NextStrings(cursor, count)) {
    AppendNumbered(text, ++number, event);
  }
}

void AppendEnabledLine(std::string& text, const char* name, std::int32_t state) {
  if (state == 1 || state == 2) {
    AppendFormat(text, "%s> %s\n", name, state == 1 ? "Enabled" : "Disabled");
  } else {
    AppendFormat(text, "%s> Invalid (%d)\n", name, state);
  }
}

void AppendNotImplemented(std::string& text, const char* name) {
  AppendFormat(text, "%s> %sNot implemented.\n%s", name, ColourRed, ColourReset);
}

}  // namespace ventrik
