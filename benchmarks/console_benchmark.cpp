// SPDX-License-Identifier: Apache-2.0
// What the console costs: response texts to a file and to a terminal, beside the C library's wide
// stream in pieces of the same length; and the decoding of UTF-8, beside a loop over the bytes and
// beside mbstowcs.
#include <benchmark/benchmark.h>

#include <clocale>
#include <cstdarg>
#include <cstdlib>
#include <cwchar>

#include "benchmarks/beside.h"
#include "benchmarks/sinks.h"
#include "console/logger_posix.h"
#include "console/response_printer.h"
#include "console/utf8.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kPieceLength = 100;  // characters, as the response printer has it
constexpr std::size_t kTexts = 100;        // to a round

enum Characters { ascii, oneInTen, oneInTwo };

// Lines of some eighty characters. Every tenth is of two bytes, or every second of three.
std::string MakeText(std::size_t size, std::int64_t characters) {
  const std::size_t every = characters == oneInTen ? 10 : 2;
  const char* const other = characters == oneInTen ? "\xC3\xBC" : "\xE4\xB8\xAD";
  std::string text;
  for (std::size_t i = 0; text.size() < size; ++i) {
    if (characters != ascii && i % every == 0) {
      text += other;
    } else {
      text += i % 80 == 79 ? '\n' : static_cast<char>('a' + i % 26);
    }
  }
  return text;
}

int PrintWide(std::FILE* stream, const wchar_t* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vfwprintf(stream, format, arguments);
  va_end(arguments);
  return length;
}

// Calls print(length, characters) for each piece; returns the sum of the results.
template <class Print>
int InPieces(const std::wstring& text, Print print) {
  int sum = 0;
  for (std::size_t at = 0; at < text.size(); at += kPieceLength) {
    sum += print(static_cast<int>(std::min(kPieceLength, text.size() - at)), text.data() + at);
  }
  return sum;
}

int PrintAnchor(std::FILE* stream, const std::wstring& text) {
  return InPieces(text, [stream](int length, const wchar_t* characters) {
    return PrintWide(stream, L"%.*ls", length, characters);
  });
}

int PrintOurs(const std::wstring& text) {
  return InPieces(text, [](int length, const wchar_t* characters) {
    return logger->print(L"%.*ls", length, characters);
  });
}

// Prints one text by both ways to `sink`; whether bytes and results are the same.
template <class Ours>
bool AreTheSame(Sink& sink, const std::wstring& wide, Ours ours) {
  int anchorResult = 0;
  sink.Clear();
  {
    const WideStream stream(sink);
    anchorResult = PrintAnchor(stream.file(), wide);
  }
  const std::string anchorBytes = sink.Bytes();
  sink.Clear();
  int ourResult = 0;
  {
    const StandardOutput there(sink);
    ourResult = ours();
  }
  return anchorBytes == sink.Bytes() && anchorResult == ourResult && anchorResult > 0;
}

// The texts of a round by both ways. A terminal lets its writer wait, so it is time that counts
// there.
template <class Ours>
void TextsBesideWideStream(benchmark::State& state, Sink& sink, const std::string& text,
                           Ours ours) {
  const std::wstring wide = Utf8ToWide(text);
  if (!AreTheSame(sink, wide, ours)) return state.SkipWithError("the two are not the same");
  const std::size_t texts = Amount(kTexts);
  const auto secondsOf = [&sink](auto work) {
    return sink.MakesWait() ? SecondsOf(work) : ProcessorSecondsOf(work);
  };
  const WideStream stream(sink);
  const auto anchorRound = [&] {
    sink.Clear();
    return secondsOf([&] {
      for (std::size_t i = 0; i < texts; ++i) PrintAnchor(stream.file(), wide);
      std::fflush(stream.file());
    });
  };
  const auto ourRound = [&] {
    sink.Clear();
    const StandardOutput there(sink);
    return secondsOf([&] {
      for (std::size_t i = 0; i < texts; ++i) ours();
    });
  };
  ReportSpeed(state, static_cast<double>(texts * text.size()),
              Compare(state, anchorRound, ourRound));
}

// Pieces that each reach the kernel before the next is printed.
template <class SinkKind>
void PiecesBesideWideStream(benchmark::State& state) {
  SinkKind sink;
  const std::string text = MakeText(2000, state.range(0));
  const std::wstring wide = Utf8ToWide(text);
  TextsBesideWideStream(state, sink, text, [&] { return PrintOurs(wide); });
}

