// The plug-in's preferences, read and changed through the user-interface framework that keeps them.
#pragma once

#include <string>
#include <vector>

#include "frameworks/VelorantPlugins/include/PreferenceKeys.h"
#include "platform/Bundle.h"

namespace console {

// The preferences that the console offers.
std::vector<PreferenceRow> OfferedPreferences();

class Preferences {
 public:
  explicit Preferences(const std::string& frameworkFolder);

  // False without a framework, and until the plug-in has written the defaults of a first start. It takes any preference
  // for a sign that it has, so that none may be set before.
  bool AreThere() const;
  // Empty, or one line: an unknown key, a value of another kind, or no preferences.
  std::string Set(const std::string& key, const std::string& value);
  bool GetSwitch(const std::string& key) const;  // false without a framework
  // Until the framework is unloaded the switch reads as this value; what is stored does not change.
  void Override(const std::string& key, bool value) const;
  // "KEY = VALUE" for each entry of the table, or a line that says why there are none.
  std::vector<std::string> Describe() const;

 private:
  template <typename Function>
  Function Find(const char* name) const;
  std::string ValueOf(const PreferenceRow& row) const;

  std::string problem_;
  platform::BundleRef bundle_;
};

// Empty if the key is known and the value is of its kind.
std::string CheckPreference(const std::string& key, const std::string& value);

}  // namespace console
