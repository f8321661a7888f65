#include "platform/Window.h"

#include <utility>

namespace platform {

namespace {
int sLastNumber = 0;
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

}  // namespace platform
