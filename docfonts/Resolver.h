// Which file of the library the font manager would choose for each font of a document, by the plug-in's own rules. Nothing
// is activated. Main thread only; waits for the agent.
#pragma once

#include <string>

#include "docfonts/Report.h"

namespace docfonts {

class Resolver {
 public:
  // Finds or starts the agent of platform::GetPlaces(). Empty, or one line that says why there is none.
  std::string Connect();
  void Resolve(Report& report);
  ~Resolver();
};

}  // namespace docfonts
