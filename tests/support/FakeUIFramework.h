// The user-interface framework's table with preferences in memory. It records one line for each thing shown. Tests set
// the user's answers in advance.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Services/MarquineGlobals.h"
#include "Services/VPFInterface.h"
#include "platform/Bundle.h"
#include "support/Records.h"

namespace fakes {

// While an object exists, it is the shared interface. One at a time.
class FakeUIFramework {
 public:
  FakeUIFramework() : interface(std::make_unique<VPFInterface>(MakeTable())) {
    sCurrent = this;
    MarquineGlobals::SetSharedVPFInterfaceForTesting(interface.get());
  }
  ~FakeUIFramework() {
    MarquineGlobals::SetSharedVPFInterfaceForTesting(nullptr);
    sCurrent = nullptr;
  }
  FakeUIFramework(const FakeUIFramework&) = delete;
  FakeUIFramework& operator=(const FakeUIFramework&) = delete;

  // Returns the lines since the last call.
  std::vector<std::string> TakeShown() { return std::exchange(shown, {}); }

  // Booleans as 0 and 1 beside the numbers.
  std::map<std::string, int> preferences{{"EnablePlugin", 1}, {"EnableGlyphsure", 1}};
  std::map<std::string, std::string> texts;  // preferences that are texts
  // "box MESSAGE", "ask", "resolve NAMES", "restricted NAMES", "command", "about", "preferences", "show", "update" and
  // "hide" of the progress window, "online 1".
  std::vector<std::string> shown;
  int button = 1;
  std::string header;  // of the last message box, and its buttons
  int buttonSet = -1;
  std::string typed;  // the user's input when a box asks for a text
  // The answers of the command box in order, code and workgroup. After them it is cancelled.
  std::deque<std::pair<int, int>> commands;
  platform::Dictionary commandBox;  // the last one
  std::function<void(platform::Array problemFonts)> onResolve;
  std::function<void()> onShown;  // after each line of `shown`
  std::unique_ptr<VPFInterface> interface;

 private:
  static void Note(std::string line) {
    sCurrent->shown.push_back(std::move(line));
    if (sCurrent->onShown) sCurrent->onShown();
  }
  static platform::Array ArrayFrom(platform::ValueRef fonts) { return platform::Array(platform::Value::Retain(fonts)); }

  static std::unique_ptr<VPFFunctionTable> MakeTable() {
    auto table = std::make_unique<VPFFunctionTable>();
    table->bundle = platform::Bundle::Main();
    table->pfVPFLocalizedString = [](const char* key) { return platform::String::FromUTF8(key).Release(); };
    table->pfVPFGetPreferenceForKey = [](const char* key) { return static_cast<int8_t>(sCurrent->preferences[key]); };
    table->pfVPFSetPreferenceForKey = [](const char* key, int8_t value) { sCurrent->preferences[key] = value; };
    table->pfVPFGetLongPreferenceForKey = [](const char* key) { return int32_t{sCurrent->preferences[key]}; };
    table->pfVPFSetLongPreferenceForKey = [](const char* key, int32_t value) { sCurrent->preferences[key] = value; };
    table->pfVPFGetStringPreferenceForKey = [](const char* key) {
      const auto found = sCurrent->texts.find(key);
      return found == sCurrent->texts.end() ? nullptr : platform::String::FromUTF8(found->second).Release();
    };
    table->pfVPFDoPreferencesExist = [] { return static_cast<int32_t>(!sCurrent->preferences.empty()); };
    table->pfVPFShowAboutBox = [] { Note("about"); };
    table->pfVPFShowPreferences = [] { Note("preferences"); };
    table->pfVPFShowMessageBox = [](const char* header, const char* message, int32_t buttonSet) {
      Note(std::string("box ") + message);
      sCurrent->header = header ? header : "";
      sCurrent->buttonSet = buttonSet;
      return int32_t{sCurrent->button};
    };
    table->pfVPFAskForOneString = [](const char*, const char*, const char*, platform::ValueRef* out) {
      Note("ask");
      *out = platform::String::FromUTF8(sCurrent->typed).Release();
      return int32_t{1};
    };
    table->pfVPFShowResolveFonts = [](platform::ValueRef fonts) {
      Note("resolve " + NamesOf(ArrayFrom(fonts)));
      if (sCurrent->onResolve) sCurrent->onResolve(ArrayFrom(fonts));
    };
    table->pfVPFShowRestrictedFonts = [](platform::ValueRef fonts) { Note("restricted " + NamesOf(ArrayFrom(fonts))); };
    table->pfVPFShowCommandBox = [](platform::ValueRef box, int32_t* workgroup) {
      Note("command");
      sCurrent->commandBox = platform::Dictionary(platform::Value::Retain(box));
      if (sCurrent->commands.empty()) return int32_t{-1};
      const auto [code, choice] = sCurrent->commands.front();
      sCurrent->commands.pop_front();
      *workgroup = choice;
      return int32_t{code};
    };
    table->pfVPFShowProgress = [](platform::ValueRef) { Note("show"); };
    table->pfVPFUpdateProgress = [](platform::ValueRef) { Note("update"); };
    table->pfVPFHideProgress = [] { Note("hide"); };
    table->pfVPFSetIsOnline = [](int8_t isOnline) { Note("online " + std::to_string(isOnline)); };
    return table;
  }

  inline static FakeUIFramework* sCurrent = nullptr;
};

}  // namespace fakes
