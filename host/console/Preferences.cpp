#include "host/console/Preferences.h"

#include <charconv>

#include "frameworks/VelorantPlugins/include/UIFramework.h"

namespace console {

namespace {

const PreferenceRow* FindRow(const std::string& key) {
  for (const PreferenceRow& row : kPreferenceRows) {
    if (row.help && key == row.key) return &row;
  }
  return nullptr;
}

bool ReadNumber(const std::string& text, int32_t& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::vector<PreferenceRow> OfferedPreferences() {
  std::vector<PreferenceRow> offered;
  for (const PreferenceRow& row : kPreferenceRows) {
    if (row.help) offered.push_back(row);
  }
  return offered;
}

std::string CheckPreference(const std::string& key, const std::string& value) {
  const PreferenceRow* row = FindRow(key);
  if (!row) return "unknown preference '" + key + "'";
  int32_t number = 0;
  if (row->kind == PreferenceKind::kSwitch && value != "0" && value != "1") return key + " is 0 or 1";
  if (row->kind == PreferenceKind::kNumber && !ReadNumber(value, number)) return key + " is a number";
  return "";
}

Preferences::Preferences(const std::string& frameworkFolder) {
  bundle_ = platform::Bundle::Create(frameworkFolder, &problem_);
  if (bundle_ && !bundle_->Load(&problem_)) bundle_ = nullptr;
}

// Returns a function of the framework's list, or null.
template <typename Function>
Function Preferences::Find(const char* name) const {
  return bundle_ ? reinterpret_cast<Function>(bundle_->FunctionForName(name)) : nullptr;
}

bool Preferences::AreThere() const {
  const auto exist = Find<int32_t (*)()>("VPFDoPreferencesExist");
  return exist && exist() != 0;
}

std::string Preferences::Set(const std::string& key, const std::string& value) {
  std::string problem = CheckPreference(key, value);
  if (!problem.empty()) return problem;
  if (bundle_ && !AreThere()) return "there are no preferences yet, because the plug-in could not start";
  const auto setSwitch = Find<void (*)(const char*, int8_t)>("VPFSetPreferenceForKey");
  const auto setNumber = Find<void (*)(const char*, int32_t)>("VPFSetLongPreferenceForKey");
  const auto setText = Find<void (*)(const char*, const char*)>("VPFSetStringPreferenceForKey");
  if (!setSwitch || !setNumber || !setText) return problem_.empty() ? "the framework keeps no preferences" : problem_;
  int32_t number = 0;
  switch (FindRow(key)->kind) {
    case PreferenceKind::kSwitch: setSwitch(key.c_str(), value == "1" ? 1 : 0); break;
    case PreferenceKind::kNumber:
      ReadNumber(value, number);
      setNumber(key.c_str(), number);
      break;
    case PreferenceKind::kText: setText(key.c_str(), value.c_str()); break;
  }
  return "";
}

bool Preferences::GetSwitch(const std::string& key) const {
  const auto get = Find<int8_t (*)(const char*)>("VPFGetPreferenceForKey");
  return get && get(key.c_str()) != 0;
}

void Preferences::Override(const std::string& key, bool value) const {
  const auto setDetails = Find<void (*)(platform::ValueRef)>("VPFSetHostDetails");
  if (!setDetails) return;
  platform::Dictionary overrides = platform::Dictionary::Create(), details = platform::Dictionary::Create();
  overrides.Set(key, platform::Boolean::From(value));
  details.Set("PreferenceOverrides", overrides);
  setDetails(details.Ref());
}

std::string Preferences::ValueOf(const PreferenceRow& row) const {
  switch (row.kind) {
    case PreferenceKind::kSwitch: return GetSwitch(row.key) ? "1" : "0";
    case PreferenceKind::kNumber: {
      const auto get = Find<int32_t (*)(const char*)>("VPFGetLongPreferenceForKey");
      return std::to_string(get ? get(row.key) : 0);
    }
    case PreferenceKind::kText: {
      const auto get = Find<platform::ValueRef (*)(const char*)>("VPFGetStringPreferenceForKey");
      return get ? platform::String(platform::Value::Adopt(get(row.key))).Text() : "";
    }
  }
  return "";
}

std::vector<std::string> Preferences::Describe() const {
  if (!bundle_) return {"no preferences: " + problem_};
  std::vector<std::string> lines;
  for (const PreferenceRow& row : OfferedPreferences()) {
    lines.push_back(std::string(row.key) + " = " + ValueOf(row) + "  (" + row.help + ")");
  }
  return lines;
}

}  // namespace console
