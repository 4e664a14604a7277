// SPDX-License-Identifier: Apache-2.0
#include "messages/message_layout.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "messages/layout_table.h"
#include "messages/message_buffer.h"

namespace ventrik {
namespace {

// What values of a FieldValue are called in an error. In the order of its alternatives.
constexpr std::array<const char*, std::variant_size_v<FieldValue>> kValueNames = {
    "a number", "a double", "a text", "a list of texts", "a list of numbers", "destinations"};

// The alternative of FieldValue that fields of a kind have, holding 0 or nothing.
FieldValue EmptyValue(FieldKind kind) {
  switch (kind) {
    case FieldKind::Double:
      return 0.0;
    case FieldKind::Text:
    case FieldKind::String:
    case FieldKind::BareText:
    case FieldKind::Bytes:
      return std::string();
    case FieldKind::Strings:
      return std::vector<std::string>();
    case FieldKind::Words:
      return std::vector<std::int32_t>();
    case FieldKind::Destinations:
    case FieldKind::DestinationSum:
      return DestinationValues();
    case FieldKind::Word:
    case FieldKind::Byte:
    case FieldKind::Length:
    case FieldKind::Unknown:
      break;
  }
  return 0;
}

// Decoding. A list's loop ends with the block, so that a lying count costs nothing.

std::vector<std::string> ReadStrings(BlockCursor& tail, std::int32_t count) {
  std::vector<std::string> strings;
  for (std::int32_t i = 0; i < count && !tail.AtEnd(); ++i) strings.emplace_back(tail.NextString());
  return strings;
}

std::vector<std::int32_t> ReadWords(BlockCursor& tail, std::int32_t count) {
  std::vector<std::int32_t> words;
  for (std::int32_t i = 0; i < count && tail.Remaining() >= kWordSize; ++i) {
    words.push_back(tail.NextWord());
  }
  return words;
}

// Reads destinations until their running count reaches `count`: 1 for each, and with `countItems` 1
// more for each of its items.
DestinationValues ReadDestinations(BlockCursor& tail, std::int32_t count, bool countItems) {
  DestinationValues destinations;
  std::int64_t counted = 0;
  while (counted < count && !tail.AtEnd()) {
    std::string text(tail.NextString());
    const std::int32_t items = std::max(tail.NextWord(), 0);
    destinations.emplace_back(std::move(text), ReadStrings(tail, items));
    counted += countItems ? std::int64_t{1} + items : 1;
  }
  return destinations;
}

FieldValue ReadField(FieldKind kind, const ReceivedBlock& block, std::size_t headerWord,
                     BlockCursor& tail) {
  const std::int32_t word = block.Word(headerWord);
  switch (kind) {
    case FieldKind::Byte:
      return std::int32_t{block.Byte(headerWord * kWordSize)};
    case FieldKind::Double:
      return block.Double(headerWord * kWordSize);
    case FieldKind::Text:
    case FieldKind::BareText:  // always the last field, so it doesn't matter how far this moves on
      return std::string(tail.NextString());
    case FieldKind::String:
      return std::string(tail.OptionalString(word));
    case FieldKind::Strings:
      return ReadStrings(tail, word);
    case FieldKind::Words:
      return ReadWords(tail, word);
    case FieldKind::Destinations:
      return ReadDestinations(tail, word, false);
    case FieldKind::DestinationSum:
      return ReadDestinations(tail, word, true);
    case FieldKind::Bytes: {
      const auto* bytes = reinterpret_cast<const char*>(block.data);
      return std::string(bytes + (block.size - tail.Remaining()), tail.Remaining());
    }
    case FieldKind::Word:
    case FieldKind::Length:
    case FieldKind::Unknown:
      break;
  }
  return word;
}

// Encoding.

const auto& AsText(const FieldValue& value) {
  return std::get<std::string>(value);
}
const auto& AsStrings(const FieldValue& value) {
  return std::get<std::vector<std::string>>(value);
}
const auto& AsWords(const FieldValue& value) {
  return std::get<std::vector<std::int32_t>>(value);
}
const auto& AsTrip(const FieldValue& value) {
  return std::get<DestinationValues>(value);
}

std::int32_t CountOf(std::size_t size) {
  return static_cast<std::int32_t>(size);
}

std::int32_t CountWithItems(const DestinationValues& destinations) {
  std::size_t sum = destinations.size();
  for (const auto& destination : destinations) sum += destination.second.size();
  return CountOf(sum);
}

void AppendRaw(MessageBuffer& block, const void* bytes, std::size_t size) {
  block.Reserve(size);
  block.cursor = std::copy_n(static_cast<const std::uint8_t*>(bytes), size, block.cursor);
  block.used += size;
}

void WriteHeader(MessageBuffer& block, FieldKind kind, const FieldValue& value) {
  switch (kind) {
    case FieldKind::Word:
    case FieldKind::Length:
      return block.AppendWord(std::get<std::int32_t>(value));
    case FieldKind::Byte:
      return block.AppendWord(std::get<std::int32_t>(value) & 0xFF);
    case FieldKind::Double:
      return AppendRaw(block, &std::get<double>(value), sizeof(double));
    case FieldKind::Text:
    case FieldKind::String:
    case FieldKind::BareText:
      return block.AppendWord(TextLength(AsText(value)));
    case FieldKind::Strings:
      return block.AppendWord(CountOf(AsStrings(value).size()));
    case FieldKind::Words:
      return block.AppendWord(CountOf(AsWords(value).size()));
    case FieldKind::Destinations:
      return block.AppendWord(CountOf(AsTrip(value).size()));
    case FieldKind::DestinationSum:
      return block.AppendWord(CountWithItems(AsTrip(value)));
    case FieldKind::Bytes:
    case FieldKind::Unknown:
      return;
  }
}

void WriteStrings(MessageBuffer& block, const std::vector<std::string>& strings) {
  for (const std::string& text : strings) block.AppendString(text);
}

void WriteTail(MessageBuffer& block, FieldKind kind, const FieldValue& value) {
  switch (kind) {
    case FieldKind::String:
      if (TextLength(AsText(value)) == 0) return;
      return block.AppendString(AsText(value));
    case FieldKind::Text:
      return block.AppendString(AsText(value));
    case FieldKind::BareText:
      return AppendRaw(block, AsText(value).c_str(), WireText(AsText(value)).size() + 1);
    case FieldKind::Strings:
      return WriteStrings(block, AsStrings(value));
    case FieldKind::Words:
      for (const std::int32_t word : AsWords(value)) block.AppendWord(word);
      return;
    case FieldKind::Destinations:
    case FieldKind::DestinationSum:
      for (const auto& [text, items] : AsTrip(value)) {
        block.AppendString(text);
        block.AppendWord(CountOf(items.size()));
        WriteStrings(block, items);
      }
      return;
    case FieldKind::Bytes:
      return AppendRaw(block, AsText(value).data(), AsText(value).size());
    case FieldKind::Word:
    case FieldKind::Byte:
    case FieldKind::Double:
    case FieldKind::Length:
    case FieldKind::Unknown:
      return;
  }
}

std::string Quoted(const std::string& name) {
  return " '" + name + "'";
}

std::string KnownFields(const MessageLayout& layout) {
  return layout.count == 0 ? "; it has no fields" : "; it has " + std::string(layout.text);
}

// What is wrong with `given`, the field at `index` of the caller's; empty if it is fine.
std::string Complaint(const MessageLayout& layout, const MessageFields& given, std::size_t index) {
  const std::string message = FunctionName(layout.id);
  const MessageField& field = given[index];
  const auto* known = std::find_if(layout.begin(), layout.end(), [&](const LayoutField& candidate) {
    return candidate.name == field.name;
  });
  if (known == layout.end()) {
    return message + " has no field" + Quoted(field.name) + KnownFields(layout);
  }
  if (FindField(given, field.name) != &field.value) {
    return message + ": the field" + Quoted(field.name) + " is given twice" + KnownFields(layout);
  }
  const std::size_t wanted = EmptyValue(known->kind).index();
  if (field.value.index() == wanted) return {};
  return message + ": the field" + Quoted(field.name) + " is a " +
         std::string(FieldKindName(known->kind)) + " and takes " + kValueNames[wanted] +
         KnownFields(layout);
}

// The values of all fields of the layout, in its order.
std::vector<FieldValue> ValuesInOrder(const MessageLayout& layout, const MessageFields& given) {
  std::vector<FieldValue> values;
  for (const LayoutField& field : layout) {
    const FieldValue* value = FindField(given, field.name);
    values.push_back(value != nullptr ? *value : EmptyValue(field.kind));
  }
  return values;
}

}  // namespace

const FieldValue* FindField(const MessageFields& fields, std::string_view name) {
  const auto found = std::find_if(fields.begin(), fields.end(),
                                  [name](const MessageField& field) { return field.name == name; });
  return found == fields.end() ? nullptr : &found->value;
}

std::optional<MessageFields> DecodeMessage(ReceivedBlock block) {
  if (block.size < kWordSize) return std::nullopt;
  const MessageLayout* layout = FindLayout(block.Word(0));
  if (layout == nullptr) return std::nullopt;

  MessageFields fields;
  std::size_t headerWord = 1;
  BlockCursor tail(block, layout->HeaderSize());
  for (const LayoutField& field : *layout) {
    fields.push_back({std::string(field.name), ReadField(field.kind, block, headerWord, tail)});
    headerWord += HeaderWords(field.kind);
  }
  return fields;
}

bool EncodeMessage(FunctionId id, const MessageFields& fields, std::vector<std::uint8_t>& out,
                   std::string& error) {
  const MessageLayout* layout = FindLayout(id);
  if (layout == nullptr) {
    error = "no message has the number " + std::to_string(id);
    return false;
  }
  for (std::size_t i = 0; i < fields.size(); ++i) {
    std::string complaint = Complaint(*layout, fields, i);
    if (complaint.empty()) continue;
    error = std::move(complaint);
    return false;
  }

  const std::vector<FieldValue> values = ValuesInOrder(*layout, fields);
  MessageBuffer block(layout->HeaderSize() * kWordSize);
  block.AppendWord(id);
  for (std::size_t i = 0; i < values.size(); ++i) {
    WriteHeader(block, layout->fields[i].kind, values[i]);
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    WriteTail(block, layout->fields[i].kind, values[i]);
  }
  out.assign(block.base.get(), block.base.get() + block.used);
  return true;
}

}  // namespace ventrik
