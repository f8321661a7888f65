// The command line.
#pragma once

#include <string>
#include <vector>

#include "platform/CommandLine.h"

namespace docfonts {

struct Options {
  std::vector<std::string> files;  // as given
  std::string state;               // state folder of the host whose fonts and agent are used; empty for the desktop's
  bool recursive = false;
  bool json = false;
  bool missing = false;
  bool resolve = false;
  bool help = false;
  bool version = false;
  std::string completion;  // the shell to complete for
};

// The options, which set members of this object.
std::vector<platform::Option> OptionTable(Options& options);
// As platform/CommandLine.h. Returns an empty text, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
std::string CompletionText(const std::string& shell);

}  // namespace docfonts
