// SPDX-License-Identifier: Apache-2.0
#include "command/batch_files.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "state/process_state.h"
#include "tests/command/command_fixture.h"

namespace ventrik::tests {
namespace {

std::wstring Running(const std::wstring& path) {
  return L"Batch file " + path + L" is running...\n";
}
std::wstring Command(const std::wstring& line) {
  return L"Cmd> \033[1;32m" + line + L"\n\033[0;37m";
}
std::wstring Comment(const std::wstring& line) {
  return L"Cmd> \033[1;33m" + line + L"\n\033[0;37m";
}

const std::wstring kCannotOpen = ErrorText(L"Can't open file.");
const std::wstring kNoUnicode = ErrorText(L"This is not an Unicode file!");

class BatchFiles : public CommandFileTest {
 protected:
  // A file of 16-bit units, least significant byte first, behind a mark.
  static void WriteBatch(const std::string& name, const std::u16string& text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
      bytes += static_cast<char>(unit & 0xFF);
      bytes += static_cast<char>(unit >> 8);
    }
    WriteFile(name, bytes);
  }

  void Open(const std::u16string& text) {
    WriteBatch("batch.txt", text);
    OpenBatchFile(app_, "batch.txt");
    EXPECT_EQ(Printed(), Running(L"batch.txt"));
  }

  std::size_t Depth() const {
    return app_.batchFiles.With([](const auto& stack) { return stack.size(); });
  }

  // The next command; "(end)" if there was none.
  std::wstring Read() {
    std::wstring line = L"left from before";
    if (ReadBatchLine(app_, line)) return line;
    EXPECT_EQ(line, L"");
    return L"(end)";
  }

  // Reads to the end of the one file that is open.
  Texts ReadAll() {
    Texts lines;
    for (std::wstring line = Read(); line != L"(end)"; line = Read()) lines.push_back(line);
    EXPECT_EQ(Depth(), 0u);
    return lines;
  }

