// The host as a program.
#pragma once

#include <string>
#include <vector>

namespace console {

inline constexpr int kStatusWell = 0;
// Something went wrong; the report says what.
inline constexpr int kStatusWrong = 1;
// A command or option is not known or not well formed; it did nothing.
inline constexpr int kStatusUnknown = 2;
// Above it: a signal ended the run.
inline constexpr int kStatusSignal = 128;

// Runs the host with the command line's arguments, without the program's name. Returns the exit status, unless a signal
// ends the run: then it quits as usual and ends the process by that signal.
int Main(const std::vector<std::string>& arguments);

}  // namespace console
