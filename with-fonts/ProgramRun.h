// Runs a program in the place of this one: it gets the same terminal, input and output, and the signals that this
// process receives.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace with_fonts {

inline constexpr int kProgramNotFound = 127, kProgramNotExecutable = 126;

struct ProgramEnd {
  std::string problem{};  // one line if the program could not be started
  int status = 0;         // of the program, or one of the two above
  int signal = 0;         // that ended the program; 0 if none did
};

// `words` are the program, which is searched on PATH if it has no slash, and its arguments. `variables` ("NAME=value")
// are added to its environment. Waits for its end, and meanwhile calls whenReadable whenever the descriptor is
// readable, which may be negative for none, and whenChildEnds after the end of any other child of this process; that is
// then waited for. The process must have no other threads. If the program is stopped by its terminal, so
// is this process.
ProgramEnd RunProgram(const std::vector<std::string>& words, const std::vector<std::string>& variables,
                      const std::function<void()>& whenChildEnds, int descriptor,
                      const std::function<void()>& whenReadable);

// Ends this process by the signal, as a shell expects it after a program that a signal ended. Returns only if that
// fails.
void EndBySignal(int signal);

}  // namespace with_fonts
