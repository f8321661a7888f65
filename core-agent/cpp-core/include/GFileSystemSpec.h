// A path as a value: one full path in UTF-8; empty means no file.
#pragma once

#include <compare>
#include <string>
#include <vector>

#include "ErrorCodes.h"

class GFileSystemSpec {
 public:
  GFileSystemSpec() = default;
  // Takes a double quotation mark off at either end, expands "~", and sets a partial path below the current folder.
  // Empty if that folder or the home folder is not to be had.
  GFileSystemSpec(const std::string& path);  // NOLINT: a path given as text is meant to serve
  GFileSystemSpec(const char* path) : GFileSystemSpec(std::string(path)) {}  // NOLINT

  const std::string& GetFullPath() const { return mPath; }
  bool IsEmpty() const { return mPath.empty(); }
  // 0x4000000 for a path that does not begin with "/"; the value is unchanged then. An empty path changes nothing.
  TModuleErrorCode SetFullPath(const std::string& path);

  TModuleErrorCode AppendPathComponent(const std::string& component);
  void RemoveLastPathComponent();
  std::string GetLastPathComponent() const;
  std::string GetPathExtension() const;  // without the dot; empty if there is none
  void RemovePathExtension();
  TModuleErrorCode AppendPathExtension(const std::string& extension);  // 0x4000000 if there is no name to extend
  std::vector<std::string> GetPathComponents() const;
  // Whether this path lies below the other one.
  bool IsSubpath(const GFileSystemSpec& folder) const;
  // What stands behind the folder's path and a separator; empty if this is no subpath of it.
  std::string GetSubPathFromSpec(const GFileSystemSpec& folder) const;

  friend auto operator<=>(const GFileSystemSpec&, const GFileSystemSpec&) = default;

 private:
  std::string mPath;
};
