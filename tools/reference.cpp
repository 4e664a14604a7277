// SPDX-License-Identifier: Apache-2.0
// Writes docs/reference.md, the tables of commands, messages and words, to standard output.
//
// No command, message or word is listed here. The rows are those that the program itself runs by;
// which message a command sends is seen by running it, what a word stands for by having it read,
// and what the bench engine answers by handing the message to its model. Listed are a parameter of
// each kind to try a command with, and which printers show numbers as words.
#include <algorithm>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include "bench/model/model.h"
#include "bench/world.h"
#include "command/command_table.h"
#include "command/executor.h"
#include "command/list_store.h"
#include "console/utf8.h"
#include "messages/catalogue.h"
#include "messages/dispatch.h"
#include "messages/layout_table.h"
#include "messages/word_parsers.h"
#include "messages/word_printers.h"
#include "shell/wiring.h"
#include "tests/messages/recorded_server.h"
#include "tests/support/recorded_console.h"

namespace ventrik {
namespace {

constexpr const wchar_t* kNoWord = L"-";  // in no table
constexpr const char* kListName = "list";

std::string Code(const std::string& text) {
  return "`" + text + "`";
}

// What a heading of that text is linked by.
std::string Anchor(std::string heading) {
  std::replace(heading.begin(), heading.end(), ' ', '-');
  return "#" + heading;
}

const WordTable* TableOf(const ParameterKind& kind) {
  static const std::vector<WordTable> tables = WordTables();
  for (const WordTable& table : tables) {
    if (kind.parse != nullptr && table.parse == kind.parse) return &table;
  }
  return nullptr;
}

// A text that a parameter of the kind takes, such that the command sends something.
std::wstring Sample(const ParameterKind& kind) {
  if (const WordTable* table = TableOf(kind)) return table->words.front();
  const std::string name = kind.name;
  if (name == "number" || name == "decimal") return L"1";
  if (name == "on/off") return L"on";
  if (name == "eis") return L"<MID>1<*>";
  return L"list";
}

std::size_t CountOf(const CommandRow& row) {
  std::size_t count = 0;
  while (count < kMaxParameters && row.parameters[count].name != nullptr) ++count;
  return count;
}

std::wstring SampleLine(const CommandRow& row) {
  std::wstring line = row.keyword;
  for (std::size_t i = 0; i < CountOf(row); ++i) {
    line += (i == 0 ? L"(\"" : L",\"") + Sample(row.parameters[i]) + L"\"";
  }
  return CountOf(row) == 0 ? line : line + L")";
}

// The tester without a server, but for what it sends.
class Tester {
 public:
  Tester() {
    AppendItem(FindOrCreateList(app_.stringArrayLists, kListName), "text");
    AppendItem(FindOrCreateList(app_.routeHandleLists, kListName), 1);
    AppendItem(FindOrCreateList(app_.routeModeLists, kListName), 1);
    AppendItem(FindOrCreateList(app_.destinationElementLists, kListName),
               {"<GEOC>Germany<*><CTY>Passau<*>", std::make_shared<SStringArray>()});
  }

  std::vector<Bytes> SentBy(const CommandRow& row) {
    server_.TakeSent();
    ExecuteCommand(app_, SampleLine(row), true);
    return server_.TakeSent();
  }

 private:
  tests::RecordedConsole console_;
  tests::RecordedServer server_;
  ClientApp app_;
};

// A message that the rows of navigation commands send, and by which command.
struct Sending {
  CommandRow row;
  Bytes block;

