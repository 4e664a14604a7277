// SPDX-License-Identifier: Apache-2.0
#include "messages/automatic_replies.h"

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <ostream>

#include "messages/function_ids.h"
#include "tests/ipc/cancellable_thread.h"
#include "tests/messages/handling_fixture.h"

namespace ventrik::tests {
namespace {

const Bytes kPromptReady = Hex("F4010000 03000000");
const std::wstring kPromptReadyText = L"INFO_PROMPT_READY> audioSource: AudioSafetyCamera\n";
const std::wstring kSaidText = L"INFO_PROMPT_READY> requestPromptReady sent\n";

const Bytes kHighwayMode = Hex("5A020000 01000000");

const Bytes kHeartbeat = Hex("6D020000");

Bytes Position(const std::string& posInfo) {
  return Hex("CB000000 01000000 '" + posInfo + "' 00");
}

class AutomaticReplies : public HandlingTest {
 protected:
  void HandleAndExpect(const Bytes& message, const std::vector<Bytes>& sent) {
    Handle(message);
    EXPECT_EQ(server_.TakeSent(), sent);
    console_.TakeText();
  }
};

TEST_F(AutomaticReplies, PromptReadyIsAnsweredWithItsAudioSource) {
  HandleAndExpect(Hex("F4010000 00000000"), {Hex("F5010000 00000000")});
  HandleAndExpect(Hex("F4010000 02000000"), {Hex("F5010000 02000000")});
  HandleAndExpect(Hex("F4010000 63000000"), {Hex("F5010000 63000000")});
  HandleAndExpect(Hex("F4010000 FFFFFFFF 07000000"), {Hex("F5010000 FFFFFFFF")});
  HandleAndExpect(Hex("F4010000"), {Hex("F5010000 00000000")});
}

TEST_F(AutomaticReplies, WithPromptsOffPromptReadyIsOnlyPrinted) {
  autoPromptReady = 0;
  Handle(kPromptReady);
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), kPromptReadyText);
  autoPromptReady = 1;
  Handle(kPromptReady);
  EXPECT_EQ(server_.TakeSent().size(), 1u);
  EXPECT_EQ(console_.TakeText(), kPromptReadyText + kSaidText);
}

TEST_F(AutomaticReplies, OnlyTheBeginningOfHighwayModeAsksForItsList) {
  for (const char* state : {"00000000", "02000000", "03000000", "FFFFFFFF", "01000001", ""}) {
    HandleAndExpect(Hex(std::string("5A020000 ") + state), {});
  }
}

TEST_F(AutomaticReplies, WithPromptsOffHighwayModeIsOnlyPrinted) {
  autoPromptReady = 0;
  Handle(kHighwayMode);
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), L"INFO_HIGHWAYMODE_UPDATE> Enabled\n");
}

TEST_F(AutomaticReplies, HighwayModeIsAskedForEachTime) {
  Handle(kHighwayMode);
  Handle(kHighwayMode);
  EXPECT_EQ(server_.TakeEvents(), (std::vector<std::string>{"send 306", "send 306"}));
}

TEST_F(AutomaticReplies, PromptsOffDoesntStopTheJunctionView) {
  autoPromptReady = 0;
  Handle(Position("<JVA>5<*>"));
  EXPECT_EQ(server_.TakeSent().size(), 1u);
}

TEST_F(AutomaticReplies, JunctionViewIsShownOnTheMapThatWasNamedLast) {
  SetMapId(printer_, "left");
  HandleAndExpect(Position("<JVA>5<*>"), {Hex("BE020000 15000000 '<MID>left<*><SJV>5<*>' 000000")});
  SetMapId(printer_, "%d");
  HandleAndExpect(Position("<JVA>5<*>"), {Hex("BE020000 13000000 '<MID>%d<*><SJV>5<*>' 00")});
}

TEST_F(AutomaticReplies, WithoutAMapThereIsNoJunctionView) {
  SetMapId(printer_, "");
  Handle(Position("<JVA>5<*>"));
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), L"INFO_VEH_LOC_INFO_DETAILS> posInfo: \"<JVA>5<*>\"\n");
}

