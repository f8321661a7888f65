#include "GFileSystem.h"

#include <algorithm>
#include <filesystem>

#include "FailedCheck.h"
#include "GStringUtils.h"
#include "platform/Files.h"
#include "platform/Folders.h"

const std::string& GFileSystem::OSGetPathSeparator() {
  static const std::string sSeparator = "/";
  return sSeparator;
}

bool GFileSystem::OSDoesFileExist(const GFileSystemSpec& spec) { return platform::FileExists(spec.GetFullPath()); }

TModuleErrorCode GFileSystem::OSGetUsersRootDirectory(GFileSystemSpec& spec) {
  const std::string& home = platform::GetPlaces().home;
  RETURN_IF("FileSystem", home.empty(), CoreErrorCodes::kNullPointer);
  return spec.SetFullPath(home);
}

TModuleErrorCode GFileSystem::OSExpandPath(std::string& path) {
  if (path != "~" && !path.starts_with("~/")) return CoreErrorCodes::kSuccess;
  const std::string& home = platform::GetPlaces().home;
  RETURN_IF("FileSystem", home.empty(), CoreErrorCodes::kNullPointer);
  path.replace(0, 1, home);
  return CoreErrorCodes::kSuccess;
}

bool GFileSystem::OSIsValidFullPath(const std::string& path) { return path.starts_with("/"); }
bool GFileSystem::OSIsPartialPath(const std::string& path) { return !path.empty() && !OSIsValidFullPath(path); }

std::string GFileSystem::OSGetCWD() {
  std::error_code error;
  return std::filesystem::current_path(error).string();
}

namespace {

std::string WithoutTrailingSeparators(std::string path) {
  while (!path.empty() && path.back() == '/') path.pop_back();
  return path;
}

std::string WithoutSeparatorsAround(const std::string& component) {
  const std::string head = WithoutTrailingSeparators(component);
  const size_t start = head.find_first_not_of('/');
  return start == std::string::npos ? "" : head.substr(start);
}

// The position of the extension's dot in the last component, or npos. A leading dot is part of the name.
size_t ExtensionDot(const std::string& path) {
  const size_t name = path.rfind('/') + 1;
  const size_t dot = path.rfind('.');
  return dot == std::string::npos || dot <= name ? std::string::npos : dot;
}

}  // namespace

GFileSystemSpec::GFileSystemSpec(const std::string& path) {
  std::string bare = GStringUtils::StripTrailingString(GStringUtils::StripPrecedingString(path, "\""), "\"");
  if (GFileSystem::OSExpandPath(bare) != CoreErrorCodes::kSuccess) return;
  if (!GFileSystem::OSIsPartialPath(bare)) {
    SetFullPath(bare);
    return;
  }
  const std::string current = GFileSystem::OSGetCWD();
  if (!current.empty() && SetFullPath(current) == CoreErrorCodes::kSuccess) AppendPathComponent(bare);
}

TModuleErrorCode GFileSystemSpec::SetFullPath(const std::string& path) {
  std::string expanded = path;
  PASS_ON_ERROR(GFileSystem::OSExpandPath(expanded));
  if (expanded.empty()) return CoreErrorCodes::kSuccess;
  RETURN_IF("FileSystem", !GFileSystem::OSIsValidFullPath(expanded), CoreErrorCodes::kInvalidParam);
  mPath = expanded;
  return CoreErrorCodes::kSuccess;
}

TModuleErrorCode GFileSystemSpec::AppendPathComponent(const std::string& component) {
  const std::string bare = WithoutSeparatorsAround(component);
  if (bare.empty()) return CoreErrorCodes::kSuccess;
  return SetFullPath(WithoutTrailingSeparators(mPath) + GFileSystem::OSGetPathSeparator() + bare);
}

void GFileSystemSpec::RemoveLastPathComponent() {
  const std::string path = WithoutTrailingSeparators(mPath);
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return;
  mPath = slash == 0 ? "/" : path.substr(0, slash);
}

std::string GFileSystemSpec::GetLastPathComponent() const {
  const std::string path = WithoutTrailingSeparators(mPath);
  return path.substr(path.rfind('/') + 1);
}

std::string GFileSystemSpec::GetPathExtension() const {
  const size_t dot = ExtensionDot(mPath);
  return dot == std::string::npos ? "" : mPath.substr(dot + 1);
}

void GFileSystemSpec::RemovePathExtension() {
  const size_t dot = ExtensionDot(mPath);
  if (dot != std::string::npos) mPath.erase(dot);
}

TModuleErrorCode GFileSystemSpec::AppendPathExtension(const std::string& extension) {
  return SetFullPath(WithoutTrailingSeparators(mPath) + "." + GStringUtils::StripPrecedingString(extension, "."));
}

std::vector<std::string> GFileSystemSpec::GetPathComponents() const {
  std::vector<std::string> components;
  GStringUtils::OSTokenizeString(mPath, "/", components);
  return components;
}

bool GFileSystemSpec::IsSubpath(const GFileSystemSpec& folder) const {
  const std::string above = WithoutTrailingSeparators(folder.mPath) + "/";
  return !folder.IsEmpty() && mPath.size() > above.size() && mPath.starts_with(above);
}

std::string GFileSystemSpec::GetSubPathFromSpec(const GFileSystemSpec& folder) const {
  return IsSubpath(folder) ? mPath.substr(WithoutTrailingSeparators(folder.mPath).size() + 1) : "";
}
