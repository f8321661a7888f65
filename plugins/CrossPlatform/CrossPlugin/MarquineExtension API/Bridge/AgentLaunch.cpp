#include "Bridge/AgentLaunch.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "GConfigurationFile.h"
#include "Services/DiagnosticLog.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Presenter.h"
#include "platform/Process.h"
#include "platform/Trace.h"
#include "platform/Waiting.h"

namespace {

constexpr const char* kCompanyFolder = "Velorant";
constexpr const char* kLaunchConfigurationName = "com.velorant.Nexcore-LaunchInfo.conf";

std::string InCompanyFolder(const std::string& libraryFolder) {
  GFileSystemSpec spec(libraryFolder);
  spec.AppendPathComponent(kCompanyFolder);
  spec.AppendPathComponent(kLaunchConfigurationName);
  return spec.GetFullPath();
}

std::string FindLaunchConfiguration() {
  const std::string local = InCompanyFolder(platform::LocalLibraryFolder());
  return FileExistsAtPath(local.c_str()) ? local : InCompanyFolder(platform::UserLibraryFolder());
}

// Returns the path of the launched executable, empty on failure.
std::string LaunchConfigured(const std::string& configuration) {
  OutputIndentedAndFormattedString(0, "Will attempt to open '%s'", configuration.c_str());
  if (!FileExistsAtPath(configuration.c_str())) {
    OutputIndentedAndFormattedString(0, "Could not find Nexcore-LaunchInfo.conf");
    return "";
  }
  GConfigurationFile::Values values;
  GConfigurationFile::ParseFile(configuration, values);
  std::string executable = values["nexcore.path"];
  if (!platform::IsExecutableFile(executable)) return "";
  std::string error;
  // The whole text is one argument; it is not split.
  if (!platform::LaunchDetached(executable, values["nexcore.args"], "", &error)) {
    platform::ReportProblem(error);
    return "";
  }
  return executable;
}

}  // namespace

int FindAndLaunchNexcore(std::string* outFolder) {
  TracedCall traced(__func__);
  const std::string executable = LaunchConfigured(FindLaunchConfiguration());
  if (executable.empty()) {
    traced.End("Could not launch Nexcore");
    return -1;
  }
  if (outFolder) {
    GFileSystemSpec folder(executable);
    folder.RemoveLastPathComponent();
    *outFolder = folder.GetFullPath() + "/";
  }
  return 0;
}

TModuleErrorCode GetPathToRunningProcessExe(const std::string& name, std::string& outFolder) {
  const platform::String wanted = platform::UniqueString(name);
  TModuleErrorCode result = CoreErrorCodes::kUnknownError;
  for (const platform::RunningApplication& application : platform::RunningApplications()) {
    // Compares the interned string objects, not their characters. The last match wins.
    if (!(application.localizedName == wanted)) continue;
    if (application.executablePath.size() <= name.size()) continue;
    outFolder = application.executablePath.substr(0, application.executablePath.size() - name.size());
    result = CoreErrorCodes::kSuccess;
  }
  return result;
}

namespace {
std::chrono::milliseconds sAnnouncementPatience{5000};
}  // namespace

TModuleErrorCode AwaitPathToRunningProcessExe(const std::string& name, std::string& outFolder) {
  TModuleErrorCode result = CoreErrorCodes::kUnknownError;
  platform::WaitUntil(sAnnouncementPatience, [&] {
    result = GetPathToRunningProcessExe(name, outFolder);
    return result == CoreErrorCodes::kSuccess;
  });
  return result;
}

void SetAnnouncementPatienceForTesting(std::chrono::milliseconds patience) { sAnnouncementPatience = patience; }

TModuleErrorCode GetConfiguredPath(const std::string& folder, const std::string& file, const std::string& key,
                                   std::string& out) {
  std::string text;
  if (platform::ReadFile(platform::UserLibraryFolder() + "/" + folder + "/" + file, text)) {
    return CoreErrorCodes::kUnknownError;
  }
  for (size_t start = 0; start < text.size();) {
    const size_t end = std::min(text.find('\n', start), text.size());
    const std::string line = text.substr(start, end - start);
    const size_t equals = line.find('=');
    if (line.find(key) != std::string::npos && equals != std::string::npos) {
      const std::string value = line.substr(equals + 1);
      out = value.substr(0, value.find('\r'));
      return CoreErrorCodes::kSuccess;
    }
    start = end + 1;
  }
  return CoreErrorCodes::kUnknownError;
}