TEST_F(AutomaticReplies, PositionWithoutATextAsksForNothing) {
  HandleAndExpect(Hex("CB000000 00000000 '<JVA>5<*>' 00"), {});
  HandleAndExpect(Hex("CB000000"), {});
}

// A position's text and the number of the junction view that is asked for; none if empty.
struct JunctionViewCase {
  const char* posInfo;
  const char* shown;
};

class JunctionView : public AutomaticReplies,
                     public testing::WithParamInterface<JunctionViewCase> {};

TEST_P(JunctionView, IsReadFromThePosition) {
  Handle(Position(GetParam().posInfo));
  const std::vector<Bytes> sent = server_.TakeSent();
  if (*GetParam().shown == '\0') {
    EXPECT_EQ(sent, std::vector<Bytes>{});
    return;
  }
  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(BlockCursor(sent[0].Block(), 2).NextString(),
            "<MID>map<*><SJV>" + std::string(GetParam().shown) + "<*>");
}

constexpr JunctionViewCase kJunctionViews[] = {
    {"<JVA>5<*>", "5"},
    {"<GEO>13.4 48.5<*><JVA>12<*><SPD>50<*>", "12"},
    {"<JVA>0<*>", "0"},
    {"<JVA>-3<*>", "-3"},
    {"<JVA>+3<*>", "3"},
    {"<JVA>007<*>", "7"},
    {"<JVA>  8<*>", "8"},
    {"<JVA>2147483647<*>", "2147483647"},
    {"<JVA>2147483648<*>", "2147483647"},
    {"<JVA>-2147483649<*>", "-2147483648"},
    {"<JVA>99999999999999999999999999<*>", "2147483647"},
    {"<JVA>-99999999999999999999999999<*>", "-2147483648"},
    {"<JVA>1<*><JVA>2<*>", "1"},
    {"", ""},
    {"<JVA>", ""},
    {"<JVA><*>", ""},
    {"<JVA>5", ""},
    {"<JVA>5<", ""},
    {"<JVA>5<*", ""},
    {"<JVA>5 <*>", ""},
    {"<JVA>5x<*>", ""},
    {"<JVA>5.0<*>", ""},
    {"<JVA>0x5<*>", ""},
    {"<JVA>x5<*>", ""},
    {"<JVA>-<*>", ""},
    {"<jva>5<*>", ""},
    {"<JVB>5<*>", ""},
    {"JVA>5<*>", ""},
};
INSTANTIATE_TEST_SUITE_P(Positions, JunctionView, testing::ValuesIn(kJunctionViews));

// What holds for each message that is answered under commandLock.
struct AskingMessage {
  const char* name;
  Bytes message;
  Bytes reply;
  std::wstring text;
};

void PrintTo(const AskingMessage& asking, std::ostream* out) {
  *out << asking.name;
}

class AutomaticReply : public HandlingTest, public testing::WithParamInterface<AskingMessage> {
 protected:
  void Handle() { HandlingTest::Handle(GetParam().message); }
  static std::int32_t Id() { return GetParam().message.Block().Word(0); }
};

TEST_P(AutomaticReply, IsSentOnce) {
  Handle();
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{GetParam().reply});
  EXPECT_EQ(console_.TakeText(), GetParam().text);
}

TEST_P(AutomaticReply, LeavesBeforeTheTextShows) {
  std::vector<std::string> events;
  server_.onSend = [&] { events.emplace_back("send"); };
  console_.onPrint = [&](const std::wstring&) { events.emplace_back("print"); };
  Handle();
  EXPECT_EQ(events, (std::vector<std::string>{"send", "print"}));
}

TEST_P(AutomaticReply, LeavesWhileTheTextWaits) {
  holdOutput = 1;
  Handle();
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{GetParam().reply});
  EXPECT_EQ(console_.TakeText(), L"");
}

TEST_P(AutomaticReply, LeavesWhenTheWaitForItsMessageHasEnded) {
  std::int32_t waited = -1;
  server_.onSend = [&] { waited = waitResponseId; };
  waitResponseId = Id();
  Handle();
  EXPECT_EQ(waited, 0);
}

TEST_P(AutomaticReply, ThatFailsChangesNoText) {
  server_.sendResult = -1;
  Handle();
  EXPECT_EQ(console_.TakeText(), GetParam().text);
}

