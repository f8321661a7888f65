// The commands of scripts and of the console. One table gives the parser, the help and the completion.
#pragma once

#include <deque>
#include <span>
#include <string>

#include "host/console/Words.h"

namespace console {

class AnswerQueue;
class Report;
class Session;

// What a command works on.
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
  size_t least;  // arguments
  size_t most;
  Completion completion;  // of the first argument
  // Returns one line that says what is wrong with the arguments, or an empty text. Null if any arguments will do.
  std::string (*check)(const Words& arguments);
  void (*run)(CommandContext& context, const Words& arguments);
};

std::span<const CommandEntry> CommandTable();
const CommandEntry* FindCommand(const std::string& name);  // null if there is none
std::span<const char* const> ListingNames();               // what "show" shows

// Checks the words of a line without doing anything. Returns one line that says what is wrong, or an empty text; no words
// at all are right.
std::string CheckCommand(const Words& words);
// Runs the command; CheckCommand must have found nothing wrong. What it throws becomes an error of the report, so that
// the session goes on.
void RunCommand(CommandContext& context, const Words& words);

std::string CommandHelp();

}  // namespace console
