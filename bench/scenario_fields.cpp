// SPDX-License-Identifier: Apache-2.0
#include "bench/scenario_fields.h"

#include <utility>

namespace ventrik::bench {
namespace {

// The value of a hexadecimal digit; -1 if it is none.
int DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

bool IsBlank(char character) {
  return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool ReadWord(const JsonPlace& place, std::int32_t& word) {
  std::int64_t value = 0;
  if (!ReadInteger(place, INT32_MIN, INT32_MAX, value)) return false;
  word = static_cast<std::int32_t>(value);
  return true;
}

bool ReadTexts(const JsonPlace& place, std::vector<std::string>& texts) {
  return ReadElements(place, texts, "texts", ReadText);
}

bool ReadDestination(const JsonPlace& place, DestinationValues::value_type& destination) {
  if (place.node->kind != JsonNode::Kind::List || place.node->nodes.size() != 2) {
    return place.Fail("takes [\"text\", [\"item\", ...]]");
  }
  return ReadText(place.Element(0), destination.first) &&
         ReadTexts(place.Element(1), destination.second);
}

bool ReadValue(const JsonPlace& place, FieldKind kind, FieldValue& value) {
  switch (kind) {
    case FieldKind::Word:
    case FieldKind::Length:
      return ReadWord(place, value.emplace<std::int32_t>());
    case FieldKind::Byte: {
      std::int64_t number = 0;
      if (!ReadInteger(place, 0, UINT8_MAX, number)) return false;
      value = static_cast<std::int32_t>(number);
      return true;
    }
    case FieldKind::Double:
      value = place.node->decimal;
      return place.node->kind == JsonNode::Kind::Integer ||
             place.node->kind == JsonNode::Kind::Decimal || place.Fail("takes a number");
    case FieldKind::Text:
    case FieldKind::String:
    case FieldKind::BareText:
      return ReadText(place, value.emplace<std::string>());
    case FieldKind::Bytes: {
      Block bytes;
      if (place.node->kind != JsonNode::Kind::Text) {
        return place.Fail("takes a text of hexadecimal digits");
      }
      if (!ParseHexText(place, place.node->text, bytes)) return false;
      value = std::string(bytes.begin(), bytes.end());
      return true;
    }
    case FieldKind::Strings:
      return ReadTexts(place, value.emplace<std::vector<std::string>>());
    case FieldKind::Words:
      return ReadElements(place, value.emplace<std::vector<std::int32_t>>(), "numbers", ReadWord);
    case FieldKind::Destinations:
    case FieldKind::DestinationSum:
      return ReadElements(place, value.emplace<DestinationValues>(), "destinations",
                          ReadDestination);
    case FieldKind::Unknown:
      break;
  }
  return place.Fail("can't be given");
}

// The rest of a complaint: what the message has.
std::string FieldList(const MessageLayout& layout) {
  if (layout.count == 0) return " has no fields";
  return " has " + std::string(layout.text);
}

}  // namespace

JsonPlace JsonPlace::Member(const JsonNode& member) const {
  return {&member, path.empty() ? member.key : path + "." + member.key, error};
}

JsonPlace JsonPlace::Element(std::size_t index) const {
  return {&node->nodes[index], path + "[" + std::to_string(index) + "]", error};
}

bool JsonPlace::Fail(const std::string& what) const {
  const std::string name = path.empty() ? "the scenario" : path;
  *error =
      std::to_string(node->line) + ":" + std::to_string(node->column) + ": " + name + ": " + what;
  return false;
}

bool ReadInteger(const JsonPlace& place, std::int64_t least, std::int64_t most,
                 std::int64_t& value) {
  const std::string range = std::to_string(least) + " to " + std::to_string(most);
  value = place.node->integer;
  const bool fits = place.node->kind == JsonNode::Kind::Integer && value >= least && value <= most;
  return fits || place.Fail("takes a whole number from " + range);
}

bool ReadText(const JsonPlace& place, std::string& text) {
  if (place.node->kind != JsonNode::Kind::Text) return place.Fail("takes a text");
  if (place.node->text.find('\0') != std::string::npos) {
    return place.Fail("a text can't hold a NUL");
  }
  text = place.node->text;
  return true;
}

bool ParseHexText(const JsonPlace& place, std::string_view text, Block& bytes) {
  int high = -1;
  for (const char character : text) {
    if (IsBlank(character)) continue;
    const int digit = DigitValue(character);
    if (digit < 0) return place.Fail("a character that is no hexadecimal digit");
    if (high < 0) {
      high = digit;
      continue;
    }
    bytes.push_back(static_cast<std::uint8_t>(high * 16 + digit));
    high = -1;
  }
  return high < 0 || place.Fail("odd number of digits");
}

bool HoldsText(FieldKind kind) {
  switch (kind) {
    case FieldKind::Text:
    case FieldKind::String:
    case FieldKind::BareText:
    case FieldKind::Strings:
    case FieldKind::Destinations:
    case FieldKind::DestinationSum:
      return true;
    case FieldKind::Word:
    case FieldKind::Byte:
    case FieldKind::Double:
    case FieldKind::Length:
    case FieldKind::Words:
    case FieldKind::Bytes:
    case FieldKind::Unknown:
      break;
  }
  return false;
}

bool ReadFields(const JsonPlace& place, std::int32_t id, MessageFields& fields) {
  if (place.node->kind != JsonNode::Kind::Object) return place.Fail("takes an object");
  const MessageLayout& layout = *FindLayout(id);
  for (const JsonNode& member : place.node->nodes) {
    const LayoutField* known = nullptr;
    for (const LayoutField& field : layout) {
      if (field.name == member.key) known = &field;
    }
    const JsonPlace value = place.Member(member);
    if (known == nullptr) {
      return value.Fail("no such field; " + std::string(FunctionName(id)) + FieldList(layout));
    }
    fields.push_back({member.key, {}});
    if (!ReadValue(value, known->kind, fields.back().value)) return false;
  }
  return true;
}

}  // namespace ventrik::bench
