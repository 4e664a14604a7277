// SPDX-License-Identifier: Apache-2.0
// Printers of the engine's state, its settings and its audio.
#include "messages/message_text.h"
#include "messages/printer_pieces.h"
#include "messages/printers.h"
#include "messages/word_printers.h"

namespace ventrik::print {

void RESP_INIT(const ReceivedBlock& block, std::string& text) {
  if (block.Word(1) == 0) {
    text += "RESP_INIT> Navigation component is initialized successfully!\n";
  } else {
    AppendFormat(text, "RESP_INIT> Initialization error! (%d)\n", block.Word(1));
  }
}

void RESP_SHUTDOWN(const ReceivedBlock&, std::string& text) {
  text += "RESP_SHUTDOWN> Shutdown process is finished.\n";
}

void RESP_RESTORE_FACTORY(const ReceivedBlock&, std::string& text) {
  text += "RESP_RESTORE_FACTORY> Response received.\n";
}

// It only shows that the engine is alive: nothing is answered.
void INFO_HEARTBEAT(const ReceivedBlock&, std::string& text) {
  text += "INFO_HEARTBEAT> Heartbeat\n";
}

void INFO_MEASUREMENT_SYSTEM(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_MEASUREMENT_SYSTEM> measurementSystem: %s\n",
               MeasurementSystemText(block.Word(1)));
}

void INFO_APPEARANCE_STYLE(const ReceivedBlock&, std::string& text) {
  AppendNotImplemented(text, "INFO_APPEARANCE_STYLE");
}

void INFO_LANGUAGE_INFO(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_LANGUAGE_INFO> langInfo: (%s, %d)\n", LanguageText(block.Word(1)),
               block.Word(2));
}

void INFO_HIGHWAYMODE_UPDATE(const ReceivedBlock& block, std::string& text) {
  AppendEnabledLine(text, "INFO_HIGHWAYMODE_UPDATE", block.Word(1));
}

void INFO_VEH_SPEED_MODE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_VEH_SPEED_MODE> mode: %s\n",
               block.Word(1) == 1 ? "valueMode" : "warningsoff");
  AppendFormat(text, "INFO_VEH_SPEED_MODE> speed: %d\n", block.Word(2));
}

void INFO_SAFETY_CAMERA_MODE(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_SAFETY_CAMERA_MODE> %s\n",
               block.Word(1) == 0 ? "safetyWarningsOff" : "safetyWarningsOn");
}

// Oddity: a state that is neither valid nor invalid repeats the first line.
void INFO_SAFETY_CAMERA_AUDIO_MODE(const ReceivedBlock& block, std::string& text) {
  BlockCursor cursor(block, 3);
  std::string line;
  AppendQuotedLine(
      line, "INFO_SAFETY_CAMERA_AUDIO_MODE> inputEIS: ", cursor.OptionalString(block.Word(1)));
  text += line;
  const std::int32_t state = block.Word(2);
  if (state == 1) line = "INFO_SAFETY_CAMERA_AUDIO_MODE> valid\n";
  if (state == 2) line = "INFO_SAFETY_CAMERA_AUDIO_MODE> invalid\n";
  text += line;
}

void INFO_REQU_SET_VOLUME_LEVEL(const ReceivedBlock& block, std::string& text) {
  AppendLine(text, "INFO_REQU_SET_VOLUME_LEVEL> ", OneString(block), "\n");
}

void INFO_PROMPT_READY(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_PROMPT_READY> audioSource: %s\n", AudioSourceWord(block.Word(1)));
}

void INFO_ADA_IS_ENABLED(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_ADA_IS_ENABLED> isEnabled: %s\n", OnOffWord(block.Word(1)));
}

void INFO_ACTIVE_AUDIO_SRC(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "INFO_ACTIVE_AUDIO_SRC> audioSource: %s\n", AudioSourceWord(block.Word(1)));
}

// The state is shown as a number here.
void RESP_PLAY_PROMPT(const ReceivedBlock& block, std::string& text) {
  AppendFormat(text, "RESP_PLAY_PROMPT> prompt: %d\n", block.Word(1));
  AppendFormat(text, "RESP_PLAY_PROMPT> validState: %d\n", block.Word(2));
}

}  // namespace ventrik::print
