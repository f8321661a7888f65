// The front end's own line to the font manager agent. It starts the agent before the plug-in asks for it, shows the
// progress of its first scan, asks it about font files, and notices when it is gone. Main thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/LocalSocket.h"

namespace console {

class Sandbox;

struct AgentProblem {
  std::string path;  // a file or folder of the library, or the agent itself
  std::string message;
};

struct LibrarySummary {
  bool isKnown = false;  // there is an agent that could tell
  size_t files = 0;
  size_t faces = 0;
  std::vector<AgentProblem> problems;
};

class AgentLink {
 public:
  explicit AgentLink(const Sandbox& sandbox) : sandbox_(sandbox) {}

  // Starts the agent unless one runs, waits until it has read its library, and shows the progress of that. Empty, or one
  // line; everything else goes on without an agent.
  std::string Start(LibrarySummary* summary);

  // Starts the agent again after it has gone, unless there is a new one already. Otherwise like Start.
  std::string Restart(LibrarySummary* summary);

  // Whether the agent that we are connected to still lives. Does not wait.
  bool IsConnected();

  // Waits until the agent says that it has activated a font, on a thread of its own while no other operation runs. False
  // if the stop descriptor becomes readable first, or there is no agent.
  bool WaitForActivation(int stop);

  // How many files hold a font of this PostScript name; 0 if the agent can't say.
  size_t CountCandidates(const std::string& postScriptName);
  // The file of a font; empty if the agent can't say.
  std::string FileOf(uint32_t fontID);

 private:
  std::string Launch();
  std::string EndOldAgent() const;
  bool Connect();
  std::string ReadReport(LibrarySummary* summary);
  std::string LastWords() const;
  void Lose();  // the agent has gone or does not answer
  std::string SilenceProblem() const;

  const Sandbox& sandbox_;
  platform::Descriptor socket_;
  uint64_t lastID_ = 0;
  int silentProcess_ = 0;  // an agent that did not answer
};

}  // namespace console
