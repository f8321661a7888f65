// The user's preferences: an XML property list, a dictionary of strings, integers and booleans, at
// platform::GetPlaces().preferencesFile. Main thread only. Several programs may use the file at the same time.
//
// A change is merged with the current contents of the file and written at once; the file is replaced atomically. A
// damaged file is renamed ("NAME.damaged", "NAME.damaged-2" and so on) and the preferences start empty. A file that
// cannot be read or renamed is left alone; changes then last until the process ends. Each such failure is reported
// once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/FileStamp.h"
#include "platform/Value.h"

class Preferences {
 public:
  static Preferences& Shared();

  // Forgets what was read and overridden. The next access reads the file of the current places.
  void Reset();
  // Makes these keys read as these values, whatever the file contains or Set stores. Never stored.
  void Override(const platform::Dictionary& values);

  // Reads a boolean, an integer, or text that begins with a decimal number. Anything else, and an unset key, is 0. A
  // value out of range gives the nearest one.
  int32_t GetInteger(std::string_view key);
  platform::String GetString(std::string_view key);  // null if unset or not a string
  bool Contains(std::string_view key);

  // Does not write a value that is equal. Reports and ignores a null value, an empty key and a key that is not valid
  // UTF-8.
  void Set(std::string_view key, const platform::Value& value);
  // Stores several values with one write; each as with Set.
  void SetAll(const platform::Dictionary& values);
  void Remove(std::string_view key);

 private:
  platform::Value ValueOf(std::string_view key);
  void Refresh(bool isLocked = false);
  std::string Read();
  void GiveUpFile(const std::string& problem);
  void Change(const platform::Dictionary& values, std::string_view removed);
  void Store();
  void Report(const std::string& problem);

  platform::Dictionary values_ = platform::Dictionary::Create();  // the file's contents
  platform::Dictionary overrides_ = platform::Dictionary::Create();
  std::string path_;
  platform::FileStamp stamp_;
  bool isRead_ = false;
  bool isFileKept_ = false;  // the file could not be read and must not be replaced
  std::string reported_;     // the last problem, to report it only once
};
