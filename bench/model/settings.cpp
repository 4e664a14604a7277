// SPDX-License-Identifier: Apache-2.0
#include "bench/model/settings.h"

#include <iterator>
#include <utility>

#include "bench/eis.h"
#include "bench/model/engine_state.h"

namespace ventrik::bench {
namespace {

// ---- what is told of the settings

MessageFields LanguageFields(const SettingsState& settings) {
  return {{"language", settings.language}, {"number", settings.languageNumber}};
}

MessageFields MeasurementSystemFields(const SettingsState& settings) {
  return {{"measurementSystem", settings.measurementSystem}};
}

MessageFields SpeedModeFields(const SettingsState& settings) {
  return {{"mode", settings.speedMode}, {"speed", settings.warnedSpeed}};
}

MessageFields SafetyCameraFields(const SettingsState& settings) {
  return {{"mode", settings.safetyCameraMode}};
}

MessageFields SafetyCameraAudioFields(const SettingsState& settings) {
  return {{"inputEIS", settings.safetyCameraAudio}, {"state", kYes}};
}

MessageFields VolumeFields(const SettingsState& settings) {
  return {{"text", settings.volume}};
}

struct Told {
  FunctionId id;
  MessageFields (*fields)(const SettingsState& settings);
};

constexpr Told kLanguage = {INFO_LANGUAGE_INFO, LanguageFields};
constexpr Told kMeasurementSystem = {INFO_MEASUREMENT_SYSTEM, MeasurementSystemFields};
constexpr Told kSpeedMode = {INFO_VEH_SPEED_MODE, SpeedModeFields};
constexpr Told kSafetyCamera = {INFO_SAFETY_CAMERA_MODE, SafetyCameraFields};
constexpr Told kVolume = {INFO_REQU_SET_VOLUME_LEVEL, VolumeFields};
constexpr Told kSafetyCameraAudio = {INFO_SAFETY_CAMERA_AUDIO_MODE, SafetyCameraAudioFields};

constexpr Told kToldSettings[] = {
    kLanguage, kMeasurementSystem, kSpeedMode, kSafetyCamera, kVolume, kSafetyCameraAudio,
};

void Tell(const Told& told, const SettingsState& settings, Replies& out) {
  out.Notify(told.id, told.fields(settings));
}

// ---- what can be set

bool IsLanguage(std::int32_t language) {
  return language >= 1 && language <= 26;
}

bool IsMeasurementSystem(std::int32_t system) {
  return system == 2 || system == 4 || system == 8;
}

bool IsOffOrOn(std::int32_t mode) {
  return mode == 0 || mode == 1;
}

bool IsWarnedSpeed(std::int32_t speed) {
  return speed >= 0 && speed <= kMaxWarnedSpeed;
}

bool IsKept(const std::string& text) {
  return text.size() <= kMaxSettingText;
}

bool IsTagged(const std::string& text) {
  return IsKept(text) && !ParseEis(text).empty();
}

// ---- the requests

void HandleLanguage(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  SettingsState& settings = state.settings;
  const auto language = Get<std::int32_t>(request, "language");
  if (IsLanguage(language)) {
    settings.language = language;
    settings.languageNumber = Get<std::int32_t>(request, "number");
  }
  Tell(kLanguage, settings, out);
}

void HandleMeasurementSystem(EngineState& state, const MessageFields& request, TimePoint,
                             Replies& out) {
  const auto system = Get<std::int32_t>(request, "measurementSystem");
  if (IsMeasurementSystem(system)) state.settings.measurementSystem = system;
  Tell(kMeasurementSystem, state.settings, out);
}

void HandleSpeedMode(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  SettingsState& settings = state.settings;
  const auto mode = Get<std::int32_t>(request, "mode");
  const auto speed = Get<std::int32_t>(request, "speed");
  if (IsOffOrOn(mode) && IsWarnedSpeed(speed)) {
    settings.speedMode = mode;
    settings.warnedSpeed = speed;
  }
  Tell(kSpeedMode, settings, out);
}

void HandleSafetyCamera(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const auto mode = Get<std::int32_t>(request, "mode");
  if (IsOffOrOn(mode)) state.settings.safetyCameraMode = mode;
  Tell(kSafetyCamera, state.settings, out);
}

void HandleSafetyCameraAudio(EngineState& state, const MessageFields& request, TimePoint,
                             Replies& out) {
  const std::string& eis = Get<std::string>(request, "inputEIS");
  if (!IsTagged(eis)) {
    out.Answer(INFO_SAFETY_CAMERA_AUDIO_MODE, {{"inputEIS", eis}, {"state", kNo}}, {"inputEIS"});
    return;
  }
  state.settings.safetyCameraAudio = eis;
  Tell(kSafetyCameraAudio, state.settings, out);
}

void HandleVolume(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const std::string& eis = Get<std::string>(request, "eis");
  if (IsTagged(eis)) state.settings.volume = eis;
  Tell(kVolume, state.settings, out);
}

void HandleDataConnection(EngineState& state, const MessageFields& request, TimePoint, Replies&) {
  const std::string& text = Get<std::string>(request, "text");
  if (!IsKept(text)) return;
  state.settings.dataConnectionAvailable = Get<std::int32_t>(request, "available");
  state.settings.dataConnection = text;
}

void HandleDataConnectionInfo(EngineState& state, const MessageFields& request, TimePoint,
                              Replies&) {
  const std::string& eis = Get<std::string>(request, "eis");
  if (IsKept(eis)) state.settings.dataConnectionInfo = eis;
}

void HandleUserInput(EngineState& state, const MessageFields& request, TimePoint, Replies&) {
  const std::string& eis = Get<std::string>(request, "eis");
  if (IsKept(eis)) state.settings.userInput = eis;
}

// There is no such log to save, and nothing that could be answered.
void HandleSaveLog(EngineState&, const MessageFields&, TimePoint, Replies&) {}

constexpr HandlerRow kHandlers[] = {
    {REQU_SET_LANGUAGE, HandleLanguage},
    {REQU_SET_MEASUREMENT_SYSTEM, HandleMeasurementSystem},
    {REQU_SET_VEH_SPEED_MODE, HandleSpeedMode},
    {REQU_SET_SAFETY_CAMERA_MODE, HandleSafetyCamera},
    {REQU_SET_SAFETY_CAMERA_AUDIO_MODE, HandleSafetyCameraAudio},
    {REQU_SET_VOLUME_LEVEL, HandleVolume},
    {REQU_SET_DATA_CONNECTION_AVAILABLE, HandleDataConnection},
    {REQU_SET_DATA_CONNECTION_INFO, HandleDataConnectionInfo},
    {REQU_USER_INPUT, HandleUserInput},
    {SAVE_VOLTH_LOG, HandleSaveLog},
};

}  // namespace

void RestoreSettings(EngineState& state, Replies& out) {
  const SettingsState before = std::exchange(state.settings, {});
  for (const Told& told : kToldSettings) {
    if (told.fields(before) == told.fields(state.settings)) continue;
    Tell(told, state.settings, out);
  }
}

HandlerRows SettingsHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

}  // namespace ventrik::bench
