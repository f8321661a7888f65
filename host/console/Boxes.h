// Shows boxes and progress to the user. The answer to a box comes from a script, else from the user at the terminal,
// else it is the default. Boxes that the user is not asked about are reported on standard error. While a user is asked,
// the box is modal: the run loop is in its modal mode, and platform::Window::Modal() is the box. Main thread only.
#pragma once

#include <functional>
#include <string>

#include "host/ModalSession.h"
#include "host/console/Answers.h"
#include "host/console/ProgressLine.h"
#include "platform/Presenter.h"

namespace console {

// Asks for a line and runs the loop of the box meanwhile. Returns false if the user wants to answer no more.
using AskLine = std::function<bool(host::ModalSession& box, const std::string& prompt, std::string& line)>;

class Boxes {
 public:
  explicit Boxes(AnswerQueue& answers);  // becomes the presenter of the process
  ~Boxes();
  Boxes(const Boxes&) = delete;
  Boxes& operator=(const Boxes&) = delete;

  // Null means that there is no user.
  void SetTerminal(AskLine ask) { ask_ = std::move(ask); }

 private:
  platform::Dictionary Run(const platform::Dictionary& box);

  AnswerQueue& answers_;
  ProgressLine progress_;
  AskLine ask_;
};

}  // namespace console
