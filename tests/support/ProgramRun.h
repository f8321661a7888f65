// A program run as a user runs it, by a shell.
#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "support/TempFolder.h"

namespace test_support {

struct Outcome {
  int status = 0;  // -1 after a signal
  std::string output, errors;
};

// `line` is a command as a shell takes it. Its output goes through files in the folder.
inline Outcome RunLine(const std::string& line, const TempFolder& folder) {
  const std::string out = folder / "out", err = folder / "err";
  const int status = std::system((line + " >'" + out + "' 2>'" + err + "'").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TempFolder::Content(out), TempFolder::Content(err)};
}

}  // namespace test_support
