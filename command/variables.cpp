// SPDX-License-Identifier: Apache-2.0
#include "command/variables.h"

#include <cwchar>
#include <optional>

#include "state/assertion.h"
#include "state/logger.h"
#include "state/process_state.h"
#include "state/saturation.h"

namespace ventrik {
namespace {

constexpr std::size_t kNone = std::wstring::npos;
constexpr const wchar_t* kVariableNameAlphabet =
    L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr const wchar_t* kDelimiter = L"$$";
constexpr std::size_t kDelimiterLength = 2;

std::optional<std::wstring> FindVariable(const ClientApp& app, const std::wstring& name) {
  return app.variables.With([&](const VariableTable& table) -> std::optional<std::wstring> {
    const auto found = table.find(name);
    if (found == table.end()) return std::nullopt;
    return found->second;
  });
}

void SetVariable(ClientApp& app, const std::wstring& name, const std::wstring& value) {
  app.variables.With([&](VariableTable& table) { table[name] = value; });
}

void PrintMissing(const std::wstring& name) {
  logger->print(L"%sError: Can't find variable '%ls'.\n%s", ColourRed, name.c_str(), ColourReset);
}

// Base 10 and 32 bits.
std::int32_t RowNumber(const std::wstring& text) {
  return Saturate(std::wcstoll(text.c_str(), nullptr, 10));
}

bool IsLiteral(const std::wstring& token) {
  return !token.empty() && token.front() == L'"' && token.back() == L'"';
}

// The text between a literal's quotes; a single quote is a literal with nothing in it.
std::wstring LiteralText(const std::wstring& token) {
  return token.size() < 2 ? std::wstring() : token.substr(1, token.size() - 2);
}

}  // namespace

void StripLine(std::wstring& line) {
  std::wstring stripped;
  stripped.reserve(line.size());
  bool inQuotes = false;
  int tagState = 0;  // 1 from a tag's "<" to its value's closing "<", 2 from there to the ">"
  for (const wchar_t character : line) {
    if (character == L'\t' || character == L'\n') continue;
    if (character == L' ' && !inQuotes && tagState != 1) continue;
    if (character == L'"') inQuotes = !inQuotes;
    if (character == L'<' && tagState < 2) ++tagState;
    if (character == L'>' && tagState == 2) tagState = 0;
    stripped += character;
  }
  line = std::move(stripped);
}

int HandleVariableLine(ClientApp& app, std::wstring& line) {
  StripLine(line);
  app.pendingListAssignments.With([](auto& queue) { queue.clear(); });
  if (line.empty()) return 0;
  const std::size_t equals = line.find_first_not_of(kVariableNameAlphabet);
  if (equals == kNone || line[equals] != L'=') return 0;
  const std::wstring name = line.substr(0, equals);
  // Oddity: found anywhere behind the "=", in either order, inside quotes or not.
  const std::size_t parenthesis = line.find(L'(', equals);
  const std::size_t comma = line.find(L',', equals);
  if (comma == kNone) {
    VariableConcat(app, name, SplitTokens(line, equals + 1));
    return 1;
  }
  if (parenthesis == kNone) return 0;
  const std::int32_t row = RowNumber(line.substr(equals + 1, comma - equals - 1));
  app.pendingListAssignments.With([&](auto& queue) { queue.push_back({name, row}); });
  line.erase(0, comma + 1);
  return 0;
}

std::vector<std::wstring> SplitTokens(const std::wstring& line, std::size_t from) {
  std::vector<std::wstring> tokens;
  std::size_t start = from;
  std::size_t plus = line.find(L'+', start);
  while (plus != kNone) {
    std::wstring token = line.substr(start, plus - start);
    if (!token.empty() && token.front() == L'"') {
      // Oddity: the closing quote is looked for behind the "+", because the search is there for
      // literals that hold one.
      const std::size_t close = line.find(L'"', plus);
      if (close == kNone) break;
      token = line.substr(start, close + 1 - start);
      plus = line.find(L'+', close);
      if (plus == kNone) break;
    }
    tokens.push_back(std::move(token));
    start = plus + 1;
    plus = line.find(L'+', start);
  }
  tokens.push_back(line.substr(start));
  return tokens;
}

void VariableConcat(ClientApp& app, const std::wstring& name,
                    const std::vector<std::wstring>& tokens) {
  if (tokens.empty()) FailAssertion("variables", __LINE__, "VariableConcat");
  std::wstring result;
  std::wstring missing;
  for (const std::wstring& token : tokens) {
    if (IsLiteral(token)) {
      result += LiteralText(token);
    } else if (const std::optional<std::wstring> value = FindVariable(app, token)) {
      if (missing.empty()) result += *value;
    } else {
      missing += L" '" + token + L"'";
    }
  }
  if (!missing.empty()) return PrintMissing(missing);
  SetVariable(app, name, result);
  logger->print(L"VARIABLE> Variable '%ls' has new value '%ls'.\n", name.c_str(), result.c_str());
}

int SubstituteVariables(ClientApp& app, std::wstring& line) {
  std::size_t open = line.find(kDelimiter);
  if (open == kNone) return 0;
  std::wstring out;
  std::size_t done = 0;  // line[0, done) is in `out`, references replaced
  while (open != kNone) {
    out.append(line, done, open - done);
    const std::size_t nameStart = open + kDelimiterLength;
    const std::size_t close = line.find(kDelimiter, nameStart);
    if (close == kNone) {
      logger->print(L"%sError: Bad syntax! Check variables input.\n%s", ColourRed, ColourReset);
      return 1;
    }
    const std::wstring name = line.substr(nameStart, close - nameStart);
    const std::optional<std::wstring> value = FindVariable(app, name);
    if (!value) {
      logger->print(L"%sError: Variable '%ls' doesn't exist!\n%s", ColourRed, name.c_str(),
                    ColourReset);
      return 1;
    }
    out += *value;
    done = close + kDelimiterLength;
    open = line.find(kDelimiter, done);
  }
  out.append(line, done, kNone);
  line = std::move(out);
  return 0;
}

void ShowVariable(ClientApp& app, const std::wstring& name) {
  const std::optional<std::wstring> value = FindVariable(app, name);
  if (!value) return PrintMissing(name);
  logger->print(L"VARIABLE> Variable '%ls' is '%ls'.\n", name.c_str(), value->c_str());
}

void AssignVariable(ClientApp& app, const std::wstring& target, const std::wstring& source) {
  SetVariable(app, target, FindVariable(app, source).value_or(source));
}

void AppendToVariable(ClientApp& app, const std::wstring& target, const std::wstring& source) {
  const std::optional<std::wstring> before = FindVariable(app, target);
  if (!before) return PrintMissing(target);
  SetVariable(app, target, *before + FindVariable(app, source).value_or(source));
}

}  // namespace ventrik
