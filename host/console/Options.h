// The command line of the host. One table gives the parser, the help and the shell's completion.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace console {

struct Options {
  std::vector<std::string> files;  // documents, as given
  std::string script;              // path; empty without one
  std::vector<std::string> library;
  std::string state;    // empty: the default of the platform
  std::string samples;  // a folder of documents for those who name none
  bool interactive = false;
  bool json = false;
  bool desktop = false;
  bool help = false;
  bool completion = false;
};

struct OptionEntry {
  const char* name;
  const char* argument;  // null: it takes none
  const char* help;
  void (*take)(Options& options, const std::string& value);
};

std::span<const OptionEntry> OptionTable();

// Options may stand anywhere before "--"; a value follows as the next word or behind "=". Empty, or one line that says
// what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
// A line for the shell that completes the options of ./run.
std::string CompletionText();

}  // namespace console
