#include "host/MissingFonts.h"

#include "host/Problems.h"
#include "platform/Fonts.h"
#include "platform/Trace.h"

namespace host {

namespace {

using platform::Window;
using platform::WindowOrdering;

constexpr const char* kTitle = "Missing Fonts";
constexpr const char* kInvisibleFont = "AdobeInvisFont";
constexpr int kEscapeKeyCode = 53;

// The third view is the button that dismisses the window: plug-ins look for it there.
std::vector<platform::View> Views(const std::vector<std::string>& missing) {
  std::string names;
  for (const std::string& name : missing) names += (names.empty() ? "" : ", ") + name;
  return {{"NSTextField", "These fonts are missing and are replaced for display:"},
          {"NSTextField", names},
          {"NSButton", "Cancel"},
          {"NSButton", "OK"}};
}

}  // namespace

std::vector<std::string> MissingFonts(const std::vector<std::string>& names) {
  if (names.empty()) return {};
  const std::set<std::string> active = platform::ActivePostScriptNames();
  std::vector<std::string> missing;
  for (const std::string& name : names) {
    if (name != kInvisibleFont && !active.contains(name)) missing.push_back(name);
  }
  return missing;
}

std::shared_ptr<Window> ShowMissingFontsWindow(const std::vector<std::string>& missing) {
  // Escape may arrive during the ordering, before the window is visible, and counts then, too.
  const auto isDismissed = std::make_shared<bool>(false);
  auto window =
      std::make_shared<Window>(kTitle, Views(missing), [isDismissed](Window&, const platform::KeyEvent& event) {
        if (event.keyCode == kEscapeKeyCode) *isDismissed = true;
      });
  std::string problem;
  const auto order = [&] { window->OrderWindow(WindowOrdering::kAbove, 0); };
  if (!CallGuarded("Showing the window \"Missing Fonts\"", order, &problem)) {
    platform::ReportProblem(problem);
    Window::PlatformOrderWindow(*window, WindowOrdering::kAbove, 0);
  }
  if (!*isDismissed) return window;
  Window::PlatformOrderWindow(*window, WindowOrdering::kOut, 0);
  return nullptr;
}

}  // namespace host
