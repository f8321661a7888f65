// The commands of scripts and the console. The parser, the help and the completion all use one table.
#pragma once

#include <deque>
#include <span>
#include <string>
#include <vector>

#include "host/console/Words.h"
#include "platform/CommandLine.h"

namespace console {

class AnswerQueue;
class Report;
class Session;

// The objects that a command works on.
struct CommandContext {
  Session& session;
  AnswerQueue& answers;
  Report& report;
  bool quits = false;  // set by "quit"
};

enum class Completion { kNothing, kPath, kDocument, kListing, kPreference, kCommand };

struct CommandEntry {
  const char* name;
  const char* arguments;
  const char* help;
  size_t least;  // number of required arguments
  size_t most;
  Completion completion;  // how to complete the first argument
  // Returns one line that says what is wrong with the arguments, or an empty text. Null if all arguments are allowed.
  std::string (*check)(const Words& arguments);
  void (*run)(CommandContext& context, const Words& arguments);
};

std::span<const CommandEntry> CommandTable();
const CommandEntry* FindCommand(const std::string& name);  // null if unknown
std::span<const char* const> ListingNames();               // the listings of "show"

// Checks the words of a line without running them. Returns one line that says what is wrong, or an empty text. An empty
// line is correct.
std::string CheckCommand(const Words& words);
// Runs a command that CheckCommand has accepted. An exception becomes an error of the report, and the session
// continues.
void RunCommand(CommandContext& context, const Words& words);

std::vector<platform::CommandText> CommandTexts();
std::string CommandHelp();

}  // namespace console
