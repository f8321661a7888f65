// The console of --interactive: a line editor with history and Tab completion. The host's run loop runs while the user
// types. Main thread only.
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
  // `openDocuments` returns the names of the open documents; it is called to complete one.
  Terminal(Signals& signals, std::function<std::vector<std::string>()> openDocuments);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // True if the input is a terminal, so that there is a user to ask.
  bool HasUser() const;
  // Reads a command line while the loop runs in its default mode. Ctrl-C clears the line. Returns false at the end of
  // the input and when a signal requests the end of the program.
  bool ReadCommand(std::string& line);
  // Reads the answer to a question of a box while the loop runs in the box's modal session. May be called during
  // ReadCommand. Returns false as above, and when the user presses Ctrl-C.
  bool Ask(host::ModalSession& box, const std::string& prompt, std::string& line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace console
