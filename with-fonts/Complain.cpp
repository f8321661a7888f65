#include "with-fonts/Complain.h"

#include <cstdio>

#include "platform/PlainText.h"

namespace with_fonts {

void Complain(const std::string& problem) {
  if (!problem.empty()) std::fprintf(stderr, "with-fonts: %s\n", platform::OneLine(problem).c_str());
}

}  // namespace with_fonts