bool ReadFieldFromVersionResource(const char* path, const char* key, unsigned long size, char* out) {
  const platform::BundleRef bundle = platform::Bundle::Create(path);
  OutputIndentedAndFormattedString(0, "CFBundleCreate() returned 0x%08x on attempt to load plug-in interface from '%s'",
                                   LowBits(bundle.get()), path);
  if (!bundle || !out || size == 0) return false;
  const platform::String value = bundle->Info().GetString(key);
  if (!value || value.View().size() >= size) return false;
  std::memcpy(out, value.CString(), value.View().size() + 1);
  return true;
}

bool ReadVersionResource(const char* path, unsigned long size, char* out) {
  return ReadFieldFromVersionResource(path, "CFBundleShortVersionString", size, out);
}

bool FileExistsAtPath(const char* path) {
  const bool exists = path && platform::FileExists(path);
  OutputIndentedAndFormattedString(0, "%s('%s') returning %d", __func__, path ? path : "", exists);
  return exists;
}

TModuleErrorCode GetProcessID(const std::string& bundleID, int& outPID) {
  for (const platform::RunningApplication& application : platform::RunningApplications()) {
    if (application.identifier != bundleID) continue;
    outPID = application.processID;
    return CoreErrorCodes::kSuccess;
  }
  return CoreErrorCodes::kNotFound;
}

TModuleErrorCode SetFrontApplication(int) { return CoreErrorCodes::kNotSupported; }

namespace {

// Resolves what a user types at a prompt: "~" is the home folder, relative paths start at the current folder.
std::string AbsolutePath(const std::string& typed) {
  std::string path = typed;
  const char* home = std::getenv("HOME");
  if (home && (path == "~" || path.starts_with("~/"))) path.replace(0, 1, home);
  std::error_code error;
  const std::filesystem::path absolute = std::filesystem::absolute(path, error);
  return error ? path : absolute.lexically_normal().string();
}

}  // namespace

int ShowSaveFolderDialog(const std::string& documentName, std::string& outPath, const std::string& title,
                         const std::string& message, const std::string& nameFormat) {
  std::string name = nameFormat;
  replaceAll(name, "%@", documentName);
  platform::Dictionary box = platform::Dictionary::Create();
  box.Set("Kind", "save-folder");
  box.Set("Header", title);
  box.Set("Message", message);
  box.Set("Default", name);
  const platform::Dictionary answer = platform::RunBox(box);
  const std::string chosen = answer.GetString("Text").Text();
  if (answer.GetInteger("Button") != 1 || chosen.empty()) return -1;
  outPath = AbsolutePath(chosen);
  return 0;
}

void ShowMessage(const std::string& text) {
  platform::Dictionary box = platform::Dictionary::Create();
  box.Set("Kind", "message");
  box.Set("Message", text);
  platform::RunBox(box);
}

platform::BundleRef GetBundleWithIdentifierReliably(const std::string& identifier) {
  return platform::Bundle::WithIdentifier(identifier);
}

namespace {
std::string sPrivateFrameworksFolder;  // stays empty until the plug-in's bundle is found
}

void ForgetPrivateFrameworksFolderForTesting() { sPrivateFrameworksFolder.clear(); }

platform::BundleRef LoadPrivateFramework(const std::string& pluginBundleIdentifier, const std::string& name) {
  if (sPrivateFrameworksFolder.empty()) {
    const platform::BundleRef plugin = GetBundleWithIdentifierReliably(pluginBundleIdentifier);
    if (!plugin) return nullptr;
    sPrivateFrameworksFolder = plugin->PrivateFrameworksFolder();
  }
  return platform::Bundle::Create(sPrivateFrameworksFolder + "/" + name);
}