TEST_P(AutomaticReply, IsNotSentForASilencedMessage) {
  app_.responseFilter.Store({Id()});
  waitResponseId = Id();
  Handle();
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_EQ(waitResponseId, 0);
}

TEST_P(AutomaticReply, HoldsCommandLockForTheSendAlone) {
  bool freeInSend = true;
  bool freeInPrint = false;
  server_.onSend = [&] { freeInSend = CommandLockIsFree(); };
  console_.onPrint = [&](const std::wstring&) { freeInPrint = CommandLockIsFree(); };
  Handle();
  EXPECT_FALSE(freeInSend);
  EXPECT_TRUE(freeInPrint);
}

TEST_P(AutomaticReply, WaitsForTheCommandThatHoldsTheLock) {
  std::promise<void> sending;
  std::future<void> sent = sending.get_future();
  server_.onSend = [&] { sending.set_value(); };
  LockCommands();
  std::thread listener([this] { Handle(); });
  // Time enough for a reply that doesn't wait.
  EXPECT_EQ(sent.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  EXPECT_EQ(console_.TakeText(), L"");
  UnlockCommands();
  listener.join();
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{GetParam().reply});
  EXPECT_EQ(console_.TakeText(), GetParam().text);
}

TEST_P(AutomaticReply, OfAThreadCancelledInItsWaitForTheLockIsNotSent) {
  server_.onSend = pthread_testcancel;
  std::promise<void> starting;
  LockCommands();
  CancellableThread listener([&] {
    starting.set_value();
    Handle();
  });
  starting.get_future().wait();
  listener.Cancel();
  UnlockCommands();
  EXPECT_TRUE(listener.Join());
  EXPECT_EQ(server_.TakeSent(), std::vector<Bytes>{});
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_TRUE(CommandLockIsFree());
}

TEST_P(AutomaticReply, OfAThreadCancelledInItsSendReleasesTheLock) {
  std::promise<void> sending;
  server_.onSend = [&] {
    sending.set_value();
    for (;;) pause();
  };
  CancellableThread listener([this] { Handle(); });
  sending.get_future().wait();
  EXPECT_TRUE(listener.CancelAndJoin());
  EXPECT_EQ(console_.TakeText(), L"");
  EXPECT_TRUE(CommandLockIsFree());
}

const AskingMessage kAskingMessages[] = {
    {"PromptReady", kPromptReady, Hex("F5010000 03000000"), kPromptReadyText + kSaidText},
    {"HighwayMode", kHighwayMode,
     Hex("32010000 13000000 01000000 03000000 00000000 01000000 02000000 "
         "'<IFT>HWM<*><EXT><*>' 00 'Default' 00"),
     L"INFO_HIGHWAYMODE_UPDATE> Enabled\n"},
    {"Position", Position("<JVA>5<*>"), Hex("BE020000 14000000 '<MID>map<*><SJV>5<*>' 00000000"),
     L"INFO_VEH_LOC_INFO_DETAILS> posInfo: \"<JVA>5<*>\"\n"},
};
INSTANTIATE_TEST_SUITE_P(To, AutomaticReply, testing::ValuesIn(kAskingMessages),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(AutomaticReplies, MessagesThatAskNothingShowWhileACommandHoldsTheLock) {
  autoPromptReady = 0;
  LockCommands();
  std::thread listener([this] {
    Handle(kHeartbeat);
    Handle(kPromptReady);
    Handle(kHighwayMode);
    Handle(Position("<JVA>none<*>"));
  });
  const bool shown = console_.WaitFor(L"none");
  UnlockCommands();
  listener.join();
  EXPECT_TRUE(shown);
}

TEST_F(AutomaticReplies, OtherMessagesSendNothing) {
  // The words and text of a message that is answered, under the numbers of others.
  for (const char* id : {"6D020000", "F5010000", "F7010000", "FA010000", "5C020000", "CA000000",
                         "77020000", "FBFFFFFF", "00000000"}) {
    HandleAndExpect(Hex(std::string(id) + "01000000 '<JVA>5<*>' 00"), {});
  }
}

}  // namespace
}  // namespace ventrik::tests
