// SPDX-License-Identifier: Apache-2.0
#include "replay/display_line.h"

#include "messages/block_cursor.h"
#include "messages/function_ids.h"
#include "messages/message_text.h"
#include "state/logger.h"

namespace ventrik {
namespace {

constexpr std::int32_t kOwnBlock = 9000;  // from here on numbers are the tester's own
constexpr double kPerDegree = 100'000.0;

// As the C locale has it, whatever locale is set.
bool IsPrintableOrSpace(std::uint8_t byte) {
  return (byte >= 0x20 && byte < 0x7F) || (byte >= '\t' && byte <= '\r');
}

void AppendHead(std::string& text, std::int32_t id, std::uint32_t sinceFirst,
                const std::map<std::int32_t, std::string>& names) {
  const auto found = names.find(id);
  if (found == names.end() || found->second.empty()) {
    AppendFormat(text, "Cmd>%s command id is: %d(\"", ColourGreen, id);
    return;
  }
  const std::uint32_t seconds = sinceFirst / 1000;
  AppendFormat(text, "Cmd>%02u : %02u : %02u %s %s(\"", seconds / 3600, seconds / 60 % 60,
               seconds % 60, ColourGreen, found->second.c_str());
}

void AppendDemo(std::string& text, const ReceivedBlock& block) {
  AppendFormat(text, "%s\",\"%f\",\"%f", block.Word(1) == 1 ? "on" : "off", block.Double(8),
               block.Double(16));
}

void AppendPosition(std::string& text, const ReceivedBlock& block) {
  const auto degrees = [&block](std::size_t word) {
    return static_cast<double>(static_cast<float>(block.Word(word) / kPerDegree));
  };
  AppendFormat(text, "<GEO>%+03.5f %+03.5f<*>", degrees(5), degrees(4));
}

}  // namespace

std::string DisplayLine(const RecordToShow& record,
                        const std::map<std::int32_t, std::string>& names) {
  // The whole buffer: a short record shows what the one before has left.
  const ReceivedBlock block{record.payload.bytes.data(), record.payload.bytes.size()};
  const std::int32_t id = block.Word(0);
  std::string text;
  AppendHead(text, id, record.sinceFirst, names);
  if (id == REQU_SET_DEMO_MODE) {
    AppendDemo(text, block);
  } else if (id == GPS_DATA) {
    AppendPosition(text, block);
  } else if (id < kOwnBlock) {
    for (std::size_t i = 0; i < record.length; ++i) {
      if (IsPrintableOrSpace(block.data[i])) text += static_cast<char>(block.data[i]);
    }
  }
  AppendFormat(text, "\") ... %spos: 0x%x  ", ColourReset, record.position);
  return text;
}

}  // namespace ventrik
