// The identity of the plug-in and of its host, and whether the plug-in may work. Main thread only. Call the Identify
// functions once while the plug-in is loaded.
#pragma once

#include <string>

#include "Services/VPFInterface.h"
#include "platform/Value.h"

class FontActivationTracker;

namespace MarquineGlobals {

// The kind of host program, as the plug-in announces it to the agent (InitAppInstance).
enum class HostType : int {
  kUnknown = 0,
  kPhotoshop = 2,
  kIllustrator = 3,
  kInDesign = 4,
  kInCopy = 5,
  kQuark = 6,  // never produced
  kAfterEffects = 7,
};

inline bool sPluginServicesEnabled = false;  // no failure has switched the plug-in off
inline bool sConnectedToCore = false;        // connected to the agent
inline bool sLoggedIn = false;
inline bool sUserHasWorkgroups = false;
inline bool sBulkReplicationRunning = false;
inline bool sIncrementalReplicationRunning = false;
inline bool sSuppressingHostAppDialogs = false;
inline bool sDisplayedSchemaError = false;

// True if the plug-in may work: services are enabled, the user is logged in and has workgroups.
bool ArePluginServicesEnabled();
void SetPluginServicesEnabled(bool enabled);
void SetConnectedToCore(bool connected);
void SetLoggedIn(bool loggedIn);
void SetUserHasWorkgroups(bool hasWorkgroups);
void SetBulkReplicationRunning(bool running);
void SetIncrementalReplicationRunning(bool running);
void SetDisplayedSchemaError(bool displayed);
bool GetDisplayedSchemaError();
void SetSuppressingHostAppDialogs(bool suppressing);
bool GetSuppressingHostAppDialogs();

// Set once while the plug-in is loaded.
void IdentifyPluginHostApp(const platform::String& hostApp);
void IdentifyPluginHostAppVersionPrefix(const platform::String& prefix);
void IdentifyPluginHostAppMinimumVersion(const platform::String& version);
void IdentifyPluginVersion(const platform::String& version);
void IdentifyPluginBundleID(const std::string& identifier);
void IdentifyPluginInterfaceVersion(const platform::String& version);
void IdentifyPluginBinaryPath(const std::string& path);

platform::String GetPluginHostApp();
std::string GetPluginHostAppMinimumVersion();  // empty if unset
platform::String GetPluginVersion();
platform::String GetPluginInterfaceVersion();
std::string GetPluginBundleIdentifier();  // asserts that it is set
std::string GetPluginBinaryPath();        // the identified bundle's path if none is set
// The last component of that path without its extension. A path without a separator (':', '\\', '/') is returned
// unchanged.
std::string GetPluginFileName();
std::string GetHostAppCategory();  // two letters; asserts a known host
bool HostAppIsInCopy();
bool HostAppIsInDesign();
bool HostAppIsPhotoshop();
bool HostAppIsIllustrator();
bool HostAppIsAfterEffects();
bool HostAppIsQuark();
HostType GetHostTypeFromHostAppID(const platform::String& hostAppID);
HostType GetHostTypeFromHostAppID(const std::string& hostAppID);
// Maps a plug-in's bundle identifier to the host's name. Empty for an unknown one.
std::string MapBundleIDtoHostApp(const std::string& bundleIdentifier);

// Created on first use. The interface is never deleted; CleanUpOnShutdown only forgets it.
VPFInterfaceRef GetSharedVPFInterface();
FontActivationTracker* GetSharedFontActivationTracker();

// Does nothing. On other platforms it makes the host redraw the state of its front window.
void BackgroundForegroundApp();
// Calls the function twice, because hosts notice a changed font list only at the second call.
void RefreshActiveFontList(void (*function)(void*), void* context);
void CleanUpOnShutdown();

// For tests: the first resets all statics; the others set an interface that the test owns, or none.
void ResetForTesting();
void SetSharedVPFInterfaceForTesting(VPFInterface* interface);
void SetNoVPFInterfaceForTesting();

}  // namespace MarquineGlobals
