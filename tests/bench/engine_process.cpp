// SPDX-License-Identifier: Apache-2.0
#include "tests/bench/engine_process.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <utility>

#include "messages/function_ids.h"

namespace ventrik::bench {
namespace {

std::array<int, 2> OpenPipe() {
  std::array<int, 2> ends = {};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    std::perror("pipe2");
    std::abort();
  }
  return ends;
}

// One byte, or what reading gave; a test that hangs gets the end of the output instead.
bool ReadByte(int from, char& byte) {
  pollfd wait = {from, POLLIN, 0};
  if (poll(&wait, 1, 60'000) <= 0) return false;
  return read(from, &byte, 1) == 1;
}

std::string ReadAll(int from) {
  std::string text;
  char byte = 0;
  while (ReadByte(from, byte)) text += byte;
  return text;
}

}  // namespace

EngineProcess::EngineProcess(const Arguments& arguments) {
  const std::array<int, 2> output = OpenPipe();
  const std::array<int, 2> errors = OpenPipe();
  std::vector<char*> values;
  for (const char* word : {VENTRIK_BENCH_COMMAND}) values.push_back(const_cast<char*>(word));
  for (const std::string& argument : arguments)
    values.push_back(const_cast<char*>(argument.data()));
  values.push_back(nullptr);
  process_ = std::make_unique<tests::ChildProcess>([&] {
    dup2(output[1], STDOUT_FILENO);
    dup2(errors[1], STDERR_FILENO);
    execvp(values[0], values.data());
    return 127;
  });
  close(output[1]);
  close(errors[1]);
  output_ = output[0];
  errors_ = errors[0];
}

EngineProcess::~EngineProcess() {
  close(output_);
  close(errors_);
}

std::string EngineProcess::ReadLine() {
  std::string line;
  char byte = 0;
  while (ReadByte(output_, byte) && byte != '\n') line += byte;
  return line;
}

int EngineProcess::End(int number) {
  if (number != 0) kill(process_->pid(), number);
  return process_->Wait();
}

std::size_t EngineProcess::Descriptors() const {
  const std::filesystem::directory_iterator open("/proc/" + std::to_string(process_->pid()) +
                                                 "/fd");
  return static_cast<std::size_t>(std::distance(begin(open), end(open)));
}

std::string EngineProcess::output() {
  return ReadAll(output_);
}
std::string EngineProcess::errors() {
  return ReadAll(errors_);
}

void TestClient::Close() {
  if (peer_ != nullptr) ipc_close(std::exchange(peer_, nullptr));
}

bool TestClient::Send(const void* data, std::size_t size) const {
  IpcMessage* message = ipc_connect(peer_);
  const bool taken = ipc_write(message, data, size) == static_cast<long>(size);
  return ipc_disconnect(message) == 0 && taken;
}

Block TestClient::Receive() const {
  IpcMessage* message = ipc_accept(peer_);
  if (message == nullptr) return {};
  Block block(ipc_length(message) + 1);
  const int count = ipc_read(message, block.data(), block.size());
  ipc_finish(message, 0);
  block.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  return block;
}

std::string TestClient::ReceiveName(const std::string& field) const {
  const Block block = Receive();
  const ReceivedBlock received{block.data(), block.size()};
  const char* name = FunctionName(received.Word(0));
  std::string text = block.size() < 4 || name == nullptr ? "(no message)" : name;
  if (field.empty()) return text;
  const auto fields = DecodeMessage(received);
  const FieldValue* value = fields ? FindField(*fields, field) : nullptr;
  if (value == nullptr) return text;
  if (const auto* number = std::get_if<std::int32_t>(value)) text += " " + std::to_string(*number);
  if (const auto* string = std::get_if<std::string>(value)) text += " " + *string;
  if (const auto* strings = std::get_if<std::vector<std::string>>(value)) {
    for (const std::string& each : *strings) text += " " + each;
  }
  return text;
}

}  // namespace ventrik::bench
