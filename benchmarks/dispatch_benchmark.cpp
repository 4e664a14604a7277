// SPDX-License-Identifier: Apache-2.0
// A list of the server's on its way to the console and to the log, beside the least that has to be
// done with its text once that stands there: one conversion and one print.
#include <benchmark/benchmark.h>

#include <atomic>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/beside.h"
#include "benchmarks/sinks.h"
#include "console/logger_posix.h"
#include "console/response_printer.h"
#include "console/utf8.h"
#include "ipc/client_communication_layer_posix.h"
#include "ipc/ipc.h"
#include "messages/dispatch.h"
#include "messages/message_layout.h"
#include "state/client_app.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kListRows = 100;
constexpr std::size_t kLists = 50;  // to a round
constexpr std::size_t kReceiveSize = 512000;
const char* const kServerName = "benchmark";
constexpr char kWord[4] = {};  // a message to say something

const Scratch* scratch = nullptr;

using Block = std::vector<std::uint8_t>;

Block MakeList(std::size_t rows) {
  std::vector<std::string> items;
  for (std::size_t i = 0; i < rows; ++i) {
    const std::string number = std::to_string(i + 1);
    items.push_back("<CTY>Sch\xC3\xB6nfeld<*><STR>Am Weiher " + number + "<*><GEO>11.4" + number +
                    " 48.1" + number + "<*>");
  }
  const auto count = static_cast<std::int32_t>(rows);
  Block block;
  std::string error;
  if (!EncodeMessage(RESP_GET_LIST,
                     {{"inputEIS", "<CTR>Deutschland<*>"},
                      {"validState", 1},
                      {"startIndex", 1},
                      {"resultCount", count},
                      {"fieldOptions", std::vector<std::string>{"<CTY>", "<STR>", "<GEO>"}},
                      {"itemList", items},
                      {"outputEIS", "<CTR>Deutschland<*>"},
                      {"completeState", 1}},
                     block, error)) {
    std::fprintf(stderr, "%s\n", error.c_str());
    std::exit(1);
  }
  return block;
}

// A printer with a log of its own, begun anew by each Clear.
class LoggedPrinter {
 public:
  LoggedPrinter() { Clear(); }
  ~LoggedPrinter() { StopLog(printer_); }
  LoggedPrinter(const LoggedPrinter&) = delete;
  LoggedPrinter& operator=(const LoggedPrinter&) = delete;

  void Clear() {
    StopLog(printer_);
    StartLog(printer_, path_.c_str());
  }
  std::string Log() {
    StopLog(printer_);
    return ReadBack(path_);
  }
  ResponsePrinter& printer() { return printer_; }

 private:
  const std::string path_ = scratch->Path("log");
  ResponsePrinter printer_;
};

// With room that is there already.
void PrintAnchor(const std::string& text) {
  static std::wstring room(kReceiveSize, L'\0');
  const int length = std::swprintf(room.data(), room.size(), L"%ls", Utf8ToWide(text).c_str());
  const std::string bytes = WideToTerminal({room.data(), static_cast<std::size_t>(length)});
  if (write(STDOUT_FILENO, bytes.data(), bytes.size()) < 0) std::abort();
}

// Whether the list comes out whole on the console and in the log.
template <class Handle>
bool IsShown(Sink& sink, LoggedPrinter& printer, const std::string& text, Handle handle) {
  sink.Clear();
  {
    const StandardOutput there(sink);
    PrintAnchor(text);
  }
  const std::string expected = sink.Bytes();
  sink.Clear();
  {
    const StandardOutput there(sink);
    handle();
  }
  return sink.Bytes() == expected && !expected.empty() && printer.Log() == text;
}

// What it costs this thread; and how long it takes, for a terminal lets its writer wait.
struct ProcessorClock {
  template <class Work>
  static double SecondsOf(Work work) {
    return ProcessorSecondsOf(work);
  }
};
struct WallClock {
  template <class Work>
  static double SecondsOf(Work work) {
    return ventrik::SecondsOf(work);
  }
};

// Lists that handle() deals with.
template <class Clock, class Handle>
void ListsBesideOnePrint(benchmark::State& state, Sink& sink, LoggedPrinter& printer,
                         const Block& block, Handle handle) {
  const std::string text = MessageText({block.data(), block.size()});
  if (!IsShown(sink, printer, text, handle)) return state.SkipWithError("the text is another one");
  const std::size_t lists = Amount(kLists);
  const auto round = [&](auto work) {
    sink.Clear();
    printer.Clear();
    const StandardOutput there(sink);
    const auto all = [&] {
      for (std::size_t i = 0; i < lists; ++i) work();
    };
    return Clock::SecondsOf(all);
  };
  ReportCost(
      state, "us a list", 1e-6, static_cast<double>(lists),
      Compare(
          state, [&] { return round([&] { PrintAnchor(text); }); }, [&] { return round(handle); }));
}

