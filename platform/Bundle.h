// Loadable bundles: a folder Name.framework or Name.plugin that holds Info.plist (XML) and a shared object
// named like the folder without its extension. Creating and finding are for any thread, a bundle itself for one at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/Value.h"

namespace platform {

class Bundle;
using BundleRef = std::shared_ptr<Bundle>;

class PLATFORM_API Bundle {
 public:
  // Reads Info.plist; null with a reason in *error (may be null) if folder or Info.plist are missing or malformed.
  // Nothing is loaded yet. The same folder gives the same object as long as one is held.
  static BundleRef Create(const std::string& folder, std::string* error = nullptr);
  // Among the bundles created and still held: the one whose CFBundleIdentifier is this.
  static BundleRef WithIdentifier(std::string_view identifier);
  // The bundle of the running program: the folder of its executable, with no Info.plist. Its private frameworks
  // stand in "Frameworks" beside the executable.
  static BundleRef Main();

  ~Bundle();
  const std::string& Folder() const { return folder_; }
  const std::string& Identifier() const { return identifier_; }
  const Dictionary& Info() const { return info_; }
  // The folder as a file URL: "file:///a%20b/Name.framework/", percent-encoded as RFC 3986 says, with a slash at the end.
  std::string URL() const;
  std::string ExecutablePath() const;
  std::string PrivateFrameworksFolder() const;  // folder + "/Frameworks"

  // The text of a key in the bundle's own strings table: the XML property list "Resources/TABLE.strings", a dictionary
  // of strings. The key itself where table or key are missing. Read anew at each call.
  std::string LocalizedString(const std::string& key, const std::string& table) const;

  // Loads the shared object with its static constructors; true if it is loaded. A failure says why in *error.
  bool Load(std::string* error = nullptr);
  bool IsLoaded() const { return handle_ != nullptr; }
  // The exported function of this name, loading the object if need be; null if there is none.
  void* FunctionForName(const char* name);
  // The object stays mapped when the Bundle goes, unless it is unloaded here.
  void Unload();

 private:
  Bundle(std::string folder, Dictionary info);
  std::string folder_;
  std::string identifier_;
  Dictionary info_;
  void* handle_ = nullptr;
};

}  // namespace platform
