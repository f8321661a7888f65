// Creates font records and font arrays for tests.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Value.h"

namespace fakes {

using Entries = std::initializer_list<std::pair<std::string_view, std::string_view>>;

inline platform::Dictionary Record(Entries entries) {
  platform::Dictionary record = platform::Dictionary::Create();
  for (const auto& [key, value] : entries) record.Set(key, value);
  return record;
}

// Returns the record with some entries replaced or added. An empty value removes the entry.
inline platform::Dictionary With(const platform::Dictionary& record, Entries entries) {
  platform::Dictionary changed = record.Copy();
  for (const auto& [key, value] : entries) {
    if (value.empty()) {
      changed.Remove(key);
    } else {
      changed.Set(key, value);
    }
  }
  return changed;
}

// The same with "key=value|key=value", for rows of a table.
inline platform::Dictionary Changed(const platform::Dictionary& record, std::string_view entries) {
  platform::Dictionary changed = record.Copy();
  while (!entries.empty()) {
    const std::string_view entry = entries.substr(0, entries.find('|'));
    const size_t sign = entry.find('=');
    changed.Remove(entry.substr(0, sign));
    if (sign + 1 < entry.size()) changed.Set(entry.substr(0, sign), entry.substr(sign + 1));
    entries.remove_prefix(std::min(entry.size() + 1, entries.size()));
  }
  return changed;
}

inline platform::Dictionary Named(std::string_view name) { return Record({{"PostScriptName", name}}); }

inline platform::Array ArrayOf(std::initializer_list<platform::Value> entries) {
  platform::Array array = platform::Array::Create();
  for (const platform::Value& entry : entries) array.Append(entry);
  return array;
}

// Returns the names of a font array, separated by blanks. A record without a name gives "-".
inline std::string NamesOf(const platform::Array& fonts) {
  std::string names;
  for (size_t i = 0; i < fonts.Count(); ++i) {
    const platform::String name = platform::Dictionary(fonts.At(i)).GetString("PostScriptName");
    names += (i == 0 ? "" : " ") + (name ? name.Text() : "-");
  }
  return names;
}

}  // namespace fakes
