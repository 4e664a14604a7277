// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_config.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "console/whole_file.h"
#include "monkey/monkey_log.h"
#include "state/logger.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

constexpr const char* kConfigFile = "monkey_config.txt";

struct RegionRow {
  std::string_view name;
  MonkeyRegion region;
};

constexpr RegionRow kRegions[] = {
    {"na", {-128, -61, 30, 50}},
    {"eu", {-8, 40, 37, 57}},
};

// Hands out lines; the end counts as reached once a line has run into it.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  std::string_view Next() {
    const std::size_t end = rest_.find('\n');
    atEnd_ = end == std::string_view::npos;
    const std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(atEnd_ ? rest_.size() : end + 1);
    return line;
  }

  bool AtEnd() const { return atEnd_; }

 private:
  std::string_view rest_;
  bool atEnd_ = false;
};

std::wstring Widened(std::string_view bytes) {
  std::wstring wide;
  for (const char byte : bytes) wide += static_cast<wchar_t>(static_cast<unsigned char>(byte));
  return wide;
}

bool IsComment(std::string_view line) {
  return line[0] == ';';
}

// What stands behind the "=", or all of a line without one.
std::string_view ValueOf(std::string_view line, std::size_t equals) {
  std::string_view value = equals == std::string_view::npos ? line : line.substr(equals + 1);
  value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
  return value;
}

std::int32_t Integer(std::string_view text) {
  return Saturate(std::strtoll(std::string(text).c_str(), nullptr, 10));
}

float Factor(std::string_view text) {
  return static_cast<float>(std::atof(std::string(text).c_str()));
}

// Oddity: the blank is looked for behind the "=", not in front of it, so that only "key=value" and
// "key = value" give the key.
std::string_view KeyOf(std::string_view line, std::size_t equals) {
  if (equals == std::string_view::npos) return line;
  const bool isSpaced = equals + 1 < line.size() && line[equals + 1] == ' ';
  return line.substr(0, isSpaced && equals > 0 ? equals - 1 : isSpaced ? 0 : equals);
}

// Oddity: here the character in front of the "=" is taken for a blank, whatever it is.
std::string_view ConfigKeyOf(std::string_view line, std::size_t equals) {
  if (equals == std::string_view::npos || equals == 0) return line;
  return line.substr(0, equals - 1);
}

void ReadKeyLine(std::string_view line, MonkeyCommandRecord& record) {
  const std::size_t equals = line.find('=');
  const std::string_view key = KeyOf(line, equals);
  const std::string_view value = ValueOf(line, equals);
  if (key == "default") {
    record.baseWeight = record.currentWeight = record.activeRouteWeight = Integer(value);
  } else if (key == "ifactiveroute") {
    record.activeRouteWeight = Integer(value);
  } else {
    record.influences[Widened(key)] = Factor(value);
  }
}

// Up to an empty line, or through the last line of the file.
void ReadSection(Lines& lines, MonkeyCommandRecord& record) {
  do {
    const std::string_view line = lines.Next();
    if (line.empty()) return;
    if (!IsComment(line)) ReadKeyLine(line, record);
  } while (!lines.AtEnd());
}

// Oddity: a last line without a line feed is not read here.
void LoadConfigSection(Lines& lines, MonkeyRegion& region) {
  for (;;) {
    const std::string_view line = lines.Next();
    if (line.empty() || lines.AtEnd()) return;
    if (IsComment(line)) continue;
    const std::size_t equals = line.find('=');
    if (ConfigKeyOf(line, equals) != "content") continue;
    for (const RegionRow& row : kRegions) {
      if (row.name == ValueOf(line, equals)) region = row.region;
    }
  }
}

// The name that a line heads a section with; none if it heads none.
std::optional<std::string_view> HeaderOf(std::string_view line) {
  if (line.empty() || line[0] != '[') return std::nullopt;
  if (line.size() > 1 && (line[1] == '-' || line[1] == ';')) return std::nullopt;  // switched off
  return line.size() < 2 ? std::string_view() : line.substr(1, line.size() - 2);
}

}  // namespace

std::vector<MonkeyCommandRecord> ParseMonkeyConfig(std::string_view file, MonkeyRegion& region) {
  std::vector<MonkeyCommandRecord> records;
  MonkeyCommandRecord record;
  Lines lines(file);
  while (!lines.AtEnd()) {
    const std::string_view line = lines.Next();
    if (line == "[config]") {
      LoadConfigSection(lines, region);
      continue;
    }
    const auto name = HeaderOf(line);
    if (!name) continue;
    record.name = Widened(*name);
    ReadSection(lines, record);
    records.push_back(record);
    // Oddity: the three weights stay, so a section without a default has those of the one above.
    record.name.clear();
    record.influences.clear();
  }
  return records;
}

void LoadMonkeyConfig(Monkey& monkey) {
  EmptyMonkeyLog();
  monkey.weights.With([](MonkeyWeights& weights) {
    weights.commandRecords.clear();
    weights.weightTotal = 0;
  });
  const std::optional<std::string> file = ReadWholeFile(kConfigFile);
  if (!file) {
    logger->print(L"%sError: Monkey_config.txt not found!\n%s", ColourRed, ColourReset);
    return;
  }
  SetMonkeyRunning(monkey, true);
  std::vector<MonkeyCommandRecord> records = ParseMonkeyConfig(*file, monkey.region);
  std::uint32_t total = 0;  // wraps as a word does
  for (const MonkeyCommandRecord& record : records) {
    total += static_cast<std::uint32_t>(record.currentWeight);
  }
  monkey.weights.With([&](MonkeyWeights& weights) {
    weights.commandRecords = std::move(records);
    weights.weightTotal = static_cast<std::int32_t>(total);
  });
}

}  // namespace ventrik
