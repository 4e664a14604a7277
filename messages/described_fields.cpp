// SPDX-License-Identifier: Apache-2.0
#include "messages/described_fields.h"

#include <sstream>

namespace ventrik {
namespace {

class Writer {
 public:
  void operator()(std::int32_t number) { out_ << number; }
  void operator()(double number) { out_ << number; }
  void operator()(const std::string& text) { out_ << '\'' << text << '\''; }
  void operator()(const std::pair<std::string, std::vector<std::string>>& destination) {
    (*this)(destination.first);
    List('(', destination.second, ')');
  }
  template <class Element>
  void operator()(const std::vector<Element>& elements) {
    List('[', elements, ']');
  }

  void Label(const std::string& name) { out_ << (out_.tellp() == 0 ? "" : " ") << name << '='; }
  std::string Text() const { return out_.str(); }

 private:
  template <class Element>
  void List(char open, const std::vector<Element>& elements, char close) {
    const char* separator = "";
    out_ << open;
    for (const Element& element : elements) {
      out_ << separator;
      (*this)(element);
      separator = ", ";
    }
    out_ << close;
  }

  std::ostringstream out_;
};

}  // namespace

std::string Describe(const MessageFields& fields) {
  Writer writer;
  for (const MessageField& field : fields) {
    writer.Label(field.name);
    std::visit(writer, field.value);
  }
  return writer.Text();
}

}  // namespace ventrik
