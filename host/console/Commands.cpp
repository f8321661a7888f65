#include "host/console/Commands.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "host/console/Answers.h"
#include "host/console/Preferences.h"
#include "host/console/Report.h"
#include "host/console/Session.h"
#include "platform/CommandLine.h"

namespace console {

namespace {

constexpr size_t kAny = SIZE_MAX;
constexpr size_t kDefaultTraceLines = 200;
constexpr double kLongestWait = 86400;  // seconds
constexpr const char* kListings[] = {"documents", "fonts", "windows", "trace", "preferences"};

template <typename Number>
bool ReadNumber(const std::string& text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

std::string First(const Words& arguments) { return arguments.empty() ? "" : arguments[0]; }

// An empty name would mean the front document; a script that builds names must not save over that by mistake.
std::string CheckName(const Words& arguments) {
  return arguments.empty() || !arguments[0].empty() ? "" : "the name is empty";
}

std::string CheckWait(const Words& arguments) {
  double seconds = 0;
  const bool isNumber = ReadNumber(arguments[0], seconds) && std::isfinite(seconds);
  return isNumber && seconds >= 0 && seconds <= kLongestWait ? "" : "wait takes seconds, from 0 to a day";
}

std::string CheckDoIt(const Words& arguments) {
  int32_t operation = 0;
  return arguments.empty() || ReadNumber(arguments[0], operation) ? "" : "do-it takes a number";
}

std::string CheckShow(const Words& arguments) {
  if (std::find(std::begin(kListings), std::end(kListings), arguments[0]) == std::end(kListings)) {
    return "show knows documents, fonts, windows, trace and preferences, not '" + arguments[0] + "'";
  }
  size_t lines = 0;
  if (arguments.size() == 1) return "";
  return arguments[0] == "trace" && ReadNumber(arguments[1], lines) ? "" : "only 'show trace' takes a number of lines";
}

std::string CheckSet(const Words& arguments) { return CheckPreference(arguments[0], arguments[1]); }

std::string CheckAnswer(const Words& arguments) {
  Answer answer;
  return ReadAnswer(arguments, answer);
}

void Open(CommandContext& context, const Words& arguments) {
  for (const std::string& file : arguments) context.session.Open(file);
}
void Make(CommandContext& context, const Words&) { context.session.Make(); }
void Edit(CommandContext& context, const Words& arguments) { context.session.Edit(First(arguments)); }
void Save(CommandContext& context, const Words& arguments) { context.session.Save(First(arguments)); }
void SaveAs(CommandContext& context, const Words& arguments) { context.session.SaveAs(arguments[0]); }
void Close(CommandContext& context, const Words& arguments) {
  if (First(arguments) == "all") {
    context.session.CloseAll();  // also closes a document with this name
  } else {
    context.session.Close(First(arguments));
  }
}
void DoIt(CommandContext& context, const Words& arguments) {
  int32_t operation = 0;
  if (!arguments.empty()) ReadNumber(arguments[0], operation);
  context.session.DoIt(operation);
}
void GiveAnswer(CommandContext& context, const Words& arguments) {
  Answer answer;
  ReadAnswer(arguments, answer);
  context.answers.Add(answer);
}
void Wait(CommandContext& context, const Words& arguments) {
  double seconds = 0;
  ReadNumber(arguments[0], seconds);
  context.session.Wait(seconds);
}
void Show(CommandContext& context, const Words& arguments) {
  size_t lines = kDefaultTraceLines;
  if (arguments.size() > 1) ReadNumber(arguments[1], lines);
  if (arguments[0] == "documents") context.session.ShowDocuments();
  if (arguments[0] == "fonts") context.session.ShowFonts();
  if (arguments[0] == "windows") context.session.ShowWindows();
  if (arguments[0] == "trace") context.session.ShowTrace(lines);
  if (arguments[0] == "preferences") context.session.ShowPreferences();
}
void Set(CommandContext& context, const Words& arguments) { context.session.SetPreference(arguments[0], arguments[1]); }
void Help(CommandContext&, const Words&) { std::fputs(CommandHelp().c_str(), stderr); }
void Quit(CommandContext& context, const Words&) { context.quits = true; }

constexpr CommandEntry kCommands[] = {
    {"open", "FILE ...", "open documents", 1, kAny, Completion::kPath, nullptr, Open},
    {"make", "", "make a new, untitled document", 0, 0, Completion::kNothing, nullptr, Make},
    {"edit", "[FONT]", "add text to the document in front, in a font of this PostScript name", 0, 1,
     Completion::kNothing, nullptr, Edit},
    {"save", "[DOCUMENT]", "save the document in front, or this one", 0, 1, Completion::kDocument, CheckName, Save},
    {"save-as", "FILE", "save the document in front under another name", 1, 1, Completion::kPath, CheckName, SaveAs},
    {"close", "[DOCUMENT|all]", "close the document in front, this one, or all, without saving", 0, 1,
     Completion::kDocument, CheckName, Close},
    {"do-it", "[NUMBER]", "call the plug-in's command; 4 asks for the font panel's port", 0, 1, Completion::kNothing,
     CheckDoIt, DoIt},
    {"answer", "KEY VALUE ...", "answer the next box: button, choice or text VALUE, font NAME NUMBER, pref KEY VALUE",
     1, kAny, Completion::kNothing, CheckAnswer, GiveAnswer},
    {"wait", "SECONDS", "let the run loop go on for so long", 1, 1, Completion::kNothing, CheckWait, Wait},
    {"show", "WHAT", "show documents, fonts, windows, trace [LINES] or preferences", 1, 2, Completion::kListing,
     CheckShow, Show},
    {"set", "KEY VALUE", "change a preference", 2, 2, Completion::kPreference, CheckSet, Set},
    {"help", "", "list these commands", 0, 0, Completion::kNothing, nullptr, Help},
    {"quit", "", "close all documents and end", 0, 0, Completion::kNothing, nullptr, Quit},
};

constexpr bool EveryCommandHasHelp() {
  return std::all_of(std::begin(kCommands), std::end(kCommands),
                     [](const CommandEntry& entry) { return entry.help[0]; });
}
static_assert(EveryCommandHasHelp());

}  // namespace

std::span<const CommandEntry> CommandTable() { return kCommands; }
std::span<const char* const> ListingNames() { return kListings; }

const CommandEntry* FindCommand(const std::string& name) {
  for (const CommandEntry& entry : kCommands) {
    if (name == entry.name) return &entry;
  }
  return nullptr;
}

std::string CheckCommand(const Words& words) {
  if (words.empty()) return "";
  const CommandEntry* entry = FindCommand(words[0]);
  if (!entry) return "unknown command '" + words[0] + "'; see help";
  const Words arguments(words.begin() + 1, words.end());
  if (arguments.size() < entry->least || arguments.size() > entry->most) {
    const std::string takes = *entry->arguments ? std::string("takes ") + entry->arguments : "takes no arguments";
    return words[0] + " " + takes;
  }
  return entry->check ? entry->check(arguments) : "";
}

void RunCommand(CommandContext& context, const Words& words) {
  if (words.empty()) return;
  const Words arguments(words.begin() + 1, words.end());
  RunReported(context.report, words[0], [&] { FindCommand(words[0])->run(context, arguments); });
}

std::vector<platform::CommandText> CommandTexts() {
  std::vector<platform::CommandText> texts;
  for (const CommandEntry& entry : kCommands) texts.push_back({entry.name, entry.arguments, entry.help});
  return texts;
}

std::string CommandHelp() {
  constexpr size_t kColumn = 24;
  return platform::HelpLines(CommandTexts(), kColumn);
}

}  // namespace console
