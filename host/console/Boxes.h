// Shows boxes and progress to the user: on the terminal if there is one to ask, otherwise boxes are answered by what a
// script has said beforehand, or by their default, with a line on standard error.
#pragma once

#include <functional>
#include <string>

#include "host/console/Answers.h"
#include "host/console/ProgressLine.h"
#include "platform/Presenter.h"

namespace console {

// Asks for a line; false at the end of the input.
using AskLine = std::function<bool(const std::string& prompt, std::string& line)>;

class Boxes {
 public:
  explicit Boxes(AnswerQueue& answers);  // from here on boxes and progress come here
  ~Boxes();
  Boxes(const Boxes&) = delete;
  Boxes& operator=(const Boxes&) = delete;

  // Null: nobody to ask.
  void SetTerminal(AskLine ask) { ask_ = std::move(ask); }

 private:
  platform::Dictionary Run(const platform::Dictionary& box);

  AnswerQueue& answers_;
  ProgressLine progress_;
  AskLine ask_;
};

}  // namespace console