  // Reads and runs lines until no file is open, as the main loop does.
  void RunAll() {
    std::wstring line;
    while (Depth() != 0 && mainLoopRunning) {
      if (ReadBatchLine(app_, line)) Run(line);
    }
  }
};

TEST_F(BatchFiles, OpeningSaysSoAndReadsNothing) {
  WriteBatch("a.txt", u"verd\n");
  OpenBatchFile(app_, "a.txt");
  EXPECT_EQ(console_.TakeTexts(), Texts{Running(L"a.txt")});
  EXPECT_EQ(Depth(), 1u);
}

TEST_F(BatchFiles, MissingFileCantBeOpened) {
  OpenBatchFile(app_, "nosuch.txt");
  EXPECT_EQ(console_.TakeTexts(), Texts{kCannotOpen});
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, FileWithoutAWholeMarkCantBeOpened) {
  for (const std::string content : {"", "\xFF", "q"}) {
    WriteFile("a.txt", content);
    OpenBatchFile(app_, "a.txt");
    EXPECT_EQ(console_.TakeTexts(), Texts{kCannotOpen}) << content.size();
  }
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, DirectoryCantBeOpened) {
  ASSERT_EQ(mkdir("place", 0700), 0);
  OpenBatchFile(app_, "place");
  EXPECT_EQ(Printed(), kCannotOpen);
  EXPECT_EQ(Depth(), 0u);
}

// Nothing waits for a writer to come.
TEST_F(BatchFiles, PipeThatNobodyWritesToCantBeOpened) {
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  OpenBatchFile(app_, "pipe");
  EXPECT_EQ(Printed(), kCannotOpen);
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, FileWithAnotherMarkIsRefused) {
  for (const std::string content :
       {"\xFE\xFF\0q", "quit\n", "\xFF\xFFq", "\xFEq", "\xEF\xBB\xBF"}) {
    WriteFile("a.txt", content);
    OpenBatchFile(app_, "a.txt");
    EXPECT_EQ(console_.TakeTexts(), Texts{kNoUnicode});
  }
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, RefusedFilesAreClosed) {
  WriteFile("a.txt", "quit");
  const int before = CountDescriptors();
  OpenBatchFile(app_, "a.txt");
  OpenBatchFile(app_, "nosuch.txt");
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(BatchFiles, FileThatCantBeOpenedLeavesTheOneThatIsBeingRead) {
  Open(u"first\nsecond\n");
  EXPECT_EQ(Read(), L"first");
  OpenBatchFile(app_, "nosuch.txt");
  EXPECT_EQ(Read(), L"second");
}

TEST_F(BatchFiles, MarkAloneClosesAtTheFirstRead) {
  const int before = CountDescriptors();
  Open(u"");
  EXPECT_EQ(Depth(), 1u);
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(Depth(), 0u);
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(BatchFiles, EachLineIsACommandAndIsEchoedInGreen) {
  Open(u"verd\nspell(\"a b\")\n");
  EXPECT_EQ(Read(), L"verd");
  EXPECT_EQ(console_.TakeTexts(), Texts{Command(L"verd")});
  EXPECT_EQ(Read(), L"spell(\"a b\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{Command(L"spell(\"a b\")")});
  EXPECT_EQ(Depth(), 1u);
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(Printed(), L"");
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, LastLineNeedsNoLineEnd) {
  Open(u"verd\nvers");
  EXPECT_EQ(Read(), L"verd");
  EXPECT_EQ(Read(), L"vers");
  EXPECT_EQ(Depth(), 1u);
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, AnyLineEndGivesNoEmptyCommands) {
  Open(u"\r\n\n\r\ra\r\nb\rc\n\nd\n\r\n");
  EXPECT_EQ(ReadAll(), (Texts{L"a", L"b", L"c", L"d"}));
}

TEST_F(BatchFiles, UnitsThatOnlyLookLikeALineEndAreNone) {
  Open(u"a\u0A00b\u000Ac\u0D0Dd\u2028e\n");
  EXPECT_EQ(ReadAll(), (Texts{L"a\u0A00b", L"c\u0D0Dd\u2028e"}));
}

TEST_F(BatchFiles, EachUnitIsOneCharacter) {
  Open(u"\u00E9\u20AC\U0001F600\n");
  std::wstring expected = L"\u00E9\u20AC";
  expected += static_cast<wchar_t>(0xD83D);
  expected += static_cast<wchar_t>(0xDE00);
  EXPECT_EQ(ReadAll(), Texts{expected});
}

TEST_F(BatchFiles, OddLastByteIsDropped) {
  WriteFile("a.txt", std::string("\xFF\xFEv\0\n\0w\0x", 9));
  OpenBatchFile(app_, "a.txt");
  EXPECT_EQ(ReadAll(), (Texts{L"v", L"w"}));
  WriteFile("b.txt", "\xFF\xFEx");
  OpenBatchFile(app_, "b.txt");
  EXPECT_EQ(ReadAll(), Texts{});
}

TEST_F(BatchFiles, LineMayBeOfAnyLength) {
  const std::size_t length = 1000000;
  Open(std::u16string(length, u'x') + u"\nverd");
  EXPECT_TRUE(Read() == std::wstring(length, L'x'));
  EXPECT_TRUE(Printed() == Command(std::wstring(length, L'x')));
  EXPECT_EQ(Read(), L"verd");
}

TEST_F(BatchFiles, CommentsAreEchoedInYellowAndPassedOver) {
  Open(u"# one\n;two\nverd\n");
  EXPECT_EQ(Read(), L"verd");
  EXPECT_EQ(console_.TakeTexts(), (Texts{Comment(L"# one"), Comment(L";two"), Command(L"verd")}));
}

TEST_F(BatchFiles, CommentsAreEchoedWhateverTheConfigurationSays) {
  app_.hideComments = 1;
  Open(u"#one\n");
  Read();
  EXPECT_EQ(Printed(), Comment(L"#one"));
}

TEST_F(BatchFiles, CommentAtTheVeryEndIsEchoedAndTheFileCloses) {
  Open(u"verd\n#end");
  EXPECT_EQ(Read(), L"verd");
  Printed();
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(console_.TakeTexts(), Texts{Comment(L"#end")});
  EXPECT_EQ(Depth(), 0u);
}

TEST_F(BatchFiles, OnlyTheVeryFirstCharacterMakesAComment) {
  Open(u"  # text\nverd#x\n");
  EXPECT_EQ(Read(), L"  # text");
  EXPECT_EQ(Printed(), Command(L"  # text"));
  Run(L"  # text");
  EXPECT_EQ(Printed(), kBadSyntax);
  EXPECT_EQ(Read(), L"verd#x");
}

TEST_F(BatchFiles, EchoShowsTheLineAsItStandsInTheFile) {
  Set(L"v", L"x");
  Open(u" spell ( \"$$v$$\" )\n");
  RunAll();
  EXPECT_EQ(Printed(), Command(L" spell ( \"$$v$$\" )"));
  EXPECT_EQ(server_.TakeSent().at(0), Hex("2E010000 01000000 'x' 000000"));
}

TEST_F(BatchFiles, ResponsesWaitWhileALineIsEchoedAndOnlyThen) {
  std::vector<int> held;
  console_.onPrint = [&held](const std::wstring&) { held.push_back(holdOutput); };
  Open(u"#c\nverd\n");
  Read();
  EXPECT_EQ(held, (std::vector<int>{0, 1, 1}));
  EXPECT_EQ(holdOutput, 0);
}

TEST_F(BatchFiles, LinesStayOutOfTheHistory) {
  app_.batchHistory = 1;
  Open(u"verd\n");
  RunAll();
  EXPECT_TRUE(app_.history.empty());
}

TEST_F(BatchFiles, ReadingWithoutAnOpenFileSaysThatItIsFinished) {
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"Batch file finished\n"});
}