  FunctionId Id() const { return static_cast<FunctionId>(block.Block().Word(0)); }
};

std::vector<Sending> AllSendings() {
  std::vector<Sending> sendings;
  const CommandRows navigation = NavigationCommands();
  for (const CommandRow* row = navigation.begin; row != navigation.end; ++row) {
    const std::vector<Bytes> sent = Tester().SentBy(*row);
    if (!sent.empty()) sendings.push_back({*row, sent.front()});
  }
  return sendings;
}

// What an engine that has just been initialised sends at once.
std::vector<FunctionId> AnswersTo(const Bytes& request) {
  std::string error;
  static const auto world = bench::World::Parse(bench::BuiltInPlaces(), error);
  if (!world) return {};
  bench::Model model(*world);
  std::vector<FunctionId> answers;
  for (const bench::Outgoing& message : model.Handle(request.Block(), {}, 1)) {
    const bench::Block block = message.make ? message.make() : message.block;
    if (block.empty()) continue;
    const auto id = static_cast<FunctionId>(ReceivedBlock{block.data(), block.size()}.Word(0));
    if (std::find(answers.begin(), answers.end(), id) == answers.end()) answers.push_back(id);
  }
  return answers;
}

// Cells and lists of them.

std::string Join(const std::vector<std::string>& parts, const char* between = ", ") {
  std::string joined;
  for (const std::string& part : parts) joined += (joined.empty() ? "" : between) + part;
  return joined;
}

void PrintRow(const std::vector<std::string>& cells) {
  std::printf("|");
  for (const std::string& cell : cells) std::printf(cell.empty() ? " |" : " %s |", cell.c_str());
  std::printf("\n");
}

void PrintHead(const std::vector<std::string>& cells) {
  PrintRow(cells);
  std::printf("|");
  for (std::size_t i = 0; i < cells.size(); ++i) std::printf("---|");
  std::printf("\n");
}

std::string Message(FunctionId id) {
  return std::to_string(id) + " " + Code(FunctionName(id));
}

std::string Kind(const ParameterKind& kind) {
  const WordTable* table = TableOf(kind);
  if (table == nullptr) return kind.name;
  const std::string link = std::string("[") + table->name + "](" + Anchor(table->name) + ")";
  return kind.name == std::string_view("word") ? link : std::string(kind.name) + " or " + link;
}

// Each parameter of a command by the field that it fills, if there is one, and its kind.
std::string Parameters(const CommandRow& row, const MessageLayout* layout) {
  std::vector<std::string> parameters;
  const std::size_t count = CountOf(row);
  for (std::size_t i = 0; i < count; ++i) {
    std::string field;
    if (layout != nullptr && layout->count == count) {
      field = Code(std::string(layout->begin()[i].name)) + " ";
    }
    parameters.push_back(field + Kind(row.parameters[i]));
  }
  std::string text = Join(parameters);
  if (count > 0 && row.expectedCount == 0) {
    if (row.usedCount != nullptr) return text + " (" + row.usedCount + ")";
    text += row.leastCount == 0 ? " (any number of them)"
                                : " (" + std::to_string(row.leastCount) + " or more)";
  }
  return text;
}

std::string Keyword(const CommandRow& row) {
  return Code(WideToUtf8(row.keyword));
}

void PrintCommands(const std::vector<Sending>& sendings) {
  std::printf(
      "## Commands that send a message\n\n"
      "Each parameter by the field of the message that it fills, and its kind "
      "(docs/user-guide.md,\n"
      "Commands). The answer is what the bench engine sends at once, just after its start; a "
      "number\n"
      "is what `waitresp` takes.\n\n");
  PrintHead({"Command", "Parameters", "Sends", "Answer"});
  std::set<std::wstring> sent;
  for (const Sending& sending : sendings) {
    std::vector<std::string> answers;
    for (const FunctionId id : AnswersTo(sending.block)) answers.push_back(Message(id));
    PrintRow({Keyword(sending.row), Parameters(sending.row, FindLayout(sending.Id())),
              Message(sending.Id()), Join(answers)});
    sent.insert(sending.row.keyword);
  }
  std::printf("\n## Commands that act in ventrik\n\n");
  PrintHead({"Command", "Parameters"});
  std::vector<CommandRow> rows = AllCommands();
  std::sort(rows.begin(), rows.end(), [](const CommandRow& left, const CommandRow& right) {
    return std::wstring(left.keyword) < right.keyword;
  });
  for (const CommandRow& row : rows) {
    if (sent.count(row.keyword) == 0) PrintRow({Keyword(row), Parameters(row, nullptr)});
  }
}

// Who sends a message, as far as the tables know it.
std::string Sender(const CatalogueRow& row, const std::vector<Sending>& sendings) {
  std::vector<std::string> commands;
  for (const Sending& sending : sendings) {
    if (sending.Id() == row.id) commands.push_back(Keyword(sending.row));
  }
  if (!commands.empty()) return Join(commands);
  const std::int32_t id = row.id;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&id);
  const bool shown = MessageText({bytes, sizeof id}).find("Unhandled") == std::string::npos;
  return shown ? "the engine" : "";
}

void PrintMessages(const std::vector<Sending>& sendings) {
  std::printf(
      "\n## Messages\n\n"
      "The fields by name and kind, in the order of the wire; the kinds are those of scenarios\n"
      "(docs/bench-engine.md). What the engine sends is shown by ventrik. A message without a "
      "sender\n"
      "is only known by name. Those with a yes can be silenced by `response_filter.txt`.\n\n");
  PrintHead({"Number", "Name", "Fields", "Sent by", "Filter"});
  for (const CatalogueRow& row : kCatalogue) {
    const MessageLayout* layout = FindLayout(row.id);
    const std::string fields = layout == nullptr ? "" : std::string(layout->text);
    PrintRow({std::to_string(row.id), Code(row.name), fields.empty() ? "" : Code(fields),
              Sender(row, sendings), row.nameable ? "yes" : "no"});
  }
}

// The words that numbers are shown as, which are the printers' own.
struct NumberWords {
  const char* name;
  std::int32_t (*parse)(const wchar_t*);  // of the words for the same numbers, or null
  std::string (*text)(std::int32_t number);
  bool flags = false;
};

const NumberWords kNumberWords[] = {
    {"measurement system", ParseMeasurementSystem,
     [](std::int32_t number) { return std::string(MeasurementSystemText(number)); }},
    {"language", ParseLanguage,
     [](std::int32_t number) { return std::string(LanguageText(number)); }},
    {"sort option", ParseSortOption, SortOptionText},
    {"route mode", ParseRouteMode, RouteModeText, true},
    {"world property", ParseWorldProperty, WorldPropertyText, true},
    {"world element", ParseWorldElement, WorldElementText, true},
    {"calculation state", nullptr,
     [](std::int32_t number) { return std::string(RouteCalcStateText(number)); }},
    {"update result", nullptr, UpdateResultText, true},
};

// Empty if there is no word for it.
std::string Shown(const NumberWords& words, std::int32_t number) {
  std::string text = words.text(number);
  const std::string digits = std::to_string(number);
  const std::string suffix = "(" + digits + ")";
  if (text == digits || text == "unknown" + suffix) return "";
  if (text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix) {
    text.resize(text.size() - suffix.size());
  }
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text.empty() ? "" : Code(text);
}

// Every number that may have a word of its own. With flags, that is 0 and the bits.
std::vector<std::int32_t> Numbers(bool flags) {
  std::vector<std::int32_t> numbers = {0};
  while (!flags && numbers.size() <= 64) {
    numbers.push_back(static_cast<std::int32_t>(numbers.size()));
  }
  for (int bit = 0; bit < 31 && flags; ++bit) numbers.push_back(1 << bit);
  return numbers;
}

std::string Number(std::int32_t number, bool flags) {
  if (!flags) return std::to_string(number);
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(number));
  return text;
}

