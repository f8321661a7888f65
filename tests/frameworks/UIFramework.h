// The built user-interface framework with a user whose answers the test decides.
#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "frameworks/VelorantPlugins/include/UIFramework.h"
#include "platform/Bundle.h"
#include "platform/Folders.h"
#include "platform/Presenter.h"
#include "support/TempFolder.h"

namespace framework_tests {

// Started anew for each test: preferences in a folder of its own, English unless the test says otherwise.
class UIFrameworkTest : public testing::Test {
 protected:
  UIFrameworkTest();
  ~UIFrameworkTest() override;

  // Reads language and preferences afresh.
  void Start(const platform::Dictionary& details = platform::Dictionary::Create());
  std::string PreferencesFile() const { return folder_ / "settings/preferences.plist"; }
  std::string Localized(const char* key);
  // The button of the next boxes, with what else the answer holds.
  void Answer(int64_t button, const char* key = nullptr, const platform::Value& value = platform::Value());

  // Each function of the framework under its own name.
#define DECLARE_FUNCTION(name, result, parameters) result(*name) parameters = nullptr;
  UI_FRAMEWORK_FUNCTIONS(DECLARE_FUNCTION)
#undef DECLARE_FUNCTION

  test_support::TempFolder folder_;
  std::vector<platform::Dictionary> boxes_;  // that were run
  std::function<void()> whileShown_;         // what happens while a box is up
  std::vector<std::string> progress_;        // "show", "update", "hide" and "front", with the progress

 private:
  static void Note(void* context, const std::string& text);

  const platform::Places former_;
  platform::BundleRef bundle_;
  platform::Dictionary answer_;
};

}  // namespace framework_tests
