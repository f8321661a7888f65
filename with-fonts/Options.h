// The command line.
#pragma once

#include <string>
#include <vector>

#include "platform/CommandLine.h"

namespace with_fonts {

struct Options {
  std::vector<std::string>
      words;  // the program and its arguments; with noRun or dryRun the documents, with watch folders
  std::vector<std::string> library;  // folders; empty for those that are stored
  std::string state;                 // state folder; empty for the user's own
  bool isPrivate = false;
  bool noRun = false;
  bool keep = false;
  bool release = false;
  bool watch = false;
  bool identify = false;
  bool dryRun = false;
  bool quiet = false;
  bool json = false;
  bool help = false;
  bool manual = false;
  bool version = false;
  std::string completion;  // the shell to complete for

  bool IsAboutItself() const { return help || manual || version || !completion.empty(); }
  bool RunsProgram() const { return !noRun && !dryRun && !release && !watch; }
};

// As platform/CommandLine.h. Returns an empty text, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
std::string CompletionText(const std::string& shell);
// Returns the page of the manual, in the man macros.
std::string ManualPage();

}  // namespace with_fonts
