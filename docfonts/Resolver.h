// Finds the file of the library that the font manager would choose for each font of a document, by the plug-in's rules.
// Activates nothing. The connection to the agent has a thread, so it is in a process of its own: the program forks
// readers all the time. Not thread-safe; each call waits for the agent.
#pragma once

#include <string>

#include "docfonts/ChildProcess.h"
#include "docfonts/Report.h"

namespace docfonts {

class Resolver {
 public:
  Resolver() = default;
  ~Resolver() { process_.Await(); }  // disconnects
  Resolver(const Resolver&) = delete;
  Resolver& operator=(const Resolver&) = delete;

  // Finds or starts the agent of platform::GetPlaces(). Returns an empty text, or one line that says why there is none.
  // Once, while the program has no other threads.
  std::string Connect();
  // Fills in the file of each font, or adds a problem to the report.
  void Resolve(Report& report);

 private:
  ChildProcess process_;
};

}  // namespace docfonts
