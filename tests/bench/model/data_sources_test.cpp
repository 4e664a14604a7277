// SPDX-License-Identifier: Apache-2.0
#include "bench/model/data_sources.h"

#include "tests/bench/model/sent_text.h"

namespace ventrik::bench {
namespace {

class DataSourcesTest : public ModelFixture {
 protected:
  // The validState of the one answer.
  std::int32_t Add(const std::string& eis) {
    return Valid(RESP_ADD_DATA_SRC, Handle(encode::REQU_ADD_DATA_SRC(eis)));
  }
  std::int32_t Remove(const std::string& eis) {
    return Valid(RESP_REM_DATA_SRC, Handle(encode::REQU_REM_DATA_SRC(eis)));
  }

 private:
  static std::int32_t Valid(FunctionId id, const std::vector<Sent>& sent) {
    EXPECT_EQ(sent.size(), 1u);
    if (sent.size() != 1) return -1;
    EXPECT_EQ(sent[0].id, id);
    EXPECT_EQ(sent[0].audience, Audience::requester);
    return sent[0].Number("validState");
  }
};

TEST_F(DataSourcesTest, TheAnswerRepeatsTheInput) {
  EXPECT_EQ(SentLines(Handle(encode::REQU_ADD_DATA_SRC("<SRC>usb<*>"))),
            (Lines{"RESP_ADD_DATA_SRC inputEIS='<SRC>usb<*>' validState=1"}));
  EXPECT_EQ(SentLines(Handle(encode::REQU_REM_DATA_SRC("<SRC>usb<*>"))),
            (Lines{"RESP_REM_DATA_SRC inputEIS='<SRC>usb<*>' validState=1"}));
}

TEST_F(DataSourcesTest, EachSourceIsThereOnce) {
  EXPECT_EQ(Add("<SRC>usb<*>"), 1);
  EXPECT_EQ(Add("<SRC>usb<*>"), 2);
  EXPECT_EQ(Add("  <SRC>usb<*> "), 2);
  EXPECT_EQ(Add("<SRC>card<*>"), 1);
  EXPECT_EQ(Remove("<SRC>usb<*>"), 1);
  EXPECT_EQ(Remove("<SRC>usb<*>"), 2);
  EXPECT_EQ(Add("<SRC>usb<*>"), 1);
  EXPECT_EQ(state().dataSources, (DataSourcesState{"<SRC>card<*>", "<SRC>usb<*>"}));
}

TEST_F(DataSourcesTest, WhatCanNotBeReadIsNoSource) {
  for (const char* text : {"", "usb", "<src>usb<*>", "<*>"}) {
    EXPECT_EQ(Add(text), 2) << text;
    EXPECT_EQ(Remove(text), 2) << text;
  }
  EXPECT_TRUE(state().dataSources.empty());
}

TEST_F(DataSourcesTest, TheNumberAndTheLengthAreLimited) {
  const std::string tag = "<SRC>";
  const std::string longest = tag + std::string(kMaxDataSource - tag.size(), 'x');
  EXPECT_EQ(Add(longest), 1);
  EXPECT_EQ(Add(longest + 'x'), 2);
  EXPECT_EQ(Add(longest + std::string(700'000, 'y')), 2);
  for (std::size_t i = 1; i < kMaxDataSources; ++i) {
    EXPECT_EQ(Add("<SRC>" + std::to_string(i) + "<*>"), 1);
  }
  EXPECT_EQ(Add("<SRC>one more<*>"), 2);
  EXPECT_EQ(Remove("<SRC>1<*>"), 1);
  EXPECT_EQ(Add("<SRC>one more<*>"), 1);
}

TEST_F(DataSourcesTest, RequestsCutShortAreAnswered) {
  for (const auto& answer : HandleEveryPrefix(encode::REQU_ADD_DATA_SRC("<SRC>usb<*>"))) {
    EXPECT_EQ(answer.size(), 1u);
  }
  for (const auto& answer : HandleEveryPrefix(encode::REQU_REM_DATA_SRC("<SRC>usb<*>"))) {
    EXPECT_EQ(answer.size(), 1u);
  }
}

}  // namespace
}  // namespace ventrik::bench
