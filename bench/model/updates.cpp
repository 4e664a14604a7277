// SPDX-License-Identifier: Apache-2.0
#include "bench/model/updates.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/model/engine_state.h"
#include "bench/model/update_package.h"
#include "bench/picture/png_file.h"

namespace ventrik::bench {
namespace {

constexpr std::int32_t kFirstVersion = 1;

void TellProgress(const UpdateRun& run, Replies& out) {
  out.Notify(INFO_UPDATE_PROGRESS, {{"updatePath", run.path}, {"percent", run.percent}});
}

std::vector<std::string> FilesOf(std::int32_t version) {
  const std::string number = std::to_string(version);
  return {"maps/places-" + number + ".db", "maps/roads-" + number + ".db"};
}

void HandleCheckForUpdate(EngineState& state, const MessageFields& request, TimePoint now,
                          Replies& out) {
  UpdatesState& updates = state.updates;
  const auto& path = Get<std::string>(request, "updatePath");
  const UpdatePackage package = JudgeUpdatePackage(path, updates.installed);
  const bool starts = package.result == kUpdateSuccess && !updates.running;
  std::vector<std::string> removed;
  std::vector<std::string> copied;
  if (starts) {
    removed = FilesOf(updates.installed);
    copied = FilesOf(package.version);
  }
  out.Answer(RESP_CHECK_FOR_UPDATE,
             {{"path", path},
              {"result", package.result},
              {"update", YesOrNo(starts)},
              {"delete", removed},
              {"copy", copied}},
             {"path"});
  if (!starts) return;
  updates.running = UpdateRun{path, package.version, 0, now + kUpdateStepTime};
  TellProgress(*updates.running, out);
}

std::string StatusText(const EngineState& state) {
  return ProgramVersion() + "\n" + "update: " + std::to_string(state.updates.installed) + "\n" +
         "packages loaded: " + std::to_string(state.packages.loaded) + "\n" +
         "traffic: " + (state.traffic.on ? "on, " : "off, ") +
         std::to_string(state.traffic.events.size()) + " events\n";
}

// A link is not followed, and nobody is waited for at the other end of a pipe.
bool WriteFile(const std::string& path, std::string_view text) {
  const int file =
      open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644);
  if (file == -1) return false;
  const ssize_t written = write(file, text.data(), text.size());
  const bool closed = close(file) == 0;
  return closed && written == static_cast<ssize_t>(text.size());
}

void HandleStoreStatus(EngineState& state, const MessageFields& request, TimePoint, Replies& out) {
  const auto& path = Get<std::string>(request, "path");
  const std::string name(LastPart(path));
  const bool mayStore = !state.pictureFolder.empty() && IsPlainFileName(name);
  const std::string file = mayStore ? state.pictureFolder + "/" + name : std::string();
  const auto answer = [path, file, text = StatusText(state)]() -> MessageFields {
    const bool stored = !file.empty() && WriteFile(file, text);
    return {{"path", path}, {"result", YesOrNo(stored)}};
  };
  out.AnswerLater(RESP_STORE_DEVICE_STATUS, answer, {"path"});
}

constexpr HandlerRow kHandlers[] = {
    {REQU_CHECK_FOR_UPDATE, HandleCheckForUpdate},
    {REQU_STORE_DEVICE_STATUS, HandleStoreStatus},
};

std::optional<TimePoint> NextTick(const EngineState& state) {
  if (!state.updates.running) return std::nullopt;
  return state.updates.running->nextStep;
}

void Tick(EngineState& state, TimePoint now, Replies& out) {
  UpdatesState& updates = state.updates;
  while (updates.running && updates.running->nextStep <= now) {
    UpdateRun& run = *updates.running;
    run.percent += kUpdateStep;
    run.nextStep += kUpdateStepTime;
    TellProgress(run, out);
    if (run.percent < 100) continue;
    updates.installed = run.version;
    updates.running.reset();
  }
}

}  // namespace

void RestoreUpdates(EngineState& state, Replies& out) {
  const UpdatesState before = std::exchange(state.updates, {});
  if (!before.running) return;
  UpdateRun ended = *before.running;
  ended.percent = 0;
  TellProgress(ended, out);
}

std::string UpdateSuffix(const UpdatesState& updates) {
  if (updates.installed == kFirstVersion) return {};
  return ", update " + std::to_string(updates.installed);
}

HandlerRows UpdatesHandlers() {
  return {std::begin(kHandlers), std::end(kHandlers)};
}

SubjectClock UpdatesClock() {
  return {NextTick, Tick};
}

}  // namespace ventrik::bench
