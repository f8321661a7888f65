// Typed access to a dictionary for the user-interface framework. The dictionary is reference-counted; copies share it.
#pragma once

#include <string>
#include <string_view>

#include "platform/Value.h"

class VPFDictionary {
 public:
  VPFDictionary() : mDictionary(platform::Dictionary::Create()) {}
  // Shares the given dictionary.
  explicit VPFDictionary(const platform::Dictionary& dictionary) : mDictionary(dictionary) {}

  const platform::Dictionary& GetDictionary() const { return mDictionary; }

  void SetStringForKey(std::string_view key, std::string_view value) { mDictionary.Set(key, value); }
  void SetBoolForKey(std::string_view key, bool value);  // stored as the number 1 or 0
  void SetIntForKey(std::string_view key, int value);
  void SetStringFromLongForKey(std::string_view key, long value);
  void SetStringFromULongForKey(std::string_view key, unsigned long value);
  void SetArrayForKey(std::string_view key, const platform::Array& value) { mDictionary.Set(key, value); }
  platform::String GetStringForKey(std::string_view key) const { return mDictionary.GetString(key); }
  int GetIntForKey(std::string_view key) const { return static_cast<int>(mDictionary.GetInteger(key)); }
  long GetLongFromStringForKey(std::string_view key) const;
  // Creates the array if it does not exist.
  void AppendItemToArrayForKey(std::string_view key, const VPFDictionary& item);

 private:
  platform::Dictionary mDictionary;
};
