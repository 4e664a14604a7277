// SPDX-License-Identifier: Apache-2.0
// The parser reports its events one by one; an iterator that counts line feeds as the parser reads
// tells the line of each. The parser reads nothing ahead but the one character that ends a number.
#include "bench/json_tree.h"

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

namespace ventrik::bench {
namespace {

struct Position {
  int line = 1;
  int column = 0;  // bytes read of that line
  char last = '\0';
};

// Counts what is read into a place that all its copies share.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, Position* position) : at_(at), position_(position) {}

  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    position_->last = *at_++;
    ++position_->column;
    if (position_->last != '\n') return *this;
    ++position_->line;
    position_->column = 0;
    return *this;
  }
  CountingIterator operator++(int) {
    const CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  Position* position_;
};

// What the parser says of a fault, without its name and the position, which is given back in
// `position` where the parser knows better.
//   "[json.exception.parse_error.101] parse error at line 7, column 2: syntax error ..."
std::string Reason(std::string_view what, Position& position) {
  const std::size_t name = what.find("] ");
  if (name != what.npos) what.remove_prefix(name + 2);
  const std::string text(what);
  int length = 0;
  const int read = std::sscanf(text.c_str(), "parse error at line %d, column %d: %n",
                               &position.line, &position.column, &length);
  return read == 2 && length > 0 ? text.substr(static_cast<std::size_t>(length)) : text;
}

// Builds the tree. Returning false from an event ends the parsing.
class Builder {
 public:
  using Json = nlohmann::json;

  explicit Builder(const Position& position) : position_(position) { open_.push_back(&root_); }

  bool null() { return Add(JsonNode::Kind::Nothing); }
  bool boolean(bool value) {
    Add(JsonNode::Kind::Flag);
    added_->flag = value;
    return true;
  }
  bool number_integer(Json::number_integer_t value) {
    Add(JsonNode::Kind::Integer);
    added_->integer = value;
    added_->decimal = static_cast<double>(value);
    return true;
  }
  bool number_unsigned(Json::number_unsigned_t value) {
    if (value > INT64_MAX) return number_float(static_cast<double>(value), {});
    return number_integer(static_cast<std::int64_t>(value));
  }
  bool number_float(Json::number_float_t value, const std::string&) {
    Add(JsonNode::Kind::Decimal);
    added_->decimal = value;
    return true;
  }
  bool string(std::string& value) {
    Add(JsonNode::Kind::Text);
    added_->text = std::move(value);
    return true;
  }
  bool binary(Json::binary_t&) { return false; }  // JSON text has none
  bool start_object(std::size_t) { return Open(JsonNode::Kind::Object); }
  bool end_object() { return Close(); }
  bool start_array(std::size_t) { return Open(JsonNode::Kind::List); }
  bool end_array() { return Close(); }
  bool key(std::string& value) {
    if (open_.back()->Find(value) != nullptr) return Fail("the key \"" + value + "\" again");
    key_ = std::move(value);
    keyLine_ = position_.line;
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& fault) {
    Position position = position_;
    const std::string reason = Reason(fault.what(), position);
    return FailAt(position, reason);
  }

  JsonNode TakeTree() { return std::move(root_.nodes.front()); }
  const std::string& error() const { return error_; }

 private:
  bool Add(JsonNode::Kind kind) {
    JsonNode& parent = *open_.back();
    added_ = &parent.nodes.emplace_back();
    added_->kind = kind;
    const bool isMember = parent.kind == JsonNode::Kind::Object;
    const bool isNumber = kind == JsonNode::Kind::Integer || kind == JsonNode::Kind::Decimal;
    added_->line = position_.line - (isNumber && position_.last == '\n' ? 1 : 0);
    if (!isMember) return true;
    added_->line = keyLine_;
    added_->key = std::move(key_);
    return true;
  }
  bool Open(JsonNode::Kind kind) {
    if (open_.size() > kMaxJsonDepth) return Fail("too many lists and objects in one another");
    Add(kind);
    open_.push_back(added_);
    return true;
  }
  bool Close() {
    open_.pop_back();
    return true;
  }
  bool Fail(const std::string& reason) { return FailAt(position_, reason); }
  bool FailAt(const Position& position, const std::string& reason) {
    error_ = std::to_string(position.line) + ":" + std::to_string(position.column) + ": " + reason;
    return false;
  }

  const Position& position_;
  JsonNode root_;                // its one node will be the tree
  std::vector<JsonNode*> open_;  // the root and what is not closed yet; only the last one grows
  JsonNode* added_ = nullptr;    // the newest
  std::string key_;              // of the next member
  int keyLine_ = 0;
  std::string error_;
};

}  // namespace

const JsonNode* JsonNode::Find(std::string_view name) const {
  for (const JsonNode& node : nodes) {
    if (kind == Kind::Object && node.key == name) return &node;
  }
  return nullptr;
}

std::optional<JsonNode> ParseJson(std::string_view text, std::string& error) {
  Position position;
  Builder builder(position);
  const CountingIterator begin(text.data(), &position);
  const CountingIterator end(text.data() + text.size(), &position);
  if (nlohmann::json::sax_parse(begin, end, &builder)) return builder.TakeTree();
  error = builder.error();
  return std::nullopt;
}

}  // namespace ventrik::bench
