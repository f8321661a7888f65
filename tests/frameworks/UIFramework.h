// The built user-interface framework, with a user whose answers the test sets.
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

// Starts again for each test: preferences in a new folder, in English unless the test sets another language.
class UIFrameworkTest : public testing::Test {
 protected:
  UIFrameworkTest();
  ~UIFrameworkTest() override;

  // Reads the language and the preferences again.
  void Start(const platform::Dictionary& details = platform::Dictionary::Create());
  std::string PreferencesFile() const { return folder_ / "settings/preferences.plist"; }
  std::string Localized(const char* key);
  // Sets the button of the next boxes, and the rest of the answer.
  void Answer(int64_t button, const char* key = nullptr, const platform::Value& value = platform::Value());

  // The functions of the framework, under their own names.
#define DECLARE_FUNCTION(name, result, parameters) result(*name) parameters = nullptr;
  UI_FRAMEWORK_FUNCTIONS(DECLARE_FUNCTION)
#undef DECLARE_FUNCTION

  test_support::TempFolder folder_;
  std::vector<platform::Dictionary> boxes_;  // that were run
  std::function<void()> whileShown_;         // runs while a box is shown
  std::vector<std::string> progress_;        // "show", "update", "hide" and "front", with the progress

 private:
  static void Note(void* context, const std::string& text);

  const platform::Places former_;
  platform::BundleRef bundle_;
  platform::Dictionary answer_;
};

}  // namespace framework_tests
