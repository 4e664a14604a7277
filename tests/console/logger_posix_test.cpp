// SPDX-License-Identifier: Apache-2.0
#include "console/logger_posix.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <functional>
#include <map>
#include <new>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "console/response_printer.h"
#include "state/process_state.h"

namespace ventrik::tests {
namespace {

// Something else in the place of standard output, for a scope. While it is there, a failed
// expectation would be printed into it: look at results afterwards.
class StandardOutput {
 public:
  explicit StandardOutput(int replacement) {
    std::fflush(stdout);
    before_ = dup(STDOUT_FILENO);
    if (before_ < 0 || dup2(replacement, STDOUT_FILENO) < 0) std::abort();
    close(replacement);
  }
  ~StandardOutput() {
    dup2(before_, STDOUT_FILENO);
    close(before_);
  }
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

 private:
  int before_;
};

class LoggerPosix : public testing::Test {
 protected:
  void SetUp() override { std::setlocale(LC_CTYPE, "C.UTF-8"); }
  void TearDown() override { std::setlocale(LC_CTYPE, "C"); }

  // Each write that `prints` makes on standard output.
  static std::vector<std::string> WritesOf(const std::function<void()>& prints) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0) std::abort();
    {
      const StandardOutput socket(ends[1]);
      prints();
    }
    std::vector<std::string> writes;
    char packet[1 << 16];
    for (ssize_t size = 0; (size = read(ends[0], packet, sizeof packet)) > 0;) {
      writes.emplace_back(packet, static_cast<std::size_t>(size));
    }
    close(ends[0]);
    return writes;
  }

  // All that `prints` writes to a pipe that is emptied meanwhile.
  static std::string BytesOf(
      const std::function<void()>& prints, const std::function<void()>& beforeEachRead = [] {}) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    std::string bytes;
    std::thread reader([&] {
      char part[1 << 14];
      for (;;) {
        beforeEachRead();
        const ssize_t size = read(ends[0], part, sizeof part);
        if (size <= 0) break;
        bytes.append(part, static_cast<std::size_t>(size));
      }
    });
    {
      const StandardOutput pipe(ends[1]);
      prints();
    }
    reader.join();
    close(ends[0]);
    return bytes;
  }

  Logger_posix console;
};

using Writes = std::vector<std::string>;

TEST_F(LoggerPosix, TextIsFormattedAsWprintfDoes) {
  const Writes writes =
      WritesOf([&] { console.print(L"%s%ls %d|%5d|%c\n", "narrow ", L"wide", -7, 42, 'x'); });
  EXPECT_EQ(writes, Writes{"narrow wide -7|   42|x\n"});
}

TEST_F(LoggerPosix, TextIsOutWhenThePrintReturnsThoughItHasNoLineEnd) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  bool there = false;
  {
    const StandardOutput pipe(ends[1]);
    console.print(L"Cmd> ");
    pollfd look = {ends[0], POLLIN, 0};
    there = poll(&look, 1, 0) == 1;
  }
  close(ends[0]);
  EXPECT_TRUE(there);
}

TEST_F(LoggerPosix, EachPrintIsOneWrite) {
  const std::wstring line(3000, L'\u20AC');
  const Writes writes = WritesOf([&] {
    console.print(L"%s%ls\n%s", ColourRed, line.c_str(), ColourReset);
    console.print(L"a\nb\n");
  });
  ASSERT_EQ(writes.size(), 2u);
  EXPECT_EQ(writes[0].size(), 7 + 3 * line.size() + 1 + 7);
  EXPECT_EQ(writes[1], "a\nb\n");
}

TEST_F(LoggerPosix, ResultCountsWideCharacters) {
  std::vector<int> results;
  WritesOf([&] {
    results.push_back(console.print(L"%ls", L"\u00E9\u20AC"));
    results.push_back(console.print(L"%s", "four"));
    results.push_back(console.print(L"%ls", L""));
  });
  EXPECT_EQ(results, (std::vector<int>{2, 4, 0}));
}

TEST_F(LoggerPosix, EmptyTextWritesNothing) {
  const Writes writes = WritesOf([&] {
    console.print(L"%ls", L"");
    console.print(L"next");
  });
  EXPECT_EQ(writes, Writes{"next"});
}

