// The command line. One table gives the parser, the help and the shell's completion.
#pragma once

#include <string>
#include <vector>

namespace docfonts {

struct Options {
  std::vector<std::string> files;  // as given
  std::string state;               // of the host whose fonts and agent are asked; empty: the desktop's
  bool recursive = false;
  bool json = false;
  bool missing = false;
  bool resolve = false;
  bool help = false;
  bool completion = false;
};

// Options may stand anywhere before "--". Empty, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);
std::string HelpText();
// A line for the shell that completes the options.
std::string CompletionText();

}  // namespace docfonts
