// SPDX-License-Identifier: Apache-2.0
// The text variables of the command language, and the two steps that every line goes through before
// it is parsed: white space and assignments, then `$$name$$` references.
//
// There is one global scope, and no command removes a variable. The texts of failures are printed
// here; a failed line leaves the table as it was.
#pragma once

#include <string>
#include <vector>

#include "state/client_app.h"

namespace ventrik {

// Drops tabs and line feeds everywhere, and blanks outside quotes and tagged values.
//   spell ( "a b" )            => spell("a b")
//   x=<CTY>New York<*> + y     => x=<CTY>New York<*>+y
void StripLine(std::wstring& line);

// Strips the line and takes it if it is an assignment. Returns 1 if the line was consumed, 0 if it
// goes on; a list assignment (`name=3,list(...)`) is noted and goes on as the text behind the
// comma. Every line that gets here drops the list assignments of the line before.
int HandleVariableLine(ClientApp& app, std::wstring& line);

// The terms of an assignment's right-hand side, which is `line` from `from` on, separated by "+".
//   "a+b"+c => "a+b" and c        c+"ab" => c and "ab"
// Oddity: a quoted term is looked for from its first "+" on, so "ab"+c is a single term.
std::vector<std::wstring> SplitTokens(const std::wstring& line, std::size_t from);

// Sets `name` to the joined values of `tokens`, quoted literals or variable names, and prints the
// new value; or prints which names are missing. At least one token.
void VariableConcat(ClientApp& app, const std::wstring& name,
                    const std::vector<std::wstring>& tokens);

// Replaces each `$$name$$` by its variable's value, which is not looked at again. Returns 0; or 1,
// with the error printed and the line unchanged, if it must be dropped.
int SubstituteVariables(ClientApp& app, std::wstring& line);

// The commands `var`, `varassign` and `varconcat`. An unknown source is literal text.
void ShowVariable(ClientApp& app, const std::wstring& name);
void AssignVariable(ClientApp& app, const std::wstring& target, const std::wstring& source);
void AppendToVariable(ClientApp& app, const std::wstring& target, const std::wstring& source);

}  // namespace ventrik
