// Finds out whether a program that has ended has passed its documents to an instance that was running already, or goes
// on in the background. There is no sure sign of it, so a process that may use the documents counts:
//   - it runs the program's own file; a shell never counts, and an interpreter only with the same script;
//   - if the program is a script, it runs a program in the script's folder, unless that is a general one (/usr/bin);
//   - it has one of the documents open;
//   - the program has started it, and it goes on without the program, unless it serves the whole session.
// Only processes of this user count.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace with_fonts {

class RunningInstances {
 public:
  // `words` as for RunProgram, before the program runs; `documents` are absolute paths.
  RunningInstances(const std::vector<std::string>& words, const std::vector<std::string>& documents);

  // After the program has ended. This process must have adopted its orphans (OpenFiles.h).
  std::vector<pid_t> Find() const;

 private:
  bool IsInstance(const std::string& folder) const;
  static bool GoesOn(pid_t process, const std::string& folder);

  std::string program_;  // the real path of its file; empty if a process with it is no instance
  std::string folder_;   // of the program's own executables, if it is a script; otherwise empty
  std::string script_;   // that an interpreter runs, as named
  std::vector<std::string> documents_;
};

}  // namespace with_fonts
