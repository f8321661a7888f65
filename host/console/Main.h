// The host's main program.
#pragma once

#include <string>
#include <vector>

namespace console {

inline constexpr int kStatusWell = 0;
// The exit status if something failed; the report says what.
inline constexpr int kStatusWrong = 1;
// The exit status if a command or option is unknown or malformed; it was not run.
inline constexpr int kStatusUnknown = 2;
// Plus the number of the signal that ended the run.
inline constexpr int kStatusSignal = 128;

// Runs the host with the command line's arguments (without the program's name). Returns the exit status, unless a
// signal ends the run: then it quits normally and ends the process with that signal.
int Main(const std::vector<std::string>& arguments);

}  // namespace console
