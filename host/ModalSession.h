// A modal box: during its life the loop runs in its modal mode and Window::Modal() is its window.
#pragma once

#include <functional>
#include <string>

#include "platform/Window.h"

namespace host {

class ModalSession {
 public:
  // Shows a window with this title, with the current order-window method, above an open modal window.
  explicit ModalSession(const std::string& title);
  ~ModalSession();
  ModalSession(const ModalSession&) = delete;
  ModalSession& operator=(const ModalSession&) = delete;

  // Runs the loop until the condition is true, or for at most mostSeconds of real time. Returns whether it is true.
  // Tests the condition before each wait and after each callback.
  bool RunUntil(const std::function<bool()>& condition, double mostSeconds);

 private:
  platform::Window window_;
  platform::Window* formerModal_;
};

}  // namespace host
