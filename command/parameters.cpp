// SPDX-License-Identifier: Apache-2.0
#include "command/parameters.h"

#include <cwchar>
#include <cwctype>

#include "console/utf8.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

char NarrowCharacter(wchar_t character) {
  const auto code = static_cast<std::uint32_t>(character);
  return code < 256 ? static_cast<char>(static_cast<unsigned char>(code)) : '?';
}

// Newer C libraries read a "0b" prefix as binary; here it is the number 0 with text behind it.
bool HasBinaryPrefix(const wchar_t* text) {
  while (std::iswspace(static_cast<std::wint_t>(*text)) != 0) ++text;
  if (*text == L'+' || *text == L'-') ++text;
  return text[0] == L'0' && (text[1] == L'b' || text[1] == L'B');
}

}  // namespace

const char* ParamNarrow(CommandParameter& parameter) {
  parameter.narrow.clear();
  for (const wchar_t character : parameter.text) parameter.narrow += NarrowCharacter(character);
  return parameter.narrow.c_str();
}

const char* ParamUtf8(CommandParameter& parameter) {
  parameter.utf8 = WideToUtf8(parameter.text);
  return parameter.utf8.c_str();
}

std::int32_t ParamInt(const CommandParameter& parameter) {
  if (HasBinaryPrefix(parameter.text.c_str())) return 0;
  return Saturate(std::wcstoll(parameter.text.c_str(), nullptr, 0));
}

// The point is "." because main sets LC_CTYPE alone.
double ParamDouble(const CommandParameter& parameter) {
  return std::wcstod(parameter.text.c_str(), nullptr);
}

std::int32_t ParamOnOff(const CommandParameter& parameter) {
  return parameter.text.compare(0, 2, L"on") == 0 ? 1 : 2;
}

}  // namespace ventrik
