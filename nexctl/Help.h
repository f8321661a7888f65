// What nexctl says about itself, from the tables of options and commands.
#pragma once

#include <string>

namespace nexctl {

std::string HelpText();
std::string CompletionText(const std::string& shell);
std::string ManualPage();  // in the man macros

}  // namespace nexctl
