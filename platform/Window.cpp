#include "platform/Window.h"

#include <algorithm>
#include <utility>

#include "platform/Presenter.h"

namespace platform {

namespace {
constexpr int kFirstButton = 1000;

int sLastNumber = 0;
RunModalMethod sRunModal = &Alert::PlatformRunModal;
Window* sModal = nullptr;
OrderWindowMethod sOrderWindow = &Window::PlatformOrderWindow;
}  // namespace

Window::Window(std::string title, std::vector<View> contentSubviews, KeyHandler onKey)
    : title_(std::move(title)),
      subviews_(std::move(contentSubviews)),
      onKey_(std::move(onKey)),
      number_(++sLastNumber) {}

Window::~Window() {
  if (sModal == this) sModal = nullptr;
}

void Window::OrderWindow(WindowOrdering place, int relativeTo) { sOrderWindow(*this, place, relativeTo); }

void Window::SendEvent(const KeyEvent& event) {
  if (onKey_) onKey_(*this, event);
}

void Window::PlatformOrderWindow(Window& window, WindowOrdering place, int) {
  window.visible_ = place != WindowOrdering::kOut;
}

Window* Window::Modal() { return sModal; }
void Window::SetModal(Window* window) { sModal = window; }

void ExchangeOrderWindowMethod(OrderWindowMethod& method) { std::swap(sOrderWindow, method); }

int Alert::RunModal() { return sRunModal(*this); }

int Alert::PlatformRunModal(Alert& alert) {
  Dictionary box = Dictionary::Create();
  box.Set("Kind", "message");
  box.Set("Message", alert.MessageText());
  const int64_t button = RunBox(box).GetInteger("Button");
  return kFirstButton - 1 + static_cast<int>(std::max<int64_t>(button, 1));  // closing counts as the first button
}

void ExchangeRunModalMethod(RunModalMethod& method) { std::swap(sRunModal, method); }

}  // namespace platform
