// A box that holds up the user: while it lives, the loop runs in its modal mode and Window::Modal() is its window.
#pragma once

#include <functional>
#include <string>

#include "platform/Window.h"

namespace host {

class ModalSession {
 public:
  // Shows a window of this title, through the order-window method in force, above any modal window that is up.
  explicit ModalSession(const std::string& title);
  ~ModalSession();
  ModalSession(const ModalSession&) = delete;
  ModalSession& operator=(const ModalSession&) = delete;

  // Runs the loop until the condition holds, or for at most so many seconds of real time; true if it holds. The condition
  // is tested before any wait and after each callback.
  bool RunUntil(const std::function<bool()>& condition, double mostSeconds);

 private:
  platform::Window window_;
  platform::Window* formerModal_;
};

}  // namespace host