std::string Users(const WordTable& table) {
  std::vector<std::string> users;
  for (const CommandRow& row : AllCommands()) {
    for (const ParameterKind& kind : row.parameters) {
      if (kind.parse == table.parse) users.push_back(Keyword(row));
    }
  }
  return users.empty() ? "" : "Read by " + Join(users) + ". ";
}

const NumberWords* PrinterOf(const WordTable& table) {
  const auto* found =
      std::find_if(std::begin(kNumberWords), std::end(kNumberWords),
                   [&table](const NumberWords& words) { return words.parse == table.parse; });
  return found == std::end(kNumberWords) ? nullptr : found;
}

void PrintWordTable(const WordTable& table) {
  const NumberWords* printer = PrinterOf(table);
  std::printf("\n### %s\n\n%s%s is %s.\n\n", table.name, Users(table).c_str(),
              table.flags ? "Flags; no known word" : "Any other word",
              Number(table.parse(kNoWord), table.flags).c_str());
  std::set<std::int32_t> read;
  PrintHead({"Word", "Number", "Shown as"});
  for (const wchar_t* word : table.words) {
    const std::int32_t number = table.parse(word);
    PrintRow({Code(WideToUtf8(word)), Number(number, table.flags),
              printer == nullptr ? "" : Shown(*printer, number)});
    read.insert(number);
  }
  if (printer == nullptr) return;
  for (const std::int32_t number : Numbers(table.flags)) {
    const std::string shown = Shown(*printer, number);
    if (read.count(number) == 0 && !shown.empty()) {
      PrintRow({"", Number(number, table.flags), shown});
    }
  }
}

void PrintWords() {
  std::printf(
      "\n## Words\n\n"
      "What a word stands for, and what is shown where an answer has that number. A row without a\n"
      "word has a number that no word gives. How words and flags are read: docs/user-guide.md, "
      "Words.\n");
  for (const WordTable& table : WordTables()) PrintWordTable(table);
  for (const NumberWords& words : kNumberWords) {
    if (words.parse != nullptr) continue;
    std::printf("\n### %s\n\n%sin answers alone.\n\n", words.name,
                words.flags ? "Flags, " : "Found ");
    PrintHead({"Number", "Shown as"});
    for (const std::int32_t number : Numbers(words.flags)) {
      const std::string shown = Shown(words, number);
      if (!shown.empty()) PrintRow({Number(number, words.flags), shown});
    }
  }
}

void PrintReference() {
  std::printf(
      "# Reference\n\n"
      "The tables that ventrik runs by: [commands](#commands-that-send-a-message),\n"
      "[messages](#messages), [words](#words). tools/reference.cpp writes this file; after a "
      "change of\n"
      "the tables\n\n"
      "    cmake --build build/debug --target renew-reference\n\n"
      "makes it anew. What the commands are for, with examples: docs/user-guide.md.\n\n");
  const std::vector<Sending> sendings = AllSendings();
  PrintCommands(sendings);
  PrintMessages(sendings);
  PrintWords();
}

}  // namespace
}  // namespace ventrik

int main() {
  ventrik::ConnectRooms();
  ventrik::PrintReference();
  return 0;
}