TEST_F(LoggerPosix, WideTextIsWrittenInUtf8WhateverTheLocale) {
  std::setlocale(LC_CTYPE, "C");
  EXPECT_EQ(WritesOf([&] { console.print(L"%ls", L"\u00E9\u20AC\U0001F600"); }),
            Writes{"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"});
}

TEST_F(LoggerPosix, CharactersWithoutAFormDontCutALineShort) {
  const std::wstring line = {L'a', wchar_t{0xD800}, L'b', static_cast<wchar_t>(0x110000), L'c'};
  int result = 0;
  const Writes writes = WritesOf([&] { result = console.print(L"<%ls>\n", line.c_str()); });
  EXPECT_EQ(writes, Writes{"<a?b?c>\n"});
  EXPECT_EQ(result, 8);
}

TEST_F(LoggerPosix, UndecodableNarrowTextGivesUpTheWholeText) {
  if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr) GTEST_SKIP() << "no locale C.UTF-8";
  int result = 0;
  const Writes writes = WritesOf([&] { result = console.print(L"before %s after\n", "\xFF"); });
  EXPECT_EQ(writes, Writes{});
  EXPECT_LT(result, 0);
}

TEST_F(LoggerPosix, TextOfAnyLengthIsWhole) {
  for (const std::size_t length : {510u, 511u, 512u, 513u, 2047u, 2048u, 100000u, 9000000u}) {
    const std::wstring line(length, L'x');
    int result = 0;
    const std::string bytes = BytesOf([&] { result = console.print(L"%ls\n", line.c_str()); });
    EXPECT_EQ(result, static_cast<int>(length) + 1);
    EXPECT_TRUE(bytes == std::string(length, 'x') + "\n") << length;
  }
}

TEST_F(LoggerPosix, OutputThatCantBeWrittenGivesANegativeResult) {
  int result = 0;
  {
    const StandardOutput readOnly(open("/dev/null", O_RDONLY));
    result = console.print(L"text");
  }
  EXPECT_LT(result, 0);
}

