// Windows of the host as a plug-in sees them: a title, a number, a content view with named subviews, key events. The host
// owns its windows; they are used on its main thread only.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Export.h"

namespace platform {

struct KeyEvent {
  int type = 10;               // 10 is key down
  double x = 0, y = 0;         // in points, from the window's lower left corner
  unsigned modifierFlags = 0;  // bits as the platform numbers them
  double timestamp = 0.0;      // in seconds since the machine started
  int windowNumber = 0;
  std::string characters;
  std::string charactersIgnoringModifiers;
  bool isRepeat = false;
  int keyCode = 0;  // 53 is Escape
};

enum class WindowOrdering { kOut = 0, kAbove = 1, kBelow = -1 };

struct View {
  std::string className;  // "NSButton", "NSTextField", ...
  std::string title;
};

class Window;
using OrderWindowMethod = void (*)(Window& window, WindowOrdering place, int relativeTo);

class PLATFORM_API Window {
 public:
  using KeyHandler = std::function<void(Window&, const KeyEvent&)>;

  Window(std::string title, std::vector<View> contentSubviews, KeyHandler onKey);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  const std::string& Title() const { return title_; }
  int Number() const { return number_; }  // from 1, never used again
  const std::vector<View>& ContentSubviews() const { return subviews_; }
  bool IsVisible() const { return visible_; }

  // Shows or hides the window through the method in force (see ExchangeOrderWindowMethod). relativeTo is the number of
  // another window, 0 for all; the order among windows is not kept.
  void OrderWindow(WindowOrdering place, int relativeTo);
  void SendEvent(const KeyEvent& event);  // to the handler that the window was made with

  // The platform's own method, which shows or hides.
  static void PlatformOrderWindow(Window& window, WindowOrdering place, int relativeTo);

  // The window for which a modal loop runs now; null outside one. The host sets it.
  static Window* Modal();
  static void SetModal(Window* window);

 private:
  std::string title_;
  std::vector<View> subviews_;
  KeyHandler onKey_;
  int number_;
  bool visible_ = false;
};

// Puts the given method in force and stores the one that was in force into it, so that a call through the same
// variable reaches the former method.
PLATFORM_API void ExchangeOrderWindowMethod(OrderWindowMethod& method);

class Alert;
using RunModalMethod = int (*)(Alert& alert);

// A text that the host shows, and waits until the user has answered. Main thread only.
class PLATFORM_API Alert {
 public:
  explicit Alert(std::string messageText) : messageText_(std::move(messageText)) {}
  const std::string& MessageText() const { return messageText_; }

  // Shows the alert through the method in force and returns the answer: 1000 for the first button, 1001 for the second.
  int RunModal();
  // The platform's own method, which shows a box.
  static int PlatformRunModal(Alert& alert);

 private:
  std::string messageText_;
};

// As ExchangeOrderWindowMethod.
PLATFORM_API void ExchangeRunModalMethod(RunModalMethod& method);

}  // namespace platform
