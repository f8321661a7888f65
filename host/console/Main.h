// The host as a program.
#pragma once

#include <string>
#include <vector>

namespace console {

inline constexpr int kStatusWell = 0;
// Something went wrong; it was said what.
inline constexpr int kStatusWrong = 1;
// A command or option is not known or not well formed; nothing was done for it.
inline constexpr int kStatusUnknown = 2;

// Without the program's name; gives the exit status.
int Main(const std::vector<std::string>& arguments);

}  // namespace console