TEST_F(LoggerPosix, LinesOfSeveralThreadsStayWhole) {
  constexpr int kThreads = 4;
  constexpr int kLines = 300;
  const std::string bytes = BytesOf([&] {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&, i] {
        const std::wstring line(static_cast<std::size_t>(200 + i), static_cast<wchar_t>(L'a' + i));
        for (int n = 0; n < kLines; ++n) console.print(L"%ls\n", line.c_str());
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  std::map<std::string, int> counts;
  std::istringstream lines(bytes);
  for (std::string line; std::getline(lines, line);) ++counts[line];
  std::map<std::string, int> expected;
  for (int i = 0; i < kThreads; ++i) {
    expected[std::string(static_cast<std::size_t>(200 + i), static_cast<char>('a' + i))] = kLines;
  }
  EXPECT_EQ(counts, expected);
}

TEST_F(LoggerPosix, SignalsDontTakeAnythingAway) {
  struct sigaction act = {};
  struct sigaction before = {};
  act.sa_handler = [](int) {};
  sigaction(SIGUSR1, &act, &before);
  const pthread_t printer = pthread_self();
  const std::wstring line(1000000, L'x');
  int result = 0;
  const std::string bytes = BytesOf([&] { result = console.print(L"%ls", line.c_str()); },
                                    [printer] { pthread_kill(printer, SIGUSR1); });
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_EQ(result, 1000000);
  EXPECT_EQ(bytes.size(), 1000000u);
}

TEST_F(LoggerPosix, ThreadIsNotCancelledWhileItPrints) {
  void* end = nullptr;
  const Writes writes = WritesOf([&] {
    pthread_t thread = 0;
    const auto body = [](void* logger) -> void* {
      pthread_cancel(pthread_self());
      static_cast<Logger_posix*>(logger)->print(L"whole\n");
      pthread_testcancel();
      return nullptr;
    };
    pthread_create(&thread, nullptr, body, &console);
    pthread_join(thread, &end);
  });
  EXPECT_EQ(writes, Writes{"whole\n"});
  EXPECT_EQ(end, PTHREAD_CANCELED);
}

TEST_F(LoggerPosix, PiecesPrintedTogetherAreOneWrite) {
  std::vector<int> results;
  const Writes writes = WritesOf([&] {
    {
      const PrintedTogether together;
      results.push_back(console.print(L"%.*ls", 2, L"\u20AC1, and more"));
      results.push_back(console.print(L"%d\n", 23));
    }
    console.print(L"alone\n");
  });
  EXPECT_EQ(writes, (Writes{"\xE2\x82\xAC"
                            "123\n",
                            "alone\n"}));
  EXPECT_EQ(results, (std::vector<int>{2, 3}));
}

TEST_F(LoggerPosix, OtherThreadsPrintAtOnceMeanwhile) {
  const Writes writes = WritesOf([&] {
    const PrintedTogether together;
    console.print(L"first, ");
    std::thread([&] { console.print(L"other\n"); }).join();
    console.print(L"second\n");
  });
  EXPECT_EQ(writes, (Writes{"other\n", "first, second\n"}));
}

TEST_F(LoggerPosix, WhatCantBeFormattedIsLeftOutOfWhatIsPrintedTogether) {
  int result = 0;
  const Writes writes = WritesOf([&] {
    const PrintedTogether together;
    console.print(L"before ");
    result = console.print(L"%s", "\xFF");
    console.print(L"after\n");
  });
  EXPECT_EQ(writes, Writes{"before after\n"});
  EXPECT_LT(result, 0);
}

TEST_F(LoggerPosix, NothingPrintedTogetherIsNoWrite) {
  EXPECT_EQ(WritesOf([] { const PrintedTogether together; }), Writes{});
}

TEST_F(LoggerPosix, WhatWasPrintedTogetherIsWrittenWhenMemoryRunsOut) {
  const Writes writes = WritesOf([&] {
    try {
      const PrintedTogether together;
      console.print(L"so far");
      throw std::bad_alloc();
    } catch (const std::bad_alloc&) {
      console.print(L"Out of memory");
    }
  });
  EXPECT_EQ(writes, (Writes{"so far", "Out of memory"}));
}

// A function of its own: the address sanitizer goes on guarding the frame that a cancelled thread
// unwinds.
[[gnu::noinline]] void PrintTogetherWhileCancelled(Logger_posix& console) {
  const PrintedTogether together;
  pthread_cancel(pthread_self());
  console.print(L"whole\n");
}

TEST_F(LoggerPosix, ThreadIsNotCancelledWhileItPrintsTogether) {
  void* end = nullptr;
  const Writes writes = WritesOf([&] {
    pthread_t thread = 0;
    const auto body = [](void* logger) -> void* {
      PrintTogetherWhileCancelled(*static_cast<Logger_posix*>(logger));
      pthread_testcancel();
      return nullptr;
    };
    pthread_create(&thread, nullptr, body, &console);
    pthread_join(thread, &end);
  });
  EXPECT_EQ(writes, Writes{"whole\n"});
  EXPECT_EQ(end, PTHREAD_CANCELED);
}

TEST_F(LoggerPosix, ResponseIsOneWriteThoughItIsPrintedInPieces) {
  const std::string text = "a long one: " + std::string(250, 'x') + "\n";
  ResponsePrinter printer;
  Logger* const before = std::exchange(logger, &console);
  const Writes writes = WritesOf([&] { WriteText(printer, text); });
  logger = before;
  EXPECT_EQ(writes, Writes{text});
}

TEST_F(LoggerPosix, PrintToWritesToTheStream) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(console.printTo(file, L"%ls-%d", L"\u00E9", 12), 4);
  std::rewind(file);
  wchar_t text[16] = {};
  EXPECT_NE(std::fgetws(text, 16, file), nullptr);
  EXPECT_STREQ(text, L"\u00E9-12");
  std::fclose(file);
}

TEST_F(LoggerPosix, PrintToANarrowStreamGivesANegativeResult) {
  std::FILE* file = std::tmpfile();
  ASSERT_NE(file, nullptr);
  std::fputs("narrow", file);
  EXPECT_LT(console.printTo(file, L"wide"), 0);
  std::fclose(file);
}

}  // namespace
}  // namespace ventrik::tests
