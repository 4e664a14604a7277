// SPDX-License-Identifier: Apache-2.0
// The parser reports its events one by one and nothing of places. An iterator that tells how far it
// has read gives the end of what an event is about, and what lies between that and the event before
// is blanks and separators, behind which it begins. The parser reads nothing ahead but the one
// character that ends a number.
#include "bench/json_tree.h"

#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

namespace ventrik::bench {
namespace {

// Tells all its copies' maker how many bytes were read.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::size_t* count) : at_(at), count_(count) {}

  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    ++at_;
    ++*count_;
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
  std::size_t* count_;
};

struct Position {
  int line = 1;
  int column = 1;
};

// Goes through a text from its beginning, counting lines.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  const Position& position() const { return position_; }

  // Goes on to that many bytes from the beginning.
  void GoTo(std::size_t offset) {
    while (offset_ < offset && offset_ < text_.size()) Step();
  }
  // Goes on to the next byte that is neither blank nor separator.
  void GoToToken() {
    constexpr std::string_view kSkipped = " \t\r\n,:\xEF\xBB\xBF";  // with the byte order mark
    while (offset_ < text_.size() && kSkipped.find(text_[offset_]) != std::string_view::npos)
      Step();
  }

 private:
  void Step() {
    ++position_.column;
    if (text_[offset_++] != '\n') return;
    ++position_.line;
    position_.column = 1;
  }

  std::string_view text_;
  std::size_t offset_ = 0;
  Position position_;
};

// What the parser says of an error, without its name and the position, which is given back in
// `position`.
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

  // `read` is how much of the text the parser has read.
  Builder(std::string_view text, const std::size_t& read) : read_(read), cursor_(text) {
    open_.push_back(&root_);
  }

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
    keyPosition_ = TakePosition();
    const bool isThere = open_.back()->Find(value) != nullptr;
    key_ = std::move(value);
    return !isThere || FailAt(keyPosition_, "the key is there already");
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& thrown) {
    Position position = TakePosition();
    const std::string reason = Reason(thrown.what(), position);
    return FailAt(position, reason);
  }

  JsonNode TakeTree() { return std::move(root_.nodes.front()); }
  const std::string& error() const { return error_; }

 private:
  // Where what the present event is about begins.
  Position TakePosition() {
    cursor_.GoToToken();
    const Position position = cursor_.position();
    cursor_.GoTo(read_);
    return position;
  }
  bool Add(JsonNode::Kind kind) {
    const Position position = TakePosition();
    JsonNode& parent = *open_.back();
    added_ = &parent.nodes.emplace_back();
    added_->kind = kind;
    if (parent.kind == JsonNode::Kind::Object) {
      added_->key = *std::exchange(key_, std::nullopt);
      added_->line = keyPosition_.line;
      added_->column = keyPosition_.column;
    } else {
      added_->line = position.line;
      added_->column = position.column;
    }
    return true;
  }
  bool Open(JsonNode::Kind kind) {
    Add(kind);
    if (open_.size() > kMaxJsonDepth) {
      return FailAt({added_->line, added_->column}, "too many lists and objects in one another");
    }
    open_.push_back(added_);
    return true;
  }
  bool Close() {
    TakePosition();
    open_.pop_back();
    return true;
  }
  bool FailAt(const Position& position, const std::string& reason) {
    const std::string path = Path();
    error_ = std::to_string(position.line) + ":" + std::to_string(position.column) + ": " +
             (path.empty() ? "" : path + ": ") + reason;
    return false;
  }
  // The way to what is open, and to the member whose value is still to come.
  std::string Path() const {
    std::string path;
    for (std::size_t level = 1; level < open_.size(); ++level) {
      const JsonNode& parent = *open_[level - 1];
      if (parent.kind == JsonNode::Kind::Object) AddKey(path, open_[level]->key);
      if (parent.kind != JsonNode::Kind::List) continue;
      path += "[" + std::to_string(parent.nodes.size() - 1) + "]";
    }
    if (key_) AddKey(path, *key_);
    return path;
  }
  static void AddKey(std::string& path, const std::string& key) {
    path += (path.empty() ? "" : ".") + key;
  }

  const std::size_t& read_;
  Cursor cursor_;                   // behind the last event
  JsonNode root_;                   // its one node will be the tree
  std::vector<JsonNode*> open_;     // the root and what is not closed yet; only the last one grows
  JsonNode* added_ = nullptr;       // the newest
  std::optional<std::string> key_;  // of the next member
  Position keyPosition_;
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
  std::size_t read = 0;
  Builder builder(text, read);
  const CountingIterator begin(text.data(), &read);
  const CountingIterator end(text.data() + text.size(), &read);
  if (nlohmann::json::sax_parse(begin, end, &builder)) return builder.TakeTree();
  error = builder.error();
  return std::nullopt;
}

}  // namespace ventrik::bench
