// The preferences of the user: one XML property list, a dictionary of strings, integers and booleans, at
// platform::GetPlaces().preferencesFile. Main thread only; several programs may use the file at a time.
//
// A change is written at once, the file whole or not at all, on top of what the file holds at that moment. A file that is
// damaged is moved aside ("NAME.damaged", then "NAME.damaged-2" and so on), so that nothing of it is lost, and the
// preferences begin anew. One that cannot be read or moved is left alone: changes then last as long as the process. Each
// such failure is reported once.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Value.h"

class Preferences {
 public:
  static Preferences& Shared();

  // Forgets what was read and overridden; the next access reads the file of the current places.
  void Reset();
  // From now on these keys read as these values, whatever the file holds or Set stores. Never written to the file.
  void Override(const platform::Dictionary& values);

  // A boolean, an integer or a text that begins with a decimal number; anything else, and an unset key, is 0. A value
  // beyond the range gives the nearest one.
  int32_t GetInteger(std::string_view key);
  platform::String GetString(std::string_view key);  // null if unset or no string
  bool Contains(std::string_view key);

  // An equal value is not written again. A null value, an empty key and one that is no UTF-8 change nothing and are
  // reported.
  void Set(std::string_view key, const platform::Value& value);
  // Takes several values with one write; entries as for Set.
  void SetAll(const platform::Dictionary& values);
  void Remove(std::string_view key);

 private:
  // Tells one state of the file from the next.
  struct Stamp {
    uint64_t device = 0, inode = 0, size = 0;
    int64_t seconds = -1, nanoseconds = 0;  // of the last change; -1 without a file
    bool operator==(const Stamp&) const = default;
  };
  static Stamp StampOf(const std::string& path);

  platform::Value ValueOf(std::string_view key);
  void Refresh(bool isLocked = false);
  std::string Read();
  void GiveUpFile(const std::string& problem);
  void Change(const platform::Dictionary& values, std::string_view removed);
  void Store();
  void Report(const std::string& problem);

  platform::Dictionary values_ = platform::Dictionary::Create();  // of the file
  platform::Dictionary overrides_ = platform::Dictionary::Create();
  std::string path_;
  Stamp stamp_;
  bool isRead_ = false;
  bool isFileKept_ = false;  // the file holds what could not be read, and is not to be replaced
  std::string reported_;     // the last problem, so that it is not told again for each change
};
