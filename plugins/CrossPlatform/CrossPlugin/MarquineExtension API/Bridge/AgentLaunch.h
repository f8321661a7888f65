// Finds and starts the agent, with small helpers for processes and files. Only ShowSaveFolderDialog and ShowMessage
// show anything to the user.
#pragma once

#include <chrono>
#include <string>

#include "ErrorCodes.h"
#include "platform/Bundle.h"

// Starts the agent that the launch configuration names, whether or not one is running. Returns 0, or -1 if it could not
// be started. outFolder receives the executable's folder, ending in "/"; it may be null.
int FindAndLaunchNexcore(std::string* outFolder);

// Finds the folder of a running program, ending in "/". Returns 0, or CoreErrorCodes::kUnknownError with outFolder
// unchanged.
TModuleErrorCode GetPathToRunningProcessExe(const std::string& name, std::string& outFolder);

// The same for a program that was just launched: waits until it has announced itself, at most 5 seconds unless a test
// sets another time.
TModuleErrorCode AwaitPathToRunningProcessExe(const std::string& name, std::string& outFolder);
void SetAnnouncementPatienceForTesting(std::chrono::milliseconds patience);

// Reads a file in a folder of the user's Library. Sets `out` to the text after the "=" of the first line that contains
// the key and an "=". Returns 0 or CoreErrorCodes::kUnknownError.
TModuleErrorCode GetConfiguredPath(const std::string& folder, const std::string& file, const std::string& key,
                                   std::string& out);

// Copies a string field of a bundle's Info.plist to a buffer of `size` bytes. Returns false, with the buffer unchanged,
// if there is no such bundle or field or if the text and its NUL do not fit. The second form reads the version.
bool ReadFieldFromVersionResource(const char* path, const char* key, unsigned long size, char* out);
bool ReadVersionResource(const char* path, unsigned long size, char* out);

bool FileExistsAtPath(const char* path);
// Sets outPID to the process of a running bundle. Returns CoreErrorCodes::kNotFound at once if it is not running;
// waiting would hang the host.
TModuleErrorCode GetProcessID(const std::string& bundleID, int& outPID);
// Always CoreErrorCodes::kNotSupported: this desktop has no front program.
TModuleErrorCode SetFrontApplication(int pid);

// Asks the user for a folder to write to. Offers nameFormat as the name, with the document's name in place of its "%@".
// Returns 0 with an absolute path in outPath, which need not exist, or -1 if the user cancels.
int ShowSaveFolderDialog(const std::string& documentName, std::string& outPath, const std::string& title,
                         const std::string& message, const std::string& nameFormat);
void ShowMessage(const std::string& text);

// Returns the loaded bundle with this identifier, or null.
platform::BundleRef GetBundleWithIdentifierReliably(const std::string& identifier);
// Returns a bundle of the private frameworks folder of the plug-in's bundle, or null if it is not there.
platform::BundleRef LoadPrivateFramework(const std::string& pluginBundleIdentifier, const std::string& name);
void ForgetPrivateFrameworksFolderForTesting();
