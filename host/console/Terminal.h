// The console of --interactive: a line editor with history and completion by the Tab key. The host's run loop goes on
// while the user types. Main thread only.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace host {
class ModalSession;
}

namespace console {

class Signals;

class Terminal {
 public:
  // `openDocuments` returns the names of the open documents; it is called when one is to be completed.
  Terminal(Signals& signals, std::function<std::vector<std::string>()> openDocuments);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Whether the input is a terminal, so that there is a user to ask.
  bool HasUser() const;
  // Reads a command line, while the loop runs in its default mode. Ctrl-C clears the line. False at the end of the input
  // and when a signal asks the program to end.
  bool ReadCommand(std::string& line);
  // Reads the answer to a question of a box, while the loop runs in the box's modal session; also in the middle of
  // ReadCommand. False as above, and when the user presses Ctrl-C.
  bool Ask(host::ModalSession& box, const std::string& prompt, std::string& line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace console
