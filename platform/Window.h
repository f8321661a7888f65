// The host's windows as a plug-in sees them: a title, a number, a content view with named subviews, and key events. The
// host owns its windows. Main thread only.
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
  unsigned modifierFlags = 0;  // the platform's bits
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
  int Number() const { return number_; }  // from 1; never reused
  const std::vector<View>& ContentSubviews() const { return subviews_; }
  bool IsVisible() const { return visible_; }

  // Shows or hides the window with the current method (see ExchangeOrderWindowMethod). relativeTo is the number of
  // another window, 0 for all. The order among windows is not stored.
  void OrderWindow(WindowOrdering place, int relativeTo);
  void SendEvent(const KeyEvent& event);  // calls the handler given to the constructor

  // The platform's own method: shows or hides the window.
  static void PlatformOrderWindow(Window& window, WindowOrdering place, int relativeTo);

  // The window of the current modal loop; null outside one. The host sets it.
  static Window* Modal();
  static void SetModal(Window* window);

 private:
  std::string title_;
  std::vector<View> subviews_;
  KeyHandler onKey_;
  int number_;
  bool visible_ = false;
};

// Installs the given method and stores the previous one in the variable, so that a call through it reaches the previous
// method.
PLATFORM_API void ExchangeOrderWindowMethod(OrderWindowMethod& method);

class Alert;
using RunModalMethod = int (*)(Alert& alert);

// A text that the host shows until the user has answered. Main thread only.
class PLATFORM_API Alert {
 public:
  explicit Alert(std::string messageText) : messageText_(std::move(messageText)) {}
  const std::string& MessageText() const { return messageText_; }

  // Shows the alert with the current method and returns the answer: 1000 for the first button, 1001 for the second.
  int RunModal();
  // The platform's own method: shows a box.
  static int PlatformRunModal(Alert& alert);

 private:
  std::string messageText_;
};

// Like ExchangeOrderWindowMethod.
PLATFORM_API void ExchangeRunModalMethod(RunModalMethod& method);

}  // namespace platform
