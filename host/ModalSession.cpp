#include "host/ModalSession.h"

#include "host/Problems.h"
#include "platform/RunLoop.h"
#include "platform/Trace.h"

namespace host {

using platform::Window;
using platform::WindowOrdering;

ModalSession::ModalSession(const std::string& title) : window_(title, {}, nullptr), formerModal_(Window::Modal()) {
  Window::SetModal(&window_);
  std::string problem;
  const auto order = [this] { window_.OrderWindow(WindowOrdering::kAbove, 0); };
  if (!CallGuarded("Showing the window \"" + title + "\"", order, &problem)) platform::ReportProblem(problem);
}

ModalSession::~ModalSession() {
  Window::PlatformOrderWindow(window_, WindowOrdering::kOut, 0);
  Window::SetModal(formerModal_);
}

bool ModalSession::RunUntil(const std::function<bool()>& condition, double mostSeconds) {
  return platform::RunLoop::Main().RunUntil(condition, mostSeconds, platform::RunLoopMode::kModal);
}

}  // namespace host
