// SPDX-License-Identifier: Apache-2.0
// Cancellation: the receiving thread is open to it only while it waits for a message or for the
// rest of one. The transport's handshake, which calls back, is inside such a wait.
#include "bench/engine.h"

#include <signal.h>
#include <sys/time.h>

#include <cerrno>
#include <cstring>
#include <set>
#include <thread>
#include <utility>

#include "bench/report.h"
#include "bench/scenario_file.h"
#include "messages/encoders.h"
#include "messages/function_ids.h"
#include "messages/message_layout.h"
#include "platform/thread_start.h"

namespace ventrik::bench {
namespace {

constexpr int kEndingLimit = 10'000;              // milliseconds
constexpr std::chrono::seconds kNextTry{1};       // until a name that can't be had is tried again
constexpr std::uint64_t kNextLook = 500'000'000;  // nanoseconds until the dead are looked for again
constexpr suseconds_t kLastWords = 500'000;  // microseconds for the answers before a wanted end

// Why a name could not be taken, with the errno of the attempt.
std::string WhyNot(const std::string& name, int error) {
  const std::string quoted = "the name \"" + name + "\" ";
  const int connection = name_open(name.c_str(), 0);
  if (connection != -1) {
    ConnectDetach(connection);
    return quoted + "is taken by a server that is running";
  }
  if (errno == EINVAL || errno == ENAMETOOLONG) return quoted + "can't be the name of a server";
  return quoted + "can't be taken: " + std::strerror(error);
}

Block HeartbeatBlock() {
  Block block;
  std::string error;
  EncodeMessage(INFO_HEARTBEAT, {}, block, error);
  return block;
}

// SIGALRM is among the signals that the main thread waits for.
void EndSoon() {
  itimerval once = {};
  once.it_value.tv_usec = kLastWords;
  setitimer(ITIMER_REAL, &once, nullptr);
}

bool IsAlive(std::uint32_t process) {
  return !platform::ProcessIsGone(static_cast<pid_t>(process));
}

void LimitNextReceive(const std::uint64_t& nanoseconds) {
  struct sigevent unblock = {};
  unblock.sigev_notify = SIGEV_UNBLOCK;
  TimerTimeout(CLOCK_MONOTONIC, _NTO_TIMEOUT_RECEIVE, &unblock, &nanoseconds, nullptr);
}

// Answers a message and gives it back, also when its thread is cancelled.
struct InHand {
  IpcMessage* message;
  int status = 0;
  ~InHand() { ipc_finish(message, status); }
};

}  // namespace

Engine::Engine(const Options& options, const World& world)
    : options_(options),
      seed_(options.seed ? *options.seed : SeedFromClock()),
      model_(world, outlet_),
      scenario_(outlet_) {
  outlet_.Arm(options.faults, seed_);
  requestFaults_.Arm(options.faults, seed_);
  usesChance_ = !options.faults.empty();
  model_.UseFolders(options.pictureFolder, options.overlayFolder);
  outlet_.onStrike = [this](const Strike& strike) { NoteStrike(strike); };
  requestFaults_.onStrike = [this](const Strike& strike) {
    NoteStrike(strike);
    const bool isLost =
        StageOf(strike.kind) == FaultStage::request && strike.kind != FaultKind::hang;
    if (isLost)
      unanswered_.Count(strike.message, std::string("struck by ") + FaultName(strike.kind));
  };
  sender_.onSent = [this](const IpcPeer& client, const Block& block) {
    Note(Direction::sent, client.processId, {block.data(), block.size()});
  };
}

Engine::~Engine() {
  if (server_ != nullptr) ipc_server_close(server_);
  ipc_cleanup();
}

bool Engine::Start(std::string& error) {
  if (!options_.scenarioFile.empty() && !UseScenario(error)) return false;
  server_ = OpenServer();
  if (server_ == nullptr) {
    error = WhyNot(options_.name, errno);
    return false;
  }
  if (!options_.recordFile.empty() && !recorder_.Open(options_.recordFile, error)) return false;
  const bool hasLog = !options_.logFile.empty();
  if (hasLog && !log_.Open(options_.logFile, options_.logFormat, error)) return false;
  if (sender_.Start() && model_.Start() && scenario_.Start() &&
      platform::StartThread(thread_, Body, this)) {
    return true;
  }
  error = "no thread can be started";
  Stop();
  return false;
}

bool Engine::UseScenario(std::string& error) {
  std::optional<Scenario> scenario = LoadScenario(options_.scenarioFile, error);
  if (!scenario) return false;
  usesChance_ = usesChance_ || scenario->UsesChance();
  scenario_.Use(std::move(*scenario), seed_);
  return true;
}

IpcServer* Engine::OpenServer() {
  IpcServer* server = ipc_server_create(options_.name.c_str());
  if (server == nullptr) return nullptr;
  server->onHandshake = OnHandshake;
  server->onConnect = OnConnect;
  server->context = this;
  return server;
}

bool Engine::Stop() {
  scenario_.Stop();
  model_.Stop();
  sender_.Stop();
  platform::CancelAndForget(thread_);
  if (platform::WaitForThreads(kEndingLimit)) {
    sender_.ReportDrops();
    requestFaults_.GiveBack();
    if (server_ != nullptr) ipc_server_close(std::exchange(server_, nullptr));
    return true;
  }
  if (server_ == nullptr) return false;
  name_detach(server_->attach, 0);
  ChannelDestroy(server_->channel1);
  return false;
}

std::string Engine::Summary() const {
  return std::to_string(tally_.received()) + " messages received, " +
         std::to_string(sender_.sent()) + " sent, " + std::to_string(connected_) + " connections";
}

std::vector<std::string> Engine::Remarks() const {
  std::vector<std::string> remarks;
  for (const std::string& rule : scenario_.NeverSetOff())
    remarks.push_back("never set off: " + rule);
  for (const std::string& line : unanswered_.Lines()) remarks.push_back("not answered: " + line);
  for (const std::string& line : outlet_.Lost()) remarks.push_back("not sent: " + line);
  const std::string requests = requestFaults_.FaultsDone();
  const std::string answers = outlet_.FaultsDone();
  const char* separator = requests.empty() || answers.empty() ? "" : ", ";
  const std::string done = requests + separator + answers;
  if (!options_.faults.empty()) remarks.push_back("faults: " + (done.empty() ? "none" : done));
  return remarks;
}

std::optional<std::uint32_t> Engine::ChanceSeed() const {
  return usesChance_ ? std::optional<std::uint32_t>(seed_) : std::nullopt;
}

void* Engine::Body(void* engine) {
  static_cast<Engine*>(engine)->Run();
  return nullptr;
}

void Engine::Run() {
  const platform::CancellationDisabled disabled;
  for (;;) {
    IpcMessage* message = Accept(disabled);
    if (message != nullptr) {
      HandleWithFaults(message, disabled);
    } else {
      PruneClients();
    }
  }
}

// The next message; null mostly when a client has gone. A process whose connections are closed can
// still be at its end, so that it is looked for once more a little later.
IpcMessage* Engine::Accept(const platform::CancellationDisabled& disabled) {
  const platform::CancellationAllowed allowed(disabled);
  if (std::exchange(looksAgain_, false)) LimitNextReceive(kNextLook);
  errno = 0;
  IpcMessage* message = ipc_server_accept(server_);
  if (message == nullptr) looksAgain_ = errno != ETIMEDOUT;
  return message;
}

int Engine::OnHandshake(void* engine) {
  Engine& self = *static_cast<Engine*>(engine);
  return self.requestFaults_.Handshake(self.SinceStart());
}

void Engine::OnConnect(IpcPeer& client, void* engine) {
  const platform::CancellationDisabled whole;
  Engine& self = *static_cast<Engine*>(engine);
  ++self.connected_;
  self.model_.Connected(&client);
  self.scenario_.Connected(&client);
  // Here, as a client that does no more than connect, again and again, ends no wait for a message.
  self.PruneClients();
}

void Engine::HandleWithFaults(IpcMessage* message, const platform::CancellationDisabled& disabled) {
  switch (requestFaults_.Request(message, SinceStart(), disabled)) {
    case RequestFaults::Fate::read:
      return Handle(message, disabled);
    case RequestFaults::Fate::gone:
      return;
    case RequestFaults::Fate::restart:
      model_.Restart();
      return Die(disabled);
    case RequestFaults::Fate::die:
      return Die(disabled);
  }
}

void Engine::Handle(IpcMessage* message, const platform::CancellationDisabled& disabled) {
  IpcPeer* client = message->clientRecord;
  const std::uint32_t process = message->senderProcess;
  const std::optional<Block> block = Read(message, disabled);
  if (!block) return;
  const ReceivedBlock request{block->data(), block->size()};
  recorder_.Record(SinceStart(), request);
  Note(Direction::received, process, request);
  if (client == nullptr) {
    Report("process %u sends without having connected", process);
    return;
  }
  // Only a new session says that a client which took nothing listens now.
  if (request.size >= kWordSize && request.Word(0) == REQU_INIT) sender_.Heard(client);
  if (request.size >= kWordSize) Answer(client, request);
}

std::optional<Block> Engine::Read(IpcMessage* message,
                                  const platform::CancellationDisabled& disabled) {
  InHand inHand{message};
  const std::uint32_t process = message->senderProcess;
  const std::uint32_t length = ipc_length(message);
  if (length > kMaxPayload) {
    inHand.status = kTooLong;
    Report("a message of %u bytes from process %u was refused", length, process);
    return std::nullopt;
  }
  TakeLateEndMarkers();
  // The faults may have taken the beginning. ipc_read counts it in all the same, as the answer to
  // the sender must, and leaves as much room at the end.
  const Block& head = requestFaults_.takenAhead();
  message->offset += head.size();
  Block block(std::size_t{length} + 1);
  int count = 0;
  {
    // A thread that is cancelled here answers with an error.
    inHand.status = EINTR;
    const platform::CancellationAllowed allowed(disabled);
    errno = 0;
    count = ipc_read(message, block.data(), block.size());
    if (count == -1 && errno == ETIMEDOUT) ++lateEndMarkers_;
  }
  inHand.status = 0;
  if (count != static_cast<int>(length)) {
    Report("a message from process %u has no end and was dropped", process);
    return std::nullopt;
  }
  block.resize(length - head.size());
  block.insert(block.begin(), head.begin(), head.end());
  return block;
}

// What comes in on this channel between two messages belongs to one that was given up, and must not
// be taken for the end of the next one.
void Engine::TakeLateEndMarkers() {
  while (lateEndMarkers_ > 0) {
    IpcControlRecord record = {};
    LimitNextReceive(0);
    const int id = MsgReceive(server_->channel1, &record, sizeof record, nullptr);
    if (id < 0) return;
    if (id == 0) continue;
    MsgReply(id, 0, nullptr, 0);
    --lateEndMarkers_;
  }
}

void Engine::Answer(IpcPeer* client, ReceivedBlock request) {
  const ScenarioThread::Handled handled = scenario_.Handle(client, request);
  if (!options_.blank && handled.isInstead) {
    model_.Skip(client, request);
  } else if (!options_.blank) {
    model_.Handle(client, request);
  }
  const bool isKnown = !options_.blank && Model::Handles(request.Word(0));
  const bool isLeftToModel = isKnown && !handled.isInstead;
  if (!isLeftToModel && !handled.isAnswered) {
    unanswered_.Count(request.Word(0), handled.isRuled ? "a rule sends nothing" : "");
  }
  if (request.Word(0) == REQU_SHUTDOWN && options_.exitOnShutdown &&
      !std::exchange(ending_, true)) {
    EndSoon();
  }
  if (request.Word(0) == REQU_INIT && options_.heartbeat.count() > 0) {
    sender_.Repeat(client, HeartbeatBlock(), kAnswerTime + options_.heartbeat, options_.heartbeat);
  }
}

void Engine::PruneClients() {
  std::set<std::uint32_t> seen;  // the newest record of a process comes first
  IpcPeer** link = &server_->clients;
  while (*link != nullptr) {
    IpcPeer* client = *link;
    const bool isOlder = !seen.insert(client->processId).second;
    if (!isOlder && IsAlive(client->processId)) {
      link = &client->next;
      continue;
    }
    GiveUp(link, isOlder);
  }
}

void Engine::GiveUp(IpcPeer** link, bool sendWaiting) {
  IpcPeer* client = *link;
  *link = client->next;
  model_.Forget(client);
  scenario_.Forget(client);
  sender_.Retire(client, sendWaiting);
}

// What a tester sees of a server that crashes and is started again.
void Engine::Die(const platform::CancellationDisabled& disabled) {
  while (server_->clients != nullptr) GiveUp(&server_->clients, false);
  ipc_server_close(std::exchange(server_, nullptr));
  lateEndMarkers_ = 0;
  requestFaults_.GiveBack();
  std::chrono::milliseconds pause = requestFaults_.deadFor();
  do {
    const platform::CancellationAllowed waiting(disabled);
    std::this_thread::sleep_for(pause);
    pause = kNextTry;
  } while ((server_ = OpenServer()) == nullptr);
}

void Engine::NoteStrike(const Strike& strike) {
  log_.Write(LoggedStrike{SinceStart(), strike});
}

void Engine::Note(Direction direction, std::uint32_t process, ReceivedBlock block) {
  if (direction == Direction::received) {
    tally_.Received(block);
  } else {
    tally_.Sent(block);
  }
  log_.Write(LoggedMessage{SinceStart(), direction, process, block});
}

std::chrono::milliseconds Engine::SinceStart() const {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start_);
}

}  // namespace ventrik::bench
