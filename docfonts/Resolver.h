// Finds the file of the library that the font manager would choose for each font of a document, by the plug-in's rules.
// Activates nothing. Main thread only; waits for the agent.
#pragma once

#include <string>

#include "docfonts/Report.h"

namespace docfonts {

class Resolver {
 public:
  // Finds or starts the agent of platform::GetPlaces(). Returns an empty text, or one line that says why there is none.
  std::string Connect();
  void Resolve(Report& report);
  ~Resolver();
};

}  // namespace docfonts
