// The options of nexctl.
#pragma once

#include <string>
#include <vector>

#include "platform/CommandLine.h"

namespace nexctl {

struct Options {
  std::vector<std::string> words;  // the command and its arguments
  std::string state;               // the agent's state folder; empty for the user's
  std::string columns;             // of `fonts`, separated by commas
  std::string workgroup;           // the ID of a library; empty for the first
  std::string completion;          // the shell to complete for
  bool json = false;
  bool help = false;
  bool manual = false;
  bool version = false;
};

std::vector<platform::Option> OptionTable(Options& options);
// As platform/CommandLine.h. Returns an empty text, or one line that says what is wrong.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);

}  // namespace nexctl
