// The command line of panelcat.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/CommandLine.h"

namespace panelcat {

struct Options {
  std::vector<std::string> words;
  std::string secondsText, countText;
  std::string completion;  // the shell to complete for
  bool help = false, manual = false, version = false;

  uint16_t port = 0;
  double seconds = 1;  // to wait for messages after the end of the input
  size_t count = 0;    // of messages after which the program ends; 0 for any number
};

std::vector<platform::Option> OptionTable(Options& options);
// Returns an empty text, or one line that says what is wrong. Reads the numbers, too, unless only a text is asked for.
std::string ParseOptions(const std::vector<std::string>& arguments, Options& options);

std::string HelpText();
std::string CompletionText(const std::string& shell);
std::string ManualPage();

}  // namespace panelcat
