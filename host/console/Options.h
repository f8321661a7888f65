// The host's command line.
#pragma once

#include <string>
#include <vector>

namespace console {

struct Options {
  std::vector<std::string> files;  // documents, as given
  std::string script;              // path; may be empty
  std::vector<std::string> library;
  std::string state;    // empty for the platform's default
  std::string samples;  // the folder of documents to open if none are named
  bool interactive = false;
  bool panel = false;  // implies interactive
  bool json = false;
  bool desktop = false;
  bool help = false;
  bool completion = false;
};

// As platform/CommandLine.h. Returns an empty text, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
// Returns a line for the shell that completes the options of ./run.
std::string CompletionText();

}  // namespace console
