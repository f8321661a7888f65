// Preferences: reading and storing by the plug-in, and the box for the user.
#include <string>

#include "frameworks/VelorantPlugins/Boxes.h"
#include "frameworks/VelorantPlugins/Exports.h"
#include "frameworks/VelorantPlugins/Preferences.h"
#include "frameworks/VelorantPlugins/Texts.h"
#include "frameworks/VelorantPlugins/include/PreferenceKeys.h"
#include "platform/Presenter.h"
#include "platform/Trace.h"

using platform::Array;
using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;

namespace {

Array Entries() {
  Array entries = Array::Create();
  for (const PreferenceRow& shown : kPreferenceRows) {
    if (!shown.isInBox) continue;
    const int32_t held = Preferences::Shared().GetInteger(shown.key);
    Dictionary entry = Dictionary::Create();
    entry.Set("Key", shown.key);
    entry.Set("Label", texts::Localized(std::string(shown.key) + "Label"));
    entry.Set("Value", shown.kind == PreferenceKind::kSwitch ? Value(Boolean::From(held != 0))
                                                             : Value(Number::FromInteger(held)));
    entries.Append(entry);
  }
  return entries;
}

const PreferenceRow* FindInBox(std::string_view key) {
  for (const PreferenceRow& row : kPreferenceRows) {
    if (row.isInBox && row.key == key) return &row;
  }
  return nullptr;
}

// The value as it is stored; null if it is not of the preference's kind.
Value Accepted(const PreferenceRow& shown, const Value& value) {
  const Number number(value);
  const bool fits =
      value.Is(platform::ValueType::kInteger) && number.Integer() >= INT32_MIN && number.Integer() <= INT32_MAX;
  if (shown.kind == PreferenceKind::kNumber) return fits ? value : Value();
  if (value.Is(platform::ValueType::kBoolean)) return value;
  return fits ? Value(Boolean::From(number.Integer() != 0)) : Value();
}

}  // namespace

int8_t VPFGetPreferenceForKey(const char* key) {
  if (!key) return 0;
  const int32_t value = Preferences::Shared().GetInteger(key);
  // A value that does not fit a byte counts as on.
  return value >= INT8_MIN && value <= INT8_MAX ? static_cast<int8_t>(value) : 1;
}

void VPFSetPreferenceForKey(const char* key, int8_t value) {
  if (!key) return;
  const bool isSwitch = value == 0 || value == 1;
  Preferences::Shared().Set(key, isSwitch ? Value(Boolean::From(value != 0)) : Value(Number::FromInteger(value)));
}

int32_t VPFGetLongPreferenceForKey(const char* key) { return key ? Preferences::Shared().GetInteger(key) : 0; }

void VPFSetLongPreferenceForKey(const char* key, int32_t value) {
  if (key) Preferences::Shared().Set(key, Number::FromInteger(value));
}

platform::ValueRef VPFGetStringPreferenceForKey(const char* key) {
  return key ? Preferences::Shared().GetString(key).Release() : nullptr;
}

void VPFSetStringPreferenceForKey(const char* key, const char* value) {
  if (!key) return;
  if (value) {
    Preferences::Shared().Set(key, String::FromUTF8(value));
  } else {
    Preferences::Shared().Remove(key);
  }
}

// Only keys that a first start writes count: the plug-in stores its workgroup before it writes them.
int32_t VPFDoPreferencesExist() {
  for (const PreferenceRow& row : kPreferenceRows) {
    if (row.firstValue && Preferences::Shared().Contains(row.key)) return 1;
  }
  return 0;
}

void VPFShowPreferences() {
  Dictionary box = boxes::MakeBox("preferences", "PreferencesHeader", nullptr, {"OK", "Cancel"});
  box.Set("Preferences", Entries());
  const Dictionary answer = platform::RunBox(box);
  if (boxes::ButtonOf(box, answer) != 1) return;
  const Dictionary given = answer.GetDictionary("Preferences");
  Dictionary accepted = Dictionary::Create();
  for (size_t i = 0; i < given.Count(); ++i) {
    const std::string key(given.KeyAt(i));
    const PreferenceRow* shown = FindInBox(key);
    const Value value = shown ? Accepted(*shown, given.ValueAt(i)) : Value();
    if (value) {
      accepted.Set(key, value);
    } else {
      platform::ReportProblem("Preferences: " + key + (shown ? ": a value of the wrong kind" : ": no such preference"));
    }
  }
  Preferences::Shared().SetAll(accepted);
}
