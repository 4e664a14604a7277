// SPDX-License-Identifier: Apache-2.0
#include "messages/word_parsers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace ventrik::tests {
namespace {

using Parser = std::int32_t (*)(const wchar_t*);
using Words = std::vector<std::wstring>;

struct Row {
  std::wstring word;
  std::int32_t value;
};
using Rows = std::vector<Row>;

// Memory that ends right behind the terminator, so that the address sanitizer sees a parser that
// reads on.
std::int32_t Parsed(Parser parse, const std::wstring& text) {
  const std::vector<wchar_t> exact(text.c_str(), text.c_str() + text.size() + 1);
  return parse(exact.data());
}

struct WordTable {
  const char* name;
  Parser parse;
  Rows words;
  std::int32_t byDefault;
  Words defaultWords;  // that one might expect to be known
};

const WordTable kSpeedWarningMode = {
    "speed warning mode", ParseSpeedWarningMode, {{L"valueMode", 1}}, 0, {L"warningsOff"}};

const WordTable kTmcTuningMode = {
    "tuning mode", ParseTmcTuningMode, {{L"tmcTuningManual", 2}}, 1, {L"tmcTuningAutomatic"}};

const WordTable kTmcRouteMode = {"traffic route mode",
                                 ParseTmcRouteMode,
                                 {{L"tmcAutomatic", 1}, {L"tmcManual", 2}, {L"tmcDelay", 4}},
                                 0,
                                 {L"tmcOff", L"tmcAuto"}};

const WordTable kTmcAvoidMode = {"traffic avoid mode",
                                 ParseTmcAvoidMode,
                                 {{L"tmcAvoid", 1}, {L"tmcIgnore", 2}},
                                 0,
                                 {L"tmcAuto", L"tmcAvoided"}};

const WordTable kSortOption = {"sort option",
                               ParseSortOption,
                               {{L"ascending", 1},
                                {L"descending", 2},
                                {L"nearFirst", 4},
                                {L"farFirst", 8},
                                {L"hierarchicalSort", 16},
                                {L"hierarchicalDescSort", 32}},
                               0,
                               {L"defaultSort", L"ascend"}};

const WordTable kBlockMode = {
    "block mode", ParseBlockMode, {{L"AddBlock", 0}}, 1, {L"RemoveBlock", L"addblock"}};

const WordTable kStartStopMode = {
    "start and stop", ParseStartStopMode, {{L"start", 1}, {L"stop", 2}}, 4, {L"pause"}};

const WordTable kAppearanceStyle = {
    "appearance", ParseAppearanceStyle, {{L"night", 2}}, 1, {L"day", L"auto"}};

const WordTable kMeasurementSystem = {"measurement system",
                                      ParseMeasurementSystem,
                                      {{L"imperialyards", 2}, {L"imperialfeet", 4}, {L"metric", 8}},
                                      1,
                                      {L"undefined", L"kilometres"}};

const WordTable kLanguage = {"language",
                             ParseLanguage,
                             {{L"LangDansk", 1},
                              {L"LangGerman", 2},
                              {L"LangEngGB", 3},
                              {L"LangEngUS", 4},
                              {L"LangSpanish", 5},
                              {L"LangSpanishUS", 6},
                              {L"LangFrench", 7},
                              {L"LangItalian", 8},
                              {L"LangNetherlands", 9},
                              {L"LangPortuguese", 10},
                              {L"LangSwedish", 11},
                              {L"LangTurkish", 12},
                              {L"LangFlemish", 13},
                              {L"LangArabic", 14},
                              {L"LangChineseTraditional", 15},
                              {L"LangChineseSimple", 16},
                              {L"LangKorean", 17},
                              {L"LangJapanese", 18},
                              {L"LangBrazilianPortuguese", 19},
                              {L"LangFrenchCanadian", 20},
                              {L"LangFinnish", 21},
                              {L"LangGreek", 22},
                              {L"LangNorwegian", 23},
                              {L"LangPolish", 24},
                              {L"LangRussian", 25},
                              {L"LangHindi", 26}},
                             0,
                             {L"LangUndef", L"German", L"langgerman"}};

const WordTable kSafetyCameraMode = {
    "safety cameras", ParseSafetyCameraMode, {{L"safetyWarningsOff", 0}}, 1, {L"safetyWarningsOn"}};

const WordTable kNotificationMode = {"notification",
                                     ParseNotificationMode,
                                     {{L"once", 1}, {L"onChange", 2}, {L"frequency", 4}},
                                     0,
                                     {L"disable", L"on"}};

const WordTable kAudioSource = {
    "audio source",
    ParseAudioSource,
    {{L"AudioIdle", 0}, {L"AudioAutomatic", 1}, {L"AudioSafetyCamera", 3}},
    2,
    {L"AudioManual"}};

const WordTable* const kWordTables[] = {
    &kSpeedWarningMode, &kTmcTuningMode,     &kTmcRouteMode,  &kTmcAvoidMode,
    &kSortOption,       &kBlockMode,         &kStartStopMode, &kAppearanceStyle,
    &kNotificationMode, &kMeasurementSystem, &kLanguage,      &kSafetyCameraMode,
    &kAudioSource,
};

TEST(WordParsers, KnowTheirWords) {
  for (const WordTable* table : kWordTables) {
    for (const Row& row : table->words) {
      EXPECT_EQ(Parsed(table->parse, row.word), row.value) << table->name << ' ' << row.word;
    }
  }
}

TEST(WordParsers, GiveTheDefaultForOtherWords) {
  for (const WordTable* table : kWordTables) {
    for (const std::wstring& word : table->defaultWords) {
      EXPECT_EQ(Parsed(table->parse, word), table->byDefault) << table->name << ' ' << word;
    }
  }
}

TEST(WordParsers, GiveTheDefaultForTextThatIsNoWord) {
  for (const WordTable* table : kWordTables) {
    for (const wchar_t* text : {L"", L" ", L"0", L"1", L"2", L"|", L"\u0151", L"%s"}) {
      EXPECT_EQ(Parsed(table->parse, text), table->byDefault) << table->name << ' ' << text;
    }
  }
}

std::wstring WithFirstLettersCaseChanged(std::wstring word) {
  word[0] = static_cast<wchar_t>(word[0] ^ L' ');
  return word;
}

TEST(WordParsers, CompareTheWholeWord) {
  for (const WordTable* table : kWordTables) {
    for (const auto& [word, value] : table->words) {
      for (const std::wstring& other :
           {word + L' ', L' ' + word, word + L'x', word.substr(1), word.substr(0, word.size() - 1),
            word + L'|' + word, L'"' + word + L'"', WithFirstLettersCaseChanged(word)}) {
        EXPECT_EQ(Parsed(table->parse, other), table->byDefault) << table->name << ' ' << other;
      }
    }
  }
}

TEST(WordParsers, KnowNothingOfEachOthersWords) {
  for (const WordTable* table : kWordTables) {
    for (const WordTable* other : kWordTables) {
      if (other == table) continue;
      for (const Row& row : other->words) {
        EXPECT_EQ(Parsed(table->parse, row.word), table->byDefault)
            << table->name << ' ' << row.word;
      }
    }
  }
}

// What docs/reference.md lists.
TEST(WordTables, HoldEachWordThatIsKnown) {
  for (const WordTable* expected : kWordTables) {
    Words listed;
    for (const ventrik::WordTable& table : WordTables()) {
      if (table.parse == expected->parse) listed.assign(table.words.begin(), table.words.end());
    }
    Words known;
    for (const Row& row : expected->words) known.push_back(row.word);
    std::sort(listed.begin(), listed.end());
    std::sort(known.begin(), known.end());
    EXPECT_EQ(listed, known) << expected->name;
  }
}

TEST(WordTables, WordsOfEachAreReadByItsParser) {
  const std::vector<ventrik::WordTable> tables = WordTables();
  EXPECT_EQ(tables.size(), 17u);
  for (const ventrik::WordTable& table : tables) {
    EXPECT_FALSE(table.words.empty()) << table.name;
    for (const wchar_t* word : table.words) {
      EXPECT_NE(table.parse(word), table.parse(L"-")) << table.name << ' ' << word;
    }
  }
}

}  // namespace
}  // namespace ventrik::tests