// A whole text from its bytes on, as a response is printed.
template <class SinkKind>
void ResponsesBesideWideStream(benchmark::State& state) {
  SinkKind sink;
  const std::string text = MakeText(2000, state.range(0));
  const int characters = static_cast<int>(Utf8ToWide(text).size());
  ResponsePrinter printer;
  TextsBesideWideStream(state, sink, text, [&] {
    WriteText(printer, text);
    return characters;
  });
}

std::wstring PushBackLoop(const std::string& bytes) {
  std::wstring text;
  std::uint32_t code = 0;
  int pending = 0;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte == '\n') {
      text.push_back(L'\n');
    } else if (byte < 0x80) {
      if (pending != 0) text.push_back(L'?');
      text.push_back(static_cast<wchar_t>(byte));
      pending = 0;
    } else if (byte < 0xC0) {
      if (pending == 0) {
        text.push_back(L'?');
        continue;
      }
      code = (code << 6) + (byte & 0x3Fu);
      if (--pending == 0) text.push_back(static_cast<wchar_t>(code));
    } else if (byte < 0xF8) {
      pending = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
      code = byte & (0x3Fu >> pending);
    } else {
      text.push_back(L'?');
      pending = 0;
    }
  }
  if (pending != 0) text.push_back(L'?');
  return text;
}

std::wstring Mbstowcs(const std::string& bytes) {
  std::wstring text(bytes.size() + 1, L'\0');
  text.resize(std::mbstowcs(text.data(), bytes.c_str(), text.size()));
  return text;
}

template <auto anchor>
void DecodingBeside(benchmark::State& state) {
  const std::string text = MakeText(static_cast<std::size_t>(state.range(1)), state.range(0));
  if (anchor(text) != Utf8ToWide(text)) return state.SkipWithError("the two are not the same");
  const std::size_t times = Amount(4'000'000) / text.size() + 1;
  const auto repeated = [&](auto decode) {
    return [&text, times, decode] {
      for (std::size_t i = 0; i < times; ++i) {
        const std::wstring wide = decode(text);
        benchmark::DoNotOptimize(wide.data());
      }
    };
  };
  RunBeside(state, static_cast<double>(times * text.size()), repeated(anchor),
            repeated([](const std::string& bytes) { return Utf8ToWide(bytes); }));
}

void ResponsesGrow(benchmark::State& state) {
  const NullSink sink;
  ResponsePrinter printer;
  RunGrowth(state, 1000, [&](std::size_t size) {
    const std::string text = MakeText(size, oneInTen);
    const StandardOutput there(sink);
    return ProcessorSecondsOf([&] { WriteText(printer, text); });
  });
}

void DecodingGrows(benchmark::State& state) {
  RunGrowth(state, 1000, [](std::size_t size) {
    const std::string text = MakeText(size, oneInTen);
    return ProcessorSecondsOf([&] { benchmark::DoNotOptimize(Utf8ToWide(text).data()); });
  });
}

void Register() {
  const auto usual = [](const char* name, void (*run)(benchmark::State&)) {
    return benchmark::RegisterBenchmark(name, run)
        ->UseManualTime()
        ->Iterations(Rounds(31))
        ->Unit(benchmark::kMicrosecond);
  };
  usual("PiecesToFile", PiecesBesideWideStream<FileSink>)->ArgName("mixed")->Arg(0)->Arg(1);
  usual("PiecesToTerminal", PiecesBesideWideStream<TerminalSink>)->ArgName("mixed")->Arg(0)->Arg(1);
  usual("ResponsesToFile", ResponsesBesideWideStream<FileSink>)->ArgName("mixed")->Arg(0)->Arg(1);
  usual("ResponsesToTerminal", ResponsesBesideWideStream<TerminalSink>)
      ->ArgName("mixed")
      ->Arg(0)
      ->Arg(1);
  for (const std::int64_t size : {2000, 400'000}) {
    for (const std::int64_t characters : {ascii, oneInTen, oneInTwo}) {
      usual("DecodingBesidePushBack", DecodingBeside<PushBackLoop>)
          ->ArgNames({"mixed", "size"})
          ->Args({characters, size});
      usual("DecodingBesideMbstowcs", DecodingBeside<Mbstowcs>)
          ->ArgNames({"mixed", "size"})
          ->Args({characters, size});
    }
  }
  usual("ResponsesGrowth", ResponsesGrow);
  usual("DecodingGrowth", DecodingGrows);
}

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) return 1;
  ventrik::Logger_posix console;
  ventrik::logger = &console;
  ventrik::Register();
  benchmark::RunSpecifiedBenchmarks();
}
