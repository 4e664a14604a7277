// SPDX-License-Identifier: Apache-2.0
// From the words of a command to the numbers of the wire.
//
// A parser never reports an error: a word that its table doesn't hold gives the table's default.
// The printers (messages/word_printers.h) have word lists of their own, which differ here and
// there; a table of one side is no reason to change the other.
//
// Pure functions for any thread. Words end at their first NUL, as the texts of the wire do.
#pragma once

#include <cstdint>
#include <vector>

namespace ventrik {

// One exact word.

std::int32_t ParseSpeedWarningMode(const wchar_t* word);   // default 0
std::int32_t ParseTmcTuningMode(const wchar_t* word);      // default 1, automatic
std::int32_t ParseTmcRouteMode(const wchar_t* word);       // default 0, off
std::int32_t ParseTmcAvoidMode(const wchar_t* word);       // default 0
std::int32_t ParseSortOption(const wchar_t* word);         // default 0, "defaultSort"
std::int32_t ParseBlockMode(const wchar_t* word);          // default 1, remove
std::int32_t ParseStartStopMode(const wchar_t* word);      // default 4
std::int32_t ParseAppearanceStyle(const wchar_t* word);    // default 1, day
std::int32_t ParseMeasurementSystem(const wchar_t* word);  // default 1, undefined
std::int32_t ParseLanguage(const wchar_t* word);           // default 0, "LangUndef"
std::int32_t ParseSafetyCameraMode(const wchar_t* word);   // default 1, on
std::int32_t ParseNotificationMode(const wchar_t* word);   // default 0, disabled
std::int32_t ParseAudioSource(const wchar_t* word);        // default 2, manual

// Flags: several names in one text, anything or nothing between them. The text is scanned, not
// split: at each place the names are tried in a fixed order, the first that fits sets its bit and
// is skipped together with the character behind it, and unknown characters are skipped one by one.
//   "zoom|visible" => 5   "xxzoom" => 1   "zoomvisible" => 1, because the "v" was skipped   "" => 0

// Oddities: "optimizeDestOrder" is tried before "optimizeDestOrderKeepLastDest" and "trailGuidance"
// before "trailGuidanceFromEnd", so that the longer names give the shorter ones' bits, and the scan
// goes on behind the shorter name. "disableStreetSideAnnouncement" has the bit of "fastest".
// "ignoreTrafficPatterns" is skipped by 13 characters only.
std::int32_t ParseRouteMode(const wchar_t* words);

std::int32_t ParseWorldProperty(const wchar_t* words);
std::int32_t ParseWorldElement(const wchar_t* words);

// Flags: each name is looked for on its own, anywhere in the text.
std::int32_t ParseTmcInfoFilter(const wchar_t* words);

// What the parsers know, for those who list it. A word's number is what its parser makes of it.
struct WordTable {
  const char* name;  // of what the words say, "sort option"
  std::int32_t (*parse)(const wchar_t*);
  bool flags;                         // several words in one text
  std::vector<const wchar_t*> words;  // in the parser's order
};

// All tables, in the order of the parsers above.
std::vector<WordTable> WordTables();

}  // namespace ventrik
