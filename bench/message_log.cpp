// SPDX-License-Identifier: Apache-2.0
#include "bench/message_log.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>

#include "bench/message_name.h"
#include "bench/report.h"
#include "messages/described_fields.h"
#include "messages/function_ids.h"
#include "messages/message_layout.h"

namespace ventrik::bench {
namespace {

using Json = nlohmann::ordered_json;

constexpr unsigned char kFirstPrintable = 0x20;
constexpr unsigned char kDelete = 0x7F;

std::string HexOf(ReceivedBlock block) {
  std::string text;
  for (std::size_t at = 0; at < block.size; ++at) {
    text += "0123456789ABCDEF"[block.data[at] >> 4];
    text += "0123456789ABCDEF"[block.data[at] & 15u];
  }
  return text;
}

std::string WithoutControls(const std::string& text) {
  std::string out;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= kFirstPrintable && byte != kDelete) {
      out += character;
    } else {
      std::array<char, 5> escaped = {};
      std::snprintf(escaped.data(), escaped.size(), "\\x%02X", static_cast<unsigned>(byte));
      out += escaped.data();
    }
  }
  return out;
}

std::string TimeText(std::chrono::milliseconds sinceStart) {
  const long long milliseconds = sinceStart.count();
  std::array<char, 32> text = {};
  std::snprintf(text.data(), text.size(), "%4lld.%03lld ", milliseconds / 1000,
                milliseconds % 1000);
  return text.data();
}

std::string TextLine(const LoggedMessage& message) {
  const char* way = message.direction == Direction::received ? "<- " : "-> ";
  std::string line = TimeText(message.sinceStart) + way + std::to_string(message.process) + " ";
  const auto fields = DecodeMessage(message.block);
  if (!fields) return line + HexOf(message.block) + "\n";
  line += FunctionName(message.block.Word(0));
  if (!fields->empty()) line += " " + WithoutControls(Describe(*fields));
  return line + "\n";
}

struct ToJson {
  Json operator()(const DestinationValues& destinations) const {
    Json list = Json::array();
    for (const auto& [text, items] : destinations) list.push_back(Json::array({text, items}));
    return list;
  }
  template <class Value>
  Json operator()(const Value& value) const {
    return value;
  }
};

std::string JsonLine(const LoggedMessage& message) {
  Json line;
  line["ms"] = message.sinceStart.count();
  line[message.direction == Direction::received ? "from" : "to"] = message.process;
  if (const auto fields = DecodeMessage(message.block)) {
    line["message"] = FunctionName(message.block.Word(0));
    Json& object = line["fields"] = Json::object();
    for (const MessageField& field : *fields)
      object[field.name] = std::visit(ToJson(), field.value);
  } else {
    if (message.block.size >= 4) line["number"] = message.block.Word(0);
    line["hex"] = HexOf(message.block);
  }
  return line.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string TextLine(const LoggedStrike& logged) {
  const Strike& strike = logged.strike;
  std::string line = TimeText(logged.sinceStart) + "!! ";
  line += strike.process != 0 ? std::to_string(strike.process) : "-";
  line += std::string(" ") + FaultName(strike.kind);
  if (!strike.message) return line + "\n";
  return line + " " + MessageName(*strike.message) + "\n";
}

std::string JsonLine(const LoggedStrike& logged) {
  const Strike& strike = logged.strike;
  Json line;
  line["ms"] = logged.sinceStart.count();
  line["fault"] = FaultName(strike.kind);
  if (strike.process != 0) line["client"] = strike.process;
  const char* name = strike.message ? FunctionName(*strike.message) : nullptr;
  if (name != nullptr) {
    line["message"] = name;
  } else if (strike.message) {
    line["number"] = *strike.message;
  }
  return line.dump() + "\n";
}

}  // namespace

std::string LogLine(const LoggedMessage& message, LogFormat format) {
  return format == LogFormat::json ? JsonLine(message) : TextLine(message);
}

std::string LogLine(const LoggedStrike& strike, LogFormat format) {
  return format == LogFormat::json ? JsonLine(strike) : TextLine(strike);
}

MessageLog::~MessageLog() {
  if (file_ != nullptr && file_ != stdout) std::fclose(file_);
}

bool MessageLog::Open(const std::string& path, LogFormat format, std::string& error) {
  format_ = format;
  file_ = path == "-" ? stdout : std::fopen(path.c_str(), "wbe");
  isOpen_ = file_ != nullptr;
  if (isOpen_) return true;
  error = path + ": " + std::strerror(errno);
  return false;
}

void MessageLog::Write(const std::string& line) {
  const std::lock_guard<std::mutex> hold(lock_);
  if (file_ == nullptr) return;
  const bool written = std::fwrite(line.data(), 1, line.size(), file_) == line.size();
  if (written && std::fflush(file_) == 0) return;
  Report("the log ends here: %s", std::strerror(errno));
  if (file_ != stdout) std::fclose(file_);
  file_ = nullptr;
}

}  // namespace ventrik::bench