template <class SinkKind, class Clock>
void HandlingBesideOnePrint(benchmark::State& state) {
  SinkKind sink;
  LoggedPrinter printer;
  ClientApp app;
  const Block block = MakeList(kListRows);
  ListsBesideOnePrint<Clock>(state, sink, printer, block, [&] {
    HandleServerMessage(app, printer.printer(), block.data(), block.size());
  });
}

// A server thread that sends the first client that says something the same message again and again.
class SendingServer {
 public:
  explicit SendingServer(const Block& block) : server_(ipc_server_create(kServerName)) {
    if (server_ == nullptr) std::abort();
    thread_ = std::thread([this, &block] { Serve(block); });
  }
  ~SendingServer() {
    thread_.join();
    ipc_server_close(server_);
  }
  // From here on a last message of one word is on its way, behind those that are already.
  void Stop() { stopping_ = true; }

  SendingServer(const SendingServer&) = delete;
  SendingServer& operator=(const SendingServer&) = delete;

 private:
  IpcPeer* TakeRequest() {
    IpcMessage* const request = ipc_server_accept(server_);
    if (request == nullptr) std::abort();
    IpcPeer* const client = request->clientRecord;
    char word[8];  // more than there is: the end marker is waited for
    ipc_read(request, word, sizeof word);
    ipc_finish(request, 0);
    return client;
  }

  static void Send(IpcPeer* client, const void* data, std::size_t length) {
    IpcMessage* const message = ipc_connect(client);
    ipc_write(message, data, length);
    ipc_disconnect(message);
  }

  void Serve(const Block& block) {
    IpcPeer* const client = TakeRequest();
    while (!stopping_) Send(client, block.data(), block.size());
    Send(client, kWord, sizeof kWord);
  }

  IpcServer* const server_;
  std::atomic<bool> stopping_{false};
  std::thread thread_;
};

// The exchange that brings a message is not waited for: a sending server has a row of its own.
template <class SinkKind>
void ReceivingBesideOnePrint(benchmark::State& state) {
  SinkKind sink;
  LoggedPrinter printer;
  ClientApp app;
  const Block block = MakeList(kListRows);
  SendingServer server(block);
  COMMUNICATION_LAYER layer;
  layer.SetChannelName(kServerName);
  layer.Send(kWord, sizeof kWord);
  std::vector<char> buffer(kReceiveSize);
  const auto receive = [&] {
    const int received = layer.Receive(buffer.data(), buffer.size());
    if (received < 1) std::abort();
    return static_cast<std::size_t>(received - 1);
  };
  ListsBesideOnePrint<ProcessorClock>(state, sink, printer, block, [&] {
    const std::size_t size = receive();
    HandleServerMessage(app, printer.printer(), buffer.data(), size);
  });
  server.Stop();
  while (receive() != sizeof kWord) continue;
}

void HandlingGrows(benchmark::State& state) {
  const NullSink sink;
  LoggedPrinter printer;
  ClientApp app;
  RunGrowth(state, 30, [&](std::size_t rows) {
    const Block block = MakeList(rows);
    printer.Clear();
    const StandardOutput there(sink);
    return ProcessorSecondsOf(
        [&] { HandleServerMessage(app, printer.printer(), block.data(), block.size()); });
  });
}

void Register() {
  const auto usual = [](const char* name, void (*run)(benchmark::State&)) {
    benchmark::RegisterBenchmark(name, run)
        ->UseManualTime()
        ->Iterations(Rounds(31))
        ->Unit(benchmark::kMicrosecond);
  };
  usual("ListToFile", HandlingBesideOnePrint<FileSink, ProcessorClock>);
  usual("ListToTerminal", HandlingBesideOnePrint<TerminalSink, WallClock>);
  usual("ReceivedListToTerminal", ReceivingBesideOnePrint<TerminalSink>);
  usual("ListsGrowth", HandlingGrows);
}

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) return 1;
  ventrik::Logger_posix console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  ventrik::scratch = &files;
  setenv("XDG_RUNTIME_DIR", files.Path("").c_str(), 1);
  ventrik::Register();
  benchmark::RunSpecifiedBenchmarks();
}
