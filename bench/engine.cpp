// SPDX-License-Identifier: Apache-2.0
// Cancellation: the receiving thread is open to it only while it waits for a message or for the
// rest of one. The transport's handshake, which calls back, is inside such a wait.
#include "bench/engine.h"

#include <signal.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <set>
#include <utility>

#include "bench/builtin_answers.h"
#include "bench/report.h"
#include "messages/encoders.h"
#include "messages/function_ids.h"
#include "messages/message_layout.h"
#include "platform/thread_start.h"

namespace ventrik::bench {
namespace {

constexpr int kEndingLimit = 10'000;  // milliseconds

// What a built-in answer takes, as from a real engine. In a batch file it is also the time in which
// the line behind a request, a `waitresp`, gets to be read before the response comes.
constexpr std::chrono::milliseconds kAnswerTime{20};

bool ReadFile(const std::string& path, std::string& text, std::string& error) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                             std::fclose);
  std::array<char, 4096> part = {};
  std::size_t count = 0;
  while (file && (count = std::fread(part.data(), 1, part.size(), file.get())) > 0) {
    text.append(part.data(), count);
  }
  if (file && std::ferror(file.get()) == 0) return true;
  error = path + ": " + std::strerror(errno);
  return false;
}

bool LoadScenario(const std::string& path, Scenario& scenario, std::string& error) {
  std::string text;
  if (!ReadFile(path, text, error)) return false;
  auto parsed = ParseScenario(text, path, error);
  if (!parsed) return false;
  scenario = std::move(*parsed);
  return true;
}

// Why a name could not be taken, with the errno of the attempt.
std::string NameFault(const std::string& name, int fault) {
  const std::string quoted = "the name \"" + name + "\" ";
  const int connection = name_open(name.c_str(), 0);
  if (connection != -1) {
    ConnectDetach(connection);
    return quoted + "is taken by a server that is running";
  }
  if (errno == EINVAL || errno == ENAMETOOLONG) return quoted + "can't be the name of a server";
  return quoted + "can't be taken: " + std::strerror(fault);
}

Block HeartbeatBlock() {
  Block block;
  std::string error;
  EncodeMessage(INFO_HEARTBEAT, {}, block, error);
  return block;
}

bool IsAlive(std::uint32_t process) {
  return !platform::ProcessIsGone(static_cast<pid_t>(process));
}

// Answers a message and gives it back, also when its thread is cancelled.
struct InHand {
  IpcMessage* message;
  int status = 0;
  ~InHand() { ipc_finish(message, status); }
};

}  // namespace

Engine::Engine(const Options& options, const World& world) : options_(options), world_(world) {}

Engine::~Engine() {
  if (server_ != nullptr) ipc_server_close(server_);
  ipc_cleanup();
}

bool Engine::Start(std::string& error) {
  const bool hasScenario = !options_.scenarioFile.empty();
  if (hasScenario && !LoadScenario(options_.scenarioFile, scenario_, error)) return false;
  server_ = ipc_server_create(options_.name.c_str());
  if (server_ == nullptr) {
    error = NameFault(options_.name, errno);
    return false;
  }
  if (!options_.recordFile.empty() && !recorder_.Open(options_.recordFile, error)) return false;
  server_->onConnect = OnConnect;
  server_->onConnectContext = this;
  if (sender_.Start() && platform::StartThread(thread_, Body, this)) return true;
  error = "no thread can be started";
  Stop();
  return false;
}

bool Engine::Stop() {
  sender_.Stop();
  platform::CancelAndForget(thread_);
  if (platform::WaitForThreads(kEndingLimit)) {
    ipc_server_close(std::exchange(server_, nullptr));
    return true;
  }
  name_detach(server_->attach, 0);
  ChannelDestroy(server_->channel1);
  return false;
}

std::string Engine::Summary() const {
  return std::to_string(received_) + " messages received, " + std::to_string(sender_.sent()) +
         " sent, " + std::to_string(connected_) + " connections";
}

void* Engine::Body(void* engine) {
  static_cast<Engine*>(engine)->Run();
  return nullptr;
}

// An accept that gives nothing mostly means that a client has gone.
void Engine::Run() {
  const platform::CancellationDisabled disabled;
  for (;;) {
    IpcMessage* message = nullptr;
    {
      const platform::CancellationAllowed allowed(disabled);
      message = ipc_server_accept(server_);
    }
    if (message == nullptr) {
      clientsChanged_ = true;
    } else {
      Handle(message, disabled);
    }
    if (std::exchange(clientsChanged_, false)) PruneClients();
  }
}

void Engine::OnConnect(IpcPeer& client, void* engine) {
  const platform::CancellationDisabled whole;
  Engine& self = *static_cast<Engine*>(engine);
  ++self.connected_;
  self.clientsChanged_ = true;
  for (ScenarioMessage& message : self.scenario_.Take(std::nullopt)) {
    self.sender_.Post(&client, std::move(message.block), message.after);
  }
}

void Engine::Handle(IpcMessage* message, const platform::CancellationDisabled& disabled) {
  IpcPeer* client = message->clientRecord;
  const std::uint32_t process = message->senderProcess;
  const std::optional<Block> block = Read(message, disabled);
  if (!block) return;
  ++received_;
  const ReceivedBlock request{block->data(), block->size()};
  const auto now = std::chrono::steady_clock::now();
  recorder_.Record(std::chrono::duration_cast<std::chrono::milliseconds>(now - start_), request);
  if (client == nullptr) {
    Report("process %u sends without having connected", process);
    return;
  }
  sender_.Heard(client);
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
  Block block(std::size_t{length} + 1);
  int count = 0;
  {
    // A thread that is cancelled here answers with an error.
    inHand.status = EINTR;
    const platform::CancellationAllowed allowed(disabled);
    count = ipc_read(message, block.data(), block.size());
  }
  inHand.status = 0;
  if (count != static_cast<int>(length)) {
    Report("a message from process %u has no end and was dropped", process);
    return std::nullopt;
  }
  block.resize(length);
  return block;
}

void Engine::Answer(IpcPeer* client, ReceivedBlock request) {
  for (ScenarioMessage& message : scenario_.Take(request.Word(0))) {
    sender_.Post(client, std::move(message.block), message.after);
  }
  if (!options_.blank) {
    for (Block& answer : BuiltInAnswers(request, world_)) {
      sender_.Post(client, std::move(answer), kAnswerTime);
    }
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
    *link = client->next;
    sender_.Retire(client, isOlder);
  }
}

}  // namespace ventrik::bench
