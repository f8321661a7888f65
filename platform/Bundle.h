// Loadable bundles: a folder Name.framework or Name.plugin that contains Info.plist (XML) and a shared object with the
// name of the folder without its extension. Create, WithIdentifier and Main are thread-safe; a bundle itself is used by
// one thread at a time.
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
  // Reads Info.plist but loads no code. The same folder returns the same object while a reference exists. Returns null,
  // with a reason in *error (may be null), if the folder or Info.plist is missing or malformed.
  static BundleRef Create(const std::string& folder, std::string* error = nullptr);
  // Returns the existing bundle with this CFBundleIdentifier, or null.
  static BundleRef WithIdentifier(std::string_view identifier);
  // The bundle of the running program: the folder of its executable, without an Info.plist. Its private frameworks are
  // in "Frameworks" beside the executable.
  static BundleRef Main();

  ~Bundle();
  const std::string& Folder() const { return folder_; }
  const std::string& Identifier() const { return identifier_; }
  const Dictionary& Info() const { return info_; }
  // The folder as a file URL: "file:///a%20b/Name.framework/", percent-encoded by RFC 3986, with a slash at the end.
  std::string URL() const;
  std::string ExecutablePath() const;
  std::string PrivateFrameworksFolder() const;  // folder + "/Frameworks"

  // Returns the text of a key in the bundle's strings table: the XML property list "Resources/TABLE.strings", a
  // dictionary of strings. Returns the key itself if the table or the key is missing. Reads the table at every call.
  std::string LocalizedString(const std::string& key, const std::string& table) const;

  // Loads the shared object and runs its static constructors. Returns true if it is loaded, otherwise false with a
  // reason in *error (may be null). Refuses a truncated file, which would crash the process.
  bool Load(std::string* error = nullptr);
  bool IsLoaded() const { return handle_ != nullptr; }
  // Returns the exported function with this name, loading the object first if necessary. Null if that fails. Valid
  // until Unload.
  void* FunctionForName(const char* name);
  // Unloads the object. Without this call the object stays loaded when the Bundle is destroyed.
  void Unload();

 private:
  Bundle(std::string folder, Dictionary info);
  std::string folder_;
  std::string identifier_;
  Dictionary info_;
  void* handle_ = nullptr;
};

}  // namespace platform
