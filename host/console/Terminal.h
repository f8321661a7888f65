// The console of --interactive: a line editor with history, completion by the Tab key, and the host's run loop going on
// while the user types.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace console {

class Terminal {
 public:
  // Asked for the names of open documents when one is to be completed.
  explicit Terminal(std::function<std::vector<std::string>()> openDocuments);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  // Whether somebody sits there who can be asked.
  bool HasUser() const;
  // A command line; false at the end of the input.
  bool ReadCommand(std::string& line);
  // The answer to a question of a box, also in the middle of ReadCommand; false at the end of the input.
  bool Ask(const std::string& prompt, std::string& line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace console
