// Reads and changes the plug-in's preferences through the user-interface framework.
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

  // False without a framework, and until the plug-in has written the defaults of a first start. Set none before: the
  // plug-in takes any preference as a sign that it has.
  bool AreThere() const;
  // Returns an empty text, or one line: an unknown key, a value of another kind, or no preferences.
  std::string Set(const std::string& key, const std::string& value);
  bool GetSwitch(const std::string& key) const;  // false without a framework
  // Makes the switch read as this value until the framework is unloaded; the stored value does not change.
  void Override(const std::string& key, bool value) const;
  // Returns "KEY = VALUE" for each entry of the table, or a line that says why there are none.
  std::vector<std::string> Describe() const;

 private:
  template <typename Function>
  Function Find(const char* name) const;
  std::string ValueOf(const PreferenceRow& row) const;

  std::string problem_;
  platform::BundleRef bundle_;
};

// Returns an empty text if the key is known and the value has its kind.
std::string CheckPreference(const std::string& key, const std::string& value);

}  // namespace console
