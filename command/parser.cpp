// SPDX-License-Identifier: Apache-2.0
#include "command/parser.h"

#include <string>
#include <string_view>

#include "state/logger.h"
#include "state/process_state.h"

namespace ventrik {
namespace {

constexpr std::size_t kNone = std::wstring::npos;

// Takes the quoted stretches of line[open, close) as parameters. Returns false if a quote is open
// at the end.
bool TakeParameters(CommandLine& commandLine, std::wstring_view line, std::size_t open,
                    std::size_t close) {
  commandLine.parameters.reserve(kMaxParameters);
  std::size_t start = kNone;  // behind the opening quote
  for (std::size_t at = open; at < close; ++at) {
    if (line[at] != L'"') continue;
    if (start == kNone) {
      start = at + 1;
    } else {
      commandLine.parameters.emplace_back(line.substr(start, at - start));
      start = kNone;
    }
  }
  return start == kNone;
}

}  // namespace

int ParseCommandLine(CommandLine& commandLine, const std::wstring& line) {
  commandLine.matchFailed = 0;
  if (line.empty() || line[0] == L'#') return 0;
  const std::size_t open = line.find(L'(');
  const std::size_t close = line.rfind(L')');
  if ((open == kNone) != (close == kNone)) return 0;
  commandLine.name = line.substr(0, open);
  commandLine.parameters.clear();
  commandLine.parameterCount = 0;
  if (open == kNone || open >= close) return 1;
  const bool closed = TakeParameters(commandLine, line, open, close);
  commandLine.parameterCount = static_cast<std::uint32_t>(commandLine.parameters.size());
  return closed && commandLine.parameterCount <= kMaxParameters;
}

int MatchCommand(CommandLine& commandLine, const wchar_t* keyword, std::uint32_t expectedCount) {
  if (commandLine.name != keyword) return 0;
  if (commandLine.parameterCount == expectedCount || expectedCount == 0) return 1;
  // Oddity: only the keyword's first letter reaches the screen. The text's %s is the narrow
  // conversion, and a wide character's other bytes are 0.
  const char firstLetter[] = {static_cast<char>(keyword[0]), '\0'};
  logger->print(L"%sError: Bad syntax! Command \"%s\" needs %d parameter(s).\n%s", ColourRed,
                firstLetter, static_cast<int>(expectedCount), ColourReset);
  commandLine.matchFailed = 1;
  return 0;
}

int ParamIs(const CommandLine& commandLine, std::size_t index, const wchar_t* text) {
  return index < commandLine.parameters.size() && commandLine.parameters[index].text == text;
}

}  // namespace ventrik
