// SPDX-License-Identifier: Apache-2.0
// Taking a raw log of 256 MB apart, from file to file, beside the plain road that looks at each
// byte and hands each to fwrite. What is counted is the processor's time, so that no disk is
// measured.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <random>
#include <set>

#include "benchmarks/beside.h"
#include "replay/extraction.h"
#include "replay/extraction_files.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

const std::size_t kLogSize = Amount(256'000'000);
constexpr int kRounds = 3;
constexpr std::size_t kGrowthPiece = 1000;  // bytes

const Scratch* scratch = nullptr;

// Text and records in turn in stretches of about that many bytes, with one in sixteen left out.
std::string MakeLog(std::size_t stretch, std::size_t wanted) {
  std::minstd_rand random(7);
  std::string log;
  log.reserve(wanted + 2 * stretch);
  std::string record;
  std::size_t recordAt = 0;
  while (log.size() < wanted) {
    const std::size_t size = stretch / 2 + random() % stretch;
    log += "\xE5\x33";
    for (std::size_t i = 0; i < size; ++i) log += static_cast<char>(' ' + random() % 90);
    if (random() % 16 == 0) log += "\xE6\x33" + std::string(size / 4, 'x') + "\xE6\x30";
    log += "\xE5\x34";
    for (std::size_t left = size; left > 0;) {
      if (recordAt == record.size()) {
        const auto length = static_cast<unsigned>(16 + random() % 385);
        char head[17];
        std::snprintf(head, sizeof head, "%08X%08X", static_cast<unsigned>(log.size()), length);
        record = head;
        for (unsigned i = 0; i < 2 * length; ++i) record += "0123456789ABCDEF"[random() & 15];
        record += '\n';
        recordAt = 0;
      }
      const std::size_t part = std::min(left, record.size() - recordAt);
      log.append(record, recordAt, part);
      recordAt += part;
      left -= part;
    }
  }
  return log;
}

// The input in memory, as the plain road has it: one buffer of the file's size.
class WholeFile {
 public:
  explicit WholeFile(const char* path) {
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) std::abort();
    std::fseek(file, 0, SEEK_END);
    size_ = static_cast<std::size_t>(std::ftell(file));
    std::rewind(file);
    bytes_.reset(static_cast<char*>(std::malloc(size_)));
    if (std::fread(bytes_.get(), 1, size_, file) != size_) std::abort();
    std::fclose(file);
  }
  std::size_t size() const { return size_; }
  int operator[](std::size_t at) const {
    return at < size_ ? static_cast<unsigned char>(bytes_.get()[at]) : -1;
  }

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };
  std::unique_ptr<char, Free> bytes_;
  std::size_t size_ = 0;
};

void PutByte(int byte, std::FILE* file) {
  const char character = static_cast<char>(byte);
  std::fwrite(&character, 1, 1, file);
}

void TextByteByByte(const char* path, const char* output) {
  const WholeFile log(path);
  std::FILE* file = std::fopen(output, "wb");
  bool inText = false;
  for (std::size_t at = 0; at < log.size();) {
    const int byte = log[at];
    const int next = log[at + 1];
    if (byte == 0xE6 && next == '3') {
      for (at += 3; at < log.size() && !(log[at] == 0xE6 && log[at + 1] == '0');) ++at;
      at += 2;
    } else if (byte == 0xE5) {
      inText = next == '3';
      at += inText ? 2 : 1;
    } else {
      if (inText) PutByte(byte, file);
      ++at;
    }
  }
  std::fclose(file);
}

void BatchByteByByte(const char* path, const char* output) {
  const WholeFile log(path);
  std::FILE* file = std::fopen(output, "wb");
  std::string line;
  bool inBatch = false;
  for (std::size_t at = 0; at < log.size();) {
    const int byte = log[at];
    if (byte == 0xE5) {
      inBatch = log[at + 1] == '4';
      at += 2;
      continue;
    }
    if (inBatch && byte != '\r') line += static_cast<char>(byte == 0 ? ' ' : byte);
    if (inBatch && byte == '\n') {
      if (IsRecordLine(line)) {
        for (const char character : line) PutByte(character, file);
      }
      line.clear();
    }
    ++at;
  }
  std::fclose(file);
}

// The path of a log in stretches of that size.
std::string LogIn(std::size_t stretch) {
  static std::set<std::size_t> present;
  const std::string name = "raw" + std::to_string(stretch);
  if (present.insert(stretch).second) scratch->Write(name, MakeLog(stretch, kLogSize));
  return scratch->Path(name);
}

// Compares the roads' results before the first of several shapes.
template <class Anchor, class Ours>
void RunExtraction(benchmark::State& state, Anchor anchor, Ours ours) {
  const std::string log = LogIn(static_cast<std::size_t>(state.range(0)));
  const std::string one = scratch->Path("one");
  const std::string other = scratch->Path("other");
  if (state.range(1) == 0) {
    anchor(log.c_str(), one.c_str());
    ours(log.c_str(), other.c_str());
    const std::string expected = ReadBack(one);
    if (ReadBack(other) != expected || expected.empty()) {
      return state.SkipWithError("the two roads differ");
    }
  }
  const bool toFile = state.range(1) != 0;
  const auto secondsOf = [&](auto road) {
    // To a new file: the cutting of an old one is no part of this.
    if (toFile) unlink(one.c_str());
    return ProcessorSecondsOf([&] { road(log.c_str(), toFile ? one.c_str() : "/dev/null"); });
  };
  ReportSpeed(state, static_cast<double>(kLogSize),
              Compare(
                  state, [&] { return secondsOf(anchor); }, [&] { return secondsOf(ours); }));
}

void ExtractTextBesideByteByByte(benchmark::State& state) {
  RunExtraction(state, TextByteByByte, ExtractTextChannel);
}

void ExtractBatchBesideByteByByte(benchmark::State& state) {
  RunExtraction(state, BatchByteByByte, [](const char* path, const char* output) {
    ExtractBatchChannel(path, output, false);
  });
}

void Shapes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"stretch", "file"})
      ->Args({60, 0})
      ->Args({60, 1})
      ->Args({1000, 0})
      ->Args({1000, 1});
  benchmark->UseManualTime()->Iterations(Rounds(kRounds))->Unit(benchmark::kMillisecond);
}
BENCHMARK(ExtractTextBesideByteByByte)->Apply(Shapes);
BENCHMARK(ExtractBatchBesideByteByByte)->Apply(Shapes);

// A kilobyte of a log of that many.
void ExtractionGrowth(benchmark::State& state) {
  const auto write = [](std::size_t pieces) {
    scratch->Write(std::to_string(pieces), MakeLog(kGrowthPiece, pieces * kGrowthPiece));
  };
  constexpr std::size_t kLeast = 500;
  for (const std::size_t times : {1, 10, 100}) write(times * kLeast);
  RunGrowth(state, kLeast, [](std::size_t pieces) {
    const std::string log = scratch->Path(std::to_string(pieces));
    return ProcessorSecondsOf([&] { ExtractTextChannel(log.c_str(), "/dev/null"); });
  });
}
BENCHMARK(ExtractionGrowth)->UseManualTime()->Iterations(Rounds(15));

}  // namespace
}  // namespace ventrik

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  ventrik::SilentLogger console;
  ventrik::logger = &console;
  const ventrik::Scratch files;
  ventrik::scratch = &files;
  benchmark::RunSpecifiedBenchmarks();
}
