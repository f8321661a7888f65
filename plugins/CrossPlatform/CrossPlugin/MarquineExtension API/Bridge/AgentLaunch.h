// Finding and starting the agent, and the small process and file utilities around it. Nothing here shows anything to the
// user, except the two that are boxes.
#pragma once

#include <chrono>
#include <string>

#include "ErrorCodes.h"
#include "platform/Bundle.h"

// Starts the agent as its launch configuration says, without a look whether it runs already. 0 launched, -1 not. outFolder
// may be null; it receives the executable's folder, ending in "/".
int FindAndLaunchNexcore(std::string* outFolder);

// The folder of a running program, ending in "/". 0 or CoreErrorCodes::kUnknownError.
TModuleErrorCode GetPathToRunningProcessExe(const std::string& name, std::string& outFolder);

// The same for a program that was launched a moment ago: waits until it has announced itself, but not longer than a few
// seconds (or what a test says).
TModuleErrorCode AwaitPathToRunningProcessExe(const std::string& name, std::string& outFolder);
void SetAnnouncementPatienceForTesting(std::chrono::milliseconds patience);

// The value of the first line that holds the key and an "=", in a file of the user's Library folder.
TModuleErrorCode GetConfiguredPath(const std::string& folder, const std::string& file, const std::string& key,
                                   std::string& out);

// Copies a string field of a bundle's Info.plist to a buffer of `size` bytes. Returns false, with the buffer unchanged, if
// there is no such bundle or field or if the text and its NUL do not fit. The second form reads the version.
bool ReadFieldFromVersionResource(const char* path, const char* key, unsigned long size, char* out);
bool ReadVersionResource(const char* path, unsigned long size, char* out);

bool FileExistsAtPath(const char* path);
// Only for a program that runs. Without one it gives CoreErrorCodes::kNotFound, as looking on would hang the host.
TModuleErrorCode GetProcessID(const std::string& bundleID, int& outPID);
// There is no front program among the programs of this desktop: CoreErrorCodes::kNotSupported.
TModuleErrorCode SetFrontApplication(int pid);

// Asks for a folder to write to. nameFormat, with the document's name for its one "%@", is the name offered. Returns 0
// and an absolute path in outPath (it need not exist), or -1 if the user cancels.
int ShowSaveFolderDialog(const std::string& documentName, std::string& outPath, const std::string& title,
                         const std::string& message, const std::string& nameFormat);
void ShowMessage(const std::string& text);

// The bundle of an identifier, looked up once; null if there is none.
platform::BundleRef GetBundleWithIdentifierReliably(const std::string& identifier);
// A bundle in the private frameworks folder of the plug-in's own bundle; null if it is not there.
platform::BundleRef LoadPrivateFramework(const std::string& pluginBundleIdentifier, const std::string& name);
void ForgetPrivateFrameworksFolderForTesting();
