// A dictionary as the user-interface framework takes it, with typed access. Its handle says who owns it: the dictionary
// goes with the last that holds it.
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

class VPFDictionary {
 public:
  VPFDictionary() : mDictionary(platform::Dictionary::Create()) {}
  // Shares a given dictionary.
  explicit VPFDictionary(const platform::Dictionary& dictionary) : mDictionary(dictionary) {}

  const platform::Dictionary& GetDictionary() const { return mDictionary; }

  void SetStringForKey(std::string_view key, std::string_view value) { mDictionary.Set(key, value); }
  void SetBoolForKey(std::string_view key, bool value);  // as the number 1 or 0
  void SetIntForKey(std::string_view key, int value);
  void SetStringFromLongForKey(std::string_view key, long value);
  void SetStringFromULongForKey(std::string_view key, unsigned long value);
  void SetArrayForKey(std::string_view key, const platform::Array& value) { mDictionary.Set(key, value); }
  platform::String GetStringForKey(std::string_view key) const { return mDictionary.GetString(key); }
  int GetIntForKey(std::string_view key) const { return static_cast<int>(mDictionary.GetInteger(key)); }
  long GetLongFromStringForKey(std::string_view key) const;
  // Creates the array if need be.
  void AppendItemToArrayForKey(std::string_view key, const VPFDictionary& item);

 private:
  platform::Dictionary mDictionary;
};
