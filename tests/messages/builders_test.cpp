// SPDX-License-Identifier: Apache-2.0
#include "messages/builders.h"

#include <gtest/gtest.h>

#include <memory>

#include "messages/encoders.h"
#include "state/process_state.h"
#include "tests/messages/recorded_server.h"

namespace ventrik {
namespace {

class Builders : public testing::Test {
 protected:
  // The one block sent since the last call.
  Bytes Sent() {
    const std::vector<Bytes> blocks = server.TakeSent();
    EXPECT_EQ(blocks.size(), 1u);
    return blocks.empty() ? Bytes{} : blocks.front();
  }

  tests::RecordedServer server;
  const SStringArray strings{{"a", "bcde"}};
  const SRouteModeList modes{{1, 512}};
  const SDestinationElementList trip{
      {{"home", std::make_shared<SStringArray>(SStringArray{{"x"}})}}};
};

// The builder and the encoder of one name, called alike.
#define EXPECT_SENDS(call)                 \
  do {                                     \
    send::call;                            \
    EXPECT_EQ(Sent(), Wire(encode::call)); \
  } while (false)

TEST_F(Builders, SendRequestsWithoutArguments) {
  EXPECT_SENDS(REQU_INIT());
  EXPECT_SENDS(REQU_SHUTDOWN());
  EXPECT_SENDS(REQU_RESTORE_FACTORY());
  EXPECT_SENDS(REQU_STOP_GUIDANCE());
  EXPECT_SENDS(REQU_ROUTE_START_RECORDING());
  EXPECT_SENDS(REQU_ROUTE_STOP_RECORDING());
  EXPECT_SENDS(REQU_CANCEL_ADA());
  EXPECT_SENDS(REQU_REPEAT_ADA());
  EXPECT_SENDS(REQU_GET_SW_VERSION());
  EXPECT_SENDS(REQU_GET_DB_VERSION());
}

TEST_F(Builders, SendFixedRecords) {
  EXPECT_SENDS(REQU_SET_MEASUREMENT_SYSTEM(8));
  EXPECT_SENDS(REQU_START_GUIDANCE(7));
  EXPECT_SENDS(REQU_PROMPT_READY(3));
  EXPECT_SENDS(REQU_SET_ADA(1));
  EXPECT_SENDS(REQU_PLAY_PROMPT(12));
  EXPECT_SENDS(REQU_SET_SAFETY_CAMERA_MODE(1));
  EXPECT_SENDS(SAVE_VOLTH_LOG(5));
  EXPECT_SENDS(REQU_VEH_LOC_INFO_DETAILS(4, 1000));
  EXPECT_SENDS(REQU_SET_LANGUAGE(2, 7));
  EXPECT_SENDS(REQU_SET_VEH_SPEED_MODE(1, 130));
  EXPECT_SENDS(REQU_SET_TMC_ROUTE_MODE(4, 600));
  EXPECT_SENDS(REQU_TMC_SET_INFO_NOTIFICATION(33, 2));
  EXPECT_SENDS(REQU_SET_TMC_MODE(1, "abc"));
  EXPECT_SENDS(REQU_SET_DEMO_MODE(1, 19.0625, -47.5));
}

TEST_F(Builders, SendOneText) {
  EXPECT_SENDS(REQU_MAP_OVERLAY_SURFACE("text"));
  EXPECT_SENDS(REQU_GET_AVAILABLE_INFO("text"));
  EXPECT_SENDS(REQU_GET_SPELL("text"));
  EXPECT_SENDS(REQU_GET_LIST_INFO("text"));
  EXPECT_SENDS(REQU_RESOLVE_LOCATION("text"));
  EXPECT_SENDS(REQU_ADD_DATA_SRC("text"));
  EXPECT_SENDS(REQU_REM_DATA_SRC("text"));
  EXPECT_SENDS(REQU_USER_INPUT("text"));
  EXPECT_SENDS(REQU_SET_DATA_CONNECTION_INFO("text"));
  EXPECT_SENDS(REQU_SET_VOLUME_LEVEL("text"));
  EXPECT_SENDS(REQU_SET_SAFETY_CAMERA_AUDIO_MODE("text"));
  EXPECT_SENDS(REQU_MAP_CONTROLS("text"));
  EXPECT_SENDS(REQU_CHECK_FOR_UPDATE("text"));
  EXPECT_SENDS(REQU_STORE_DEVICE_STATUS("text"));
}

TEST_F(Builders, SendWordsTextsAndLists) {
  EXPECT_SENDS(REQU_SET_DATA_CONNECTION_AVAILABLE(1, "umts"));
  EXPECT_SENDS(REQU_TMC_TUNING_MODE(2, "fm"));
  EXPECT_SENDS(REQU_SCREEN_SHOT("map", "shot"));
  EXPECT_SENDS(REQU_PICK_INFO("map", 1, 2, 3, 4));
  EXPECT_SENDS(REQU_SET_WORLD_PROPERTIES("eis", 5, strings));
  EXPECT_SENDS(REQU_GET_DETAILS("eis", strings));
  EXPECT_SENDS(REQU_GET_LIST("eis", 1, 2, 3, strings, 1));
  EXPECT_SENDS(REQU_TMC_AVOIDS(2, strings));
  EXPECT_SENDS(REQU_BLOCK_ROUTE(0, strings));
  EXPECT_SENDS(REQU_KILL_TRIP({{7, -1}}));
  EXPECT_SENDS(REQU_NEW_TRIP_FILE("/trip", modes));
  EXPECT_SENDS(REQU_NEW_TRIP(trip, modes));
  EXPECT_SENDS(TMC_DATA("EVENT"));
}

#undef EXPECT_SENDS

TEST_F(Builders, ANullConnectionTextSendsNothing) {
  send::REQU_SET_DATA_CONNECTION_AVAILABLE(1, nullptr);
  EXPECT_EQ(server.TakeSent().size(), 0u);
  send::REQU_SET_DATA_CONNECTION_AVAILABLE(1, "");
  EXPECT_EQ(server.TakeSent().size(), 1u);
}

TEST_F(Builders, SendRawHandsTheBlockOverAsItIs) {
  const Bytes block = Hex("29230000 010203");
  send::SendRaw(block.value.data(), block.value.size());
  EXPECT_EQ(Sent(), block);
}

TEST_F(Builders, WithoutALayerNothingIsSent) {
  COMMUNICATION_LAYER* const present = communicationLayer;
  communicationLayer = nullptr;
  send::REQU_INIT();
  send::REQU_GET_SPELL("text");
  communicationLayer = present;
  EXPECT_EQ(server.TakeSent().size(), 0u);
}

}  // namespace
}  // namespace ventrik
