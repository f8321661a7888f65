// What the plug-in is, which host it serves, and whether it may work at all. Main thread only; the identifying calls are
// made once while the plug-in is loaded.
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

inline bool sPluginServicesEnabled = false;  // nothing has ruled the plug-in out
inline bool sConnectedToCore = false;        // the agent connection stands
inline bool sLoggedIn = false;
inline bool sUserHasWorkgroups = false;
inline bool sBulkReplicationRunning = false;
inline bool sIncrementalReplicationRunning = false;
inline bool sSuppressingHostAppDialogs = false;
inline bool sDisplayedSchemaError = false;

// The one test whether the plug-in may work: services enabled, logged in, and the user has workgroups.
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
std::string GetPluginBundleIdentifier();  // asserts that it was identified
std::string GetPluginBinaryPath();        // that of the identified bundle if no path was identified
// The last part of that path without its extension; a path without a separator (':', '\\', '/') stands as it is.
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
// The host's name for a plug-in's bundle identifier; empty for an unknown one.
std::string MapBundleIDtoHostApp(const std::string& bundleIdentifier);

// Created on first use. The interface is never deleted, CleanUpOnShutdown only forgets it.
VPFInterfaceRef GetSharedVPFInterface();
FontActivationTracker* GetSharedFontActivationTracker();

// Makes the host redraw the state of its front window. There is no such state on this platform, so it does nothing.
void BackgroundForegroundApp();
// Calls the function twice: hosts notice a changed font list only at the second look.
void RefreshActiveFontList(void (*function)(void*), void* context);
void CleanUpOnShutdown();

// Tests: every static back to its first state; an interface of their own, owned by the test, or none at all.
void ResetForTesting();
void SetSharedVPFInterfaceForTesting(VPFInterface* interface);
void SetNoVPFInterfaceForTesting();

}  // namespace MarquineGlobals