TEST_F(BatchFiles, NewestFileIsReadFirst) {
  WriteBatch("inner.txt", u"two\nthree");
  Open(u"one\nfour\n");
  EXPECT_EQ(Read(), L"one");
  OpenBatchFile(app_, "inner.txt");
  EXPECT_EQ(Depth(), 2u);
  EXPECT_EQ(Read(), L"two");
  EXPECT_EQ(Read(), L"three");
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(Depth(), 1u);
  EXPECT_EQ(Read(), L"four");
}

TEST_F(BatchFiles, FileOpenedDuringAnEchoIsReadNext) {
  WriteBatch("inner.txt", u"inner\n");
  Open(u"#c\nouter\n");
  bool opened = false;
  console_.onPrint = [&](const std::wstring&) {
    if (!std::exchange(opened, true)) OpenBatchFile(app_, "inner.txt");
  };
  EXPECT_EQ(Read(), L"inner");
  EXPECT_EQ(Read(), L"(end)");
  EXPECT_EQ(Read(), L"outer");
}

TEST_F(BatchFiles, FailedCommandsDontStopTheFile) {
  Open(u"nosuch\nspell\nverd(\nverd\n");
  RunAll();
  EXPECT_EQ(console_.TakeTexts(),
            (Texts{Command(L"nosuch"), kUnknownCommand, Command(L"spell"), CountError(L's', 1),
                   Command(L"verd("), kBadSyntax, Command(L"verd")}));
  EXPECT_EQ(server_.TakeEvents(), Events{"send 901"});
}

TEST_F(BatchFiles, QuitLeavesTheFileOpen) {
  Open(u"quit\nverd\n");
  RunAll();
  EXPECT_EQ(mainLoopRunning, 0);
  EXPECT_EQ(Depth(), 1u);
  EXPECT_EQ(server_.TakeEvents(), Events{});
}

// The limit of open files of this process, for a scope.
class FewDescriptors {
 public:
  explicit FewDescriptors(rlim_t more) {
    getrlimit(RLIMIT_NOFILE, &before_);
    rlimit few = before_;
    few.rlim_cur = static_cast<rlim_t>(CountDescriptors()) + more;
    setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
  FewDescriptors(const FewDescriptors&) = delete;
  FewDescriptors& operator=(const FewDescriptors&) = delete;

 private:
  rlimit before_;
};

TEST_F(BatchFiles, FileThatRunsItselfOpensUntilItCantAndUnwinds) {
  WriteBatch("a.txt", u"batch(\"a.txt\")\nverd\n");
  const FewDescriptors few(10);
  Run(L"batch(\"a.txt\")");
  RunAll();
  const Texts texts = console_.TakeTexts();
  const auto opened = std::count(texts.begin(), texts.end(), Running(L"a.txt"));
  EXPECT_GT(opened, 1);
  EXPECT_EQ(std::count(texts.begin(), texts.end(), kCannotOpen), 1);
  EXPECT_EQ(server_.TakeEvents().size(), static_cast<std::size_t>(opened));
  EXPECT_EQ(texts.back(), Command(L"verd"));
}

}  // namespace
}  // namespace ventrik::tests
