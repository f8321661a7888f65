#include "frameworks/VelorantPlugins/Preferences.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "platform/FileLock.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/PropertyList.h"
#include "platform/TextEncoding.h"
#include "platform/Trace.h"

using platform::Boolean;
using platform::Dictionary;
using platform::Number;
using platform::String;
using platform::Value;

namespace {

bool CanBeStored(std::string_view key, const Value& value) {
  if (key.empty() || !value || !platform::IsValidUTF8(key)) return false;
  Dictionary entry = Dictionary::Create();
  entry.Set(key, value);
  return !platform::CreateXMLPropertyList(entry).empty();
}

std::string FolderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, std::max<size_t>(slash, 1));
}

}  // namespace

Preferences& Preferences::Shared() {
  static Preferences sShared;
  return sShared;
}

void Preferences::Reset() { *this = Preferences(); }

void Preferences::Override(const Dictionary& values) {
  for (size_t i = 0; i < values.Count(); ++i) overrides_.Set(values.KeyAt(i), values.ValueAt(i));
}

void Preferences::Report(const std::string& problem) {
  if (problem == reported_) return;
  reported_ = problem;
  platform::ReportProblem(problem);
}

// Another program may have changed the file since it was read.
void Preferences::Refresh(bool isLocked) {
  const std::string& path = platform::GetPlaces().preferencesFile;
  const auto stamp = platform::FileStamp::Of(path);
  if (isRead_ && path == path_ && stamp == stamp_) return;
  path_ = path;
  isRead_ = true;
  // Taken before reading: if the file is replaced meanwhile, the next call sees a difference and reads again.
  stamp_ = stamp;
  std::string problem = Read();
  if (!problem.empty()) {
    // Another program may have replaced the damaged file before we got the lock, so read again.
    std::error_code noLock;
    std::optional<platform::FileLock> lock;
    if (!isLocked) lock.emplace(path_, &noLock);
    if (!noLock) problem = Read();
    if (!problem.empty()) GiveUpFile(problem);
  }
}

// Returns what is wrong with the contents; empty if the file was read, does not exist or cannot be read.
std::string Preferences::Read() {
  isFileKept_ = false;
  std::string text;
  const std::error_code error = platform::ReadFile(path_, text);
  if (error == std::errc::no_such_file_or_directory) {
    values_ = Dictionary::Create();
    return "";
  }
  if (error) {
    isFileKept_ = true;
    Report(path_ + ": " + platform::DescribeError(error) + "; changes are not stored");
    return "";
  }
  const platform::PropertyListResult parsed = platform::ParseXMLPropertyList(text);
  const Dictionary read(parsed.value);
  if (!read) return parsed.error.empty() ? "the property list is no dictionary" : parsed.error;
  values_ = read;
  return "";
}

void Preferences::GiveUpFile(const std::string& problem) {
  constexpr int kMostKept = 1000;
  std::error_code error = std::make_error_code(std::errc::file_exists);
  std::string aside;
  for (int i = 1; error == std::errc::file_exists && i <= kMostKept; ++i) {
    aside = path_ + ".damaged" + (i == 1 ? "" : "-" + std::to_string(i));
    error = platform::MoveFile(path_, aside);
  }
  isFileKept_ = static_cast<bool>(error);
  Report(path_ + ": " + problem +
         (isFileKept_ ? "; changes are not stored"
                      : "; it was renamed to " + aside + ", and the preferences start empty"));
  values_ = Dictionary::Create();
}

Value Preferences::ValueOf(std::string_view key) {
  Refresh();
  return overrides_.Contains(key) ? overrides_.Get(key) : values_.Get(key);
}

int32_t Preferences::GetInteger(std::string_view key) {
  const Value value = ValueOf(key);
  if (const Boolean boolean(value); boolean) return boolean.IsTrue() ? 1 : 0;
  if (const String text(value); text) return platform::IntegerOfText(text.View());
  constexpr int64_t kLowest = std::numeric_limits<int32_t>::min(), kHighest = std::numeric_limits<int32_t>::max();
  return static_cast<int32_t>(std::clamp(Number(value).Integer(), kLowest, kHighest));
}

String Preferences::GetString(std::string_view key) { return String(ValueOf(key)); }

bool Preferences::Contains(std::string_view key) {
  Refresh();
  return values_.Contains(key);
}

void Preferences::Set(std::string_view key, const Value& value) {
  Dictionary values = Dictionary::Create();
  if (CanBeStored(key, value)) {
    values.Set(key, value);
  } else {
    Report("Preferences: a value for '" + std::string(key) + "' cannot be stored");
  }
  Change(values, "");
}

void Preferences::SetAll(const Dictionary& values) {
  Dictionary storable = Dictionary::Create();
  for (size_t i = 0; i < values.Count(); ++i) {
    const std::string_view key = values.KeyAt(i);
    if (CanBeStored(key, values.ValueAt(i))) {
      storable.Set(key, values.ValueAt(i));
    } else {
      Report("Preferences: a value for '" + std::string(key) + "' cannot be stored");
    }
  }
  Change(storable, "");
}

void Preferences::Remove(std::string_view key) { Change(Dictionary::Create(), key); }

void Preferences::Change(const Dictionary& values, std::string_view removed) {
  Refresh();
  const auto isChange = [&] {
    for (size_t i = 0; i < values.Count(); ++i) {
      if (!values.ValueAt(i).Equals(values_.Get(values.KeyAt(i)))) return true;
    }
    return !removed.empty() && values_.Contains(removed);
  };
  if (!isChange()) return;
  const std::error_code noFolder = platform::MakeFolder(FolderOf(path_), 0700);
  std::error_code noLock;
  const platform::FileLock lock(path_, &noLock);
  // Keep what another program wrote before we got the lock.
  if (!noLock) Refresh(true);
  for (size_t i = 0; i < values.Count(); ++i) values_.Set(values.KeyAt(i), values.ValueAt(i));
  if (!removed.empty()) values_.Remove(removed);
  if (noFolder || noLock) {
    Report(path_ + ": " + platform::DescribeError(noFolder ? noFolder : noLock) + "; changes are not stored");
    return;
  }
  Store();
}

void Preferences::Store() {
  if (isFileKept_) return;
  if (const std::error_code error = platform::ReplaceFile(path_, platform::CreateXMLPropertyList(values_))) {
    Report(path_ + ": " + platform::DescribeError(error) + "; the change is not stored");
    return;
  }
  stamp_ = platform::FileStamp::Of(path_);
}
