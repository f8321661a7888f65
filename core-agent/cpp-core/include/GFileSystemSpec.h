// A path: a full path in UTF-8. Empty means no file.
#pragma once

#include <compare>
#include <string>
#include <vector>

#include "ErrorCodes.h"

class GFileSystemSpec {
 public:
  GFileSystemSpec() = default;
  // Removes a double quotation mark at either end, expands "~", and resolves a relative path against the current
  // folder. Empty if that folder or the home folder is unknown.
  GFileSystemSpec(const std::string& path);                                  // NOLINT: converts implicitly on purpose
  GFileSystemSpec(const char* path) : GFileSystemSpec(std::string(path)) {}  // NOLINT

  const std::string& GetFullPath() const { return mPath; }
  bool IsEmpty() const { return mPath.empty(); }
  // Returns 0x4000000, with the value unchanged, for a path that does not begin with "/". An empty path changes
  // nothing.
  TModuleErrorCode SetFullPath(const std::string& path);

  TModuleErrorCode AppendPathComponent(const std::string& component);
  void RemoveLastPathComponent();
  std::string GetLastPathComponent() const;
  std::string GetPathExtension() const;  // without the dot; may be empty
  void RemovePathExtension();
  TModuleErrorCode AppendPathExtension(const std::string& extension);  // 0x4000000 if there is no file name
  std::vector<std::string> GetPathComponents() const;
  // True if this path is below the folder.
  bool IsSubpath(const GFileSystemSpec& folder) const;
  // Returns this path relative to the folder, without a leading separator; empty if it is not below the folder.
  std::string GetSubPathFromSpec(const GFileSystemSpec& folder) const;

  friend auto operator<=>(const GFileSystemSpec&, const GFileSystemSpec&) = default;

 private:
  std::string mPath;
};
