// What this program says about itself.
#pragma once

#include <string>

namespace with_fonts {

// Writes "with-fonts: PROBLEM" to standard error as one line that is safe for a terminal; nothing for an empty text.
void Complain(const std::string& problem);

}  // namespace with_fonts
