// The file of a program.
#pragma once

#include <string>
#include <vector>

namespace with_fonts {

// Returns the path of the program that a shell would run for this name, with links resolved if `isReal`. Empty if there
// is none.
std::string PathOfProgram(const std::string& name, bool isReal = true);

// True if the program runs in a sandbox (Flatpak, Snap), which sees the user's font folder but not what symbolic links in
// it point to, and not the fontconfig file that FONTCONFIG_FILE names. `words` are the program and its arguments.
bool IsSandboxed(const std::vector<std::string>& words);

}  // namespace with_fonts
