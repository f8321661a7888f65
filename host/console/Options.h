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
  bool manual = false;
  bool version = false;
  std::string completion;  // the shell to complete for
};

// As platform/CommandLine.h. Returns an empty text, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
std::string CompletionText(const std::string& shell);
std::string ManualPage();
std::string VersionText();

}  // namespace console
