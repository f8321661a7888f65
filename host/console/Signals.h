// Signals as something that the console looks at when it waits and between two commands. So a signal never leaves a
// document half written, and fonts and preferences are put back before the program ends.
//
//   SIGTERM, SIGHUP  ask the program to end. The second one ends it at once.
//   SIGINT           the same without a user at the terminal. With one it stops only what the console does now.
//   SIGPIPE          does nothing: the write to the closed pipe fails, and whoever writes sees that.
//   SIGTSTP, SIGCONT, SIGWINCH  are kept for the line editor while it is at the prompt.
//
// While a signal asks to end or to stop, every run of the main run loop returns at once.
#pragma once

#include "platform/Descriptor.h"

namespace console {

// One object at a time; main thread only.
class Signals {
 public:
  Signals();   // takes the signals
  ~Signals();  // gives them back their default
  Signals(const Signals&) = delete;
  Signals& operator=(const Signals&) = delete;

  // Whether a user at a terminal decides what to do next. Until then there is none.
  void SetUser(bool hasUser);

  // The signal that asks the program to end; 0 if none does.
  int EndAsked() const;
  bool IsInterrupted() const;
  // Each tells whether the signal came since the last call, and forgets it.
  bool TakeInterrupt();
  bool TakeStop();
  bool TakeContinue();
  bool TakeResize();
  // Whether one of the above has something to tell.
  bool HasNews() const;

  // While the editor has the terminal in a mode of its own: SIGTSTP does not stop the process but waits for TakeStop.
  void SetEditing(bool isEditing);
  // Stops the process as SIGTSTP does, and returns when it continues.
  void StopProcess();

 private:
  void Clear();

  platform::Descriptor wake_;
  bool isEditing_ = false;
};

// Ends the process by this signal, as if it had not been handled, so that the program's parent sees the reason.
[[noreturn]] void EndBySignal(int signal);

}  // namespace console
