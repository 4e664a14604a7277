// SPDX-License-Identifier: Apache-2.0
#include "monkey/monkey_batch.h"

#include <sys/stat.h>

#include "monkey/command_generation.h"
#include "tests/monkey/monkey_fixture.h"

namespace ventrik::tests {
namespace {

// A file of 16-bit units, least significant byte first, behind a mark.
std::string Units(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  return bytes;
}

Texts Lines(const std::string& file) {
  const auto lines = MonkeyBatchLines(file);
  return {lines.begin(), lines.end()};
}

TEST(MonkeyBatchLines, EachLineFeedEndsALine) {
  EXPECT_EQ(Lines(Units(u"verd\nvers")), (Texts{L"verd", L"vers"}));
  EXPECT_EQ(Lines(Units(u"a\n\nb")), (Texts{L"a", L"", L"b"}));
}

TEST(MonkeyBatchLines, EndOfTheFileGivesOneMoreLine) {
  EXPECT_EQ(Lines(Units(u"verd\n")), (Texts{L"verd", L""}));
  EXPECT_EQ(Lines(Units(u"\n")), (Texts{L"", L""}));
  EXPECT_EQ(Lines(Units(u"")), Texts{L""});
}

TEST(MonkeyBatchLines, CarriageReturnsStay) {
  EXPECT_EQ(Lines(Units(u"verd\r\n")), (Texts{L"verd\r", L""}));
}

TEST(MonkeyBatchLines, UnitsAreWidenedAsTheyAre) {
  EXPECT_EQ(Lines(Units(u"\u00E4\u20AC\u0A0A")), Texts{L"\u00E4\u20AC\u0A0A"});
  EXPECT_EQ(Lines(std::string("\xFF\xFE\x3D\xD8", 4)), Texts{std::wstring(1, L'\xD83D')});
}

TEST(MonkeyBatchLines, FirstUnitIsDroppedWhateverItIs) {
  EXPECT_EQ(Lines(std::string("xxa\0", 4)), Texts{L"a"});
  EXPECT_EQ(Lines(std::string("\n\0a\0", 4)), Texts{L"a"});
}

TEST(MonkeyBatchLines, OddLastByteIsDropped) {
  EXPECT_EQ(Lines(Units(u"ab") + "c"), Texts{L"ab"});
  EXPECT_EQ(Lines(Units(u"ab\n") + "\n"), (Texts{L"ab", L""}));
}

TEST(MonkeyBatchLines, LinesHaveNoLimit) {
  EXPECT_EQ(Lines(Units(std::u16string(100000, u'x') + u"\ny")),
            (Texts{std::wstring(100000, L'x'), L"y"}));
}

class MonkeyBatchTest : public MonkeyTest {
 protected:
  Texts Queue() const { return {monkey_.queuedCommands.begin(), monkey_.queuedCommands.end()}; }
};

TEST_F(MonkeyBatchTest, LinesOfTheFileAreQueued) {
  WriteFile("a b.txt", Units(u"verd\nvers\n"));
  LoadMonkeyBatch(monkey_, L"batch(\"a b.txt\")");
  EXPECT_EQ(Queue(), (Texts{L"verd", L"vers", L""}));
  EXPECT_EQ(Printed(), L"");
}

TEST_F(MonkeyBatchTest, LinesAreQueuedBehindThoseThatAreThere) {
  WriteFile("a.txt", Units(u"verd"));
  WriteFile("b.txt", Units(u"vers\n"));
  LoadMonkeyBatch(monkey_, L"batch(\"a.txt\")");
  LoadMonkeyBatch(monkey_, L"batch(\"b.txt\")");
  EXPECT_EQ(Queue(), (Texts{L"verd", L"vers", L""}));
}

TEST_F(MonkeyBatchTest, PathHasOneByteForEachCharacter) {
  WriteFile("\xE4.txt", Units(u"verd"));
  LoadMonkeyBatch(monkey_, L"batch(\"\u00E4.txt\")");
  EXPECT_EQ(Queue(), Texts{L"verd"});
}

TEST_F(MonkeyBatchTest, MissingFileIsSaid) {
  LoadMonkeyBatch(monkey_, L"batch(\"no such.txt\")");
  EXPECT_EQ(console_.TakeTexts(), Texts{L"no such.txt does not exist\n"});
  EXPECT_EQ(Queue(), Texts{});
}

TEST_F(MonkeyBatchTest, FileWithoutAWholeUnitCantBeRead) {
  for (const std::string content : {"", "x"}) {
    WriteFile("a.txt", content);
    LoadMonkeyBatch(monkey_, L"batch(\"a.txt\")");
    EXPECT_EQ(console_.TakeTexts(), Texts{L"Monkey: Error reading a.txt\n"});
  }
  EXPECT_EQ(Queue(), Texts{});
}

TEST_F(MonkeyBatchTest, DirectoryAndIdlePipeCantBeRead) {
  ASSERT_EQ(mkdir("place", 0700), 0);
  LoadMonkeyBatch(monkey_, L"batch(\"place\")");
  ASSERT_EQ(mkfifo("pipe", 0600), 0);
  LoadMonkeyBatch(monkey_, L"batch(\"pipe\")");
  EXPECT_EQ(console_.TakeTexts(),
            (Texts{L"Monkey: Error reading place\n", L"Monkey: Error reading pipe\n"}));
}

TEST_F(MonkeyBatchTest, FilesAreClosed) {
  WriteFile("a.txt", Units(u"verd"));
  WriteFile("short.txt", "x");
  const int before = CountDescriptors();
  for (const wchar_t* name : {L"batch(\"a.txt\")", L"batch(\"short.txt\")", L"batch(\"no.txt\")"}) {
    LoadMonkeyBatch(monkey_, name);
  }
  EXPECT_EQ(CountDescriptors(), before);
}

TEST_F(MonkeyBatchTest, SectionThatNamesAFileIsSentItselfToo) {
  WriteFile("a.txt", Units(u"verd"));
  SetRecords(monkey_, {Record(L"batch(\"a.txt\")", 1)});
  draws_.Feed({0});
  EXPECT_EQ(GenerateCommand(app_, monkey_), L"batch(\"a.txt\")");
  EXPECT_EQ(Queue(), Texts{L"verd"});
  EXPECT_EQ(Content("monkeylog.txt"), "batch(\"a.txt\")\n");
}

TEST_F(MonkeyBatchTest, BatchlogNamesNoFile) {
  SetRecords(monkey_, {Record(L"batchlog", 1)});
  draws_.Feed({0});
  EXPECT_EQ(GenerateCommand(app_, monkey_), L"batchlog");
  EXPECT_EQ(Printed(), L"");
}

}  // namespace
}  // namespace ventrik::tests
