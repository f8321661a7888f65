// Signals, which the console checks when it waits and between two commands. So a signal never leaves a document half
// written, and fonts and preferences are restored before the program ends.
//
//   SIGTERM, SIGHUP  ask the program to end. The second one ends it at once.
//   SIGINT           the same without a user at the terminal. With one it stops only what the console does now.
//   SIGPIPE          does nothing: the write to the closed pipe fails, and whoever writes sees that.
//   SIGTSTP, SIGCONT, SIGWINCH  are kept for the line editor while it is at the prompt.
//
// While a signal requests to end or to stop, every run of the main run loop returns at once.
#pragma once

#include "platform/Descriptor.h"

namespace console {

// One object at a time. Main thread only.
class Signals {
 public:
  Signals();   // installs the handlers
  ~Signals();  // restores the default actions
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  // Sets whether a user at a terminal decides what to do next. False at first.
  void SetUser(bool hasUser);

  // Returns the signal that requests the end of the program; 0 if there is none.
  int EndAsked() const;
  bool IsInterrupted() const;
  // Each returns whether the signal arrived since the last call, and resets it.
  bool TakeInterrupt();
  bool TakeStop();
  bool TakeContinue();
  bool TakeResize();
  // True if one of the functions above has something to report.
  bool HasNews() const;

  // While the line editor uses the terminal, SIGTSTP does not stop the process but waits for TakeStop.
  void SetEditing(bool isEditing);
  // Stops the process like SIGTSTP, and returns when it continues.
  void StopProcess();

 private:
  void Clear();

  platform::Descriptor wake_;
  bool isEditing_ = false;
};

// Ends the process with this signal, as if it had not been handled, so that the parent sees the reason.
[[noreturn]] void EndBySignal(int signal);

}  // namespace console
