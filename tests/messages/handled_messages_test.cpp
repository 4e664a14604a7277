// SPDX-License-Identifier: Apache-2.0
// Which messages have a printer.
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "messages/function_ids.h"
#include "tests/messages/message_samples.h"
#include "tests/messages/printed_text.h"

namespace ventrik::tests {
namespace {

// As numbers, so that a wrong one in the catalogue shows here.
const std::set<std::int32_t> kHandled = {
    1,   17,  18,  19,  101, 117, 119, 121, 124, 126, 203,  301,  303,  305,  307, 309,
    311, 313, 315, 401, 403, 405, 407, 410, 411, 412, 413,  415,  418,  419,  420, 421,
    431, 500, 503, 506, 508, 601, 602, 604, 606, 611, 621,  631,  701,  703,  801, 803,
    804, 805, 806, 807, 810, 812, 813, 814, 902, 903, 1001, 1002, 1004, 9014,
};

std::string Unhandled(std::int32_t id) {
  const Bytes bytes = Word(id);
  std::string text = "\033[1;31mError: Unhandled response or info (";
  for (std::size_t i = 0; i < bytes.value.size() && bytes.value[i] != 0; ++i) {
    text += static_cast<char>(bytes.value[i]);
  }
  return text + ")!\n\033[0;37m";
}

TEST(HandledMessages, HaveAPrinterAndNoOthersDo) {
  EXPECT_EQ(kHandled.size(), 62u);
  std::vector<std::int32_t> ids = {0x7FFFFFFF, -0x7FFFFFFF - 1, 0x00010001, 0x01000001,
                                   65536 + 307};
  for (std::int32_t id = -1000; id <= 20000; ++id) ids.push_back(id);
  for (const std::int32_t id : ids) {
    const std::string text = MessageText(Word(id).Block());
    if (kHandled.count(id) == 0) {
      EXPECT_EQ(text, Unhandled(id)) << id;
    } else {
      EXPECT_EQ(text.find("Unhandled"), std::string::npos) << id;
    }
  }
}

TEST(HandledMessages, TextsBeginWithTheirNames) {
  for (const std::int32_t id : kHandled) {
    std::string name = std::string(FunctionName(id)) + "> ";
    // Odd ones.
    if (id == RESP_STORE_DEVICE_STATUS) name = "RESP_DEVICE_STATUS> ";
    if (id == CMD_PACKAGE_LOADED) name = "Package loaded!\n";
    EXPECT_EQ(MessageText(Word(id).Block()).substr(0, name.size()), name);
  }
}

// The tests that go through all samples go through all printers.
TEST(HandledMessages, EachHasASample) {
  std::set<std::int32_t> sampled;
  for (const MessageSample& sample : ResponseSamples()) {
    sampled.insert(sample.golden.Block().Word(0));
  }
  EXPECT_EQ(sampled, kHandled);
}

}  // namespace
}  // namespace ventrik::tests
