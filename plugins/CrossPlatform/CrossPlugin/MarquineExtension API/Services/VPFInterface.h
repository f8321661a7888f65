// All message boxes, localized texts and preferences of the plug-in, through the user-interface framework. The
// constructor finds and loads the framework. Without it every method does nothing and returns its default. Main thread
// only.
//
// Code that may have a null pointer holds it as a VPFInterfaceRef, whose calls are safe.
//
// Sources: Bridge/VPFInterfaceFramework.cpp (finding the framework, and boxes that ask for the agent's edition),
// VPFInterface.cpp (the rest).
#pragma once

#include <string>

#include "Services/ProgressProperties.h"
#include "Services/VPFDictionary.h"
#include "frameworks/VelorantPlugins/include/UIFramework.h"
#include "platform/Bundle.h"

inline constexpr const char* kVPFPreference_PhotoshopRMFDelayMilliseconds = "RMF5";
inline constexpr int kPhotoshopDefaultRMFDelayMilliseconds = 4000;

struct VPFFunctionTable {
  platform::BundleRef bundle;
  bool isShared = false;  // loaded from the fixed folder
#define UI_FRAMEWORK_MEMBER(name, result, parameters) result(*pf##name) parameters = nullptr;
  UI_FRAMEWORK_FUNCTIONS(UI_FRAMEWORK_MEMBER)
#undef UI_FRAMEWORK_MEMBER
};

class VPFInterface {
 public:
  enum EUIStatus : int {
    kLoaded = 0,
    kInitializationFailed = 1,
    kNotFound = 2,
    kVersionNotCompatible = 3,
    kNoURL = 4,
    kLoading = 5,
  };

  VPFInterface(const platform::String& hostApp, const platform::String& pluginVersion,
               const std::string& pluginBundleIdentifier, const platform::String& pluginInterfaceVersion);
  // Used in place of a null pointer: has no framework and searches for none.
  VPFInterface();
  // For tests: uses the given table.
  explicit VPFInterface(std::unique_ptr<VPFFunctionTable> table);
  ~VPFInterface();
  VPFInterface(const VPFInterface&) = delete;
  VPFInterface& operator=(const VPFInterface&) = delete;

  bool IsValid() const { return mTable && mTable->bundle; }
  bool IsShared() const { return mTable && mTable->isShared; }
  EUIStatus GetUIStatus() const { return mStatus; }
  void DestroyFramework();
  void SetOsSpecificUiData(void*) {}
  int UpdatePluginDetails(const VPFDictionary&) { return 0; }
  void SetFontManagerBundleName(const std::string& name);

  std::string LocalizedString(const char* key) const;

  // Preferences.
  bool GetPreferenceForKey(const char* key) const;
  void SetPreferenceForKey(const char* key, bool value);
  int GetLongPreferenceForKey(const char* key) const;
  void SetLongPreferenceForKey(const char* key, int value);
  platform::String GetStringPreferenceForKey(const char* key) const;
  void SetStringPreferenceForKey(const char* key, const char* value);
  bool DoPreferencesExist() const;
  int GetCurrentWorkgroupID() const { return GetLongPreferenceForKey("CurrentWorkgroup"); }
  void SetCurrentWorkgroupID(int id) { SetLongPreferenceForKey("CurrentWorkgroup", id); }
  bool GetEnabledAutoActivationPref() const { return GetPreferenceForKey("EnablePlugin"); }
  bool GetSupportEmbeddedObjects() const { return GetPreferenceForKey("SupportEmbeddedObjects"); }
  bool GetCloseFontsOnHostAppQuit() const { return GetPreferenceForKey("CloseFontsOnHostAppQuit"); }
  bool GetCloseFontsOnDocClose() const { return GetPreferenceForKey("CloseFontsOnDocClose"); }
  bool GetActivateEntireFamily() const { return GetPreferenceForKey("ActivateEntireFamilies"); }
  bool GetActivateGlobally() const { return GetPreferenceForKey("ActivateGlobally"); }
  bool GetActivateLocally() const { return GetPreferenceForKey("ActivateLocally"); }
  bool GetEnabledLoggingPref() const { return GetPreferenceForKey("EnableLogging"); }
  bool GetSuppressHostAppDialogs() const { return GetPreferenceForKey("SuppressHostAppDialogs"); }
  bool GetSuppressPluginCoreDialogs() const { return GetPreferenceForKey("SuppressPluginCoreDialogs"); }
  // If a next-generation plug-in runs in the same process, it identifies fonts itself: identification counts as on and
  // pick-best-match as off.
  static bool isHostAppUsingNextGenPlugin();
  bool GetEnabledGlyphsure() const { return isHostAppUsingNextGenPlugin() || GetPreferenceForKey("EnableGlyphsure"); }
  bool GetPickBestMatch() const { return !isHostAppUsingNextGenPlugin() && GetPreferenceForKey("PickBestMatch"); }

  // Windows.
  void ShowAboutBox();
  void ShowPreferences();
  // Returns the button, from 1; 1 without a framework. A null key means no text.
  int ShowMessageBox(const char* headerKey, const char* messageKey, int buttonSet) const;
  // Returns nonzero if the user confirmed; -1 without a framework.
  int AskForOneString(const std::string& prompt, const std::string& label, const std::string& initial,
                      std::string& out);
  void ShowResolveFonts(const platform::Array& problemFonts);
  void ShowRestrictedFonts(const platform::Array& fonts);
  int ShowSelectWorkgroup(const platform::Array& workgroups);
  int ShowCommandBox(const platform::Dictionary& box, int& workgroupID);
  void ShowMissingFonts(const platform::Dictionary& box);
  void ForceSelectWorkgroupWindowToFront();
  void ShowProgress(const ProgressProperties& progress);
  void UpdateProgress(const ProgressProperties& progress);
  void HideProgress();
  void SetIsOnline(bool isOnline);

  // Message boxes. Those that return bool have two buttons and return true for the first.
  void ShowFontManagerNotFoundMessageBox();
  void ShowMarquineOldVersionMessageBox();
  void ShowConnectionLostMessageBox();
  bool ShowNotLoggedInMessageBox(bool offerLogin);
  bool ShowLoggedOffMessageBox(bool offerLogin);
  bool ShowCoreAgentMissingMessageBox();
  void ShowGoOnlineErrorMessageBox();
  void ShowMustBeOnlineMessageBox();
  bool ShowSomeFontsOfflineMessageBox();
  void ShowNoWorkgroupsMessageBox();
  void ShowCannotExportMessageBox();
  bool ShowFontsMissingForExportMessageBox(bool offline);
  void ShowSetNameTooLongMessageBox();
  void ShowCoreAgentOutOfSyncMessageBox();
  void ShowVaultClosedMessage();
  void ShowVaultNeedsUpgradeMessage();
  void ShowSomeLayersMissingFontsMessage();
  void ShowVaultInUseMessage(const std::string& path);
  void ShowVaultNotAvailableMessage(const std::string& path);
  // Shown if the framework itself is missing: a plain alert.
  static void ShowVPFNotFoundMessageBox();

 private:
  void InitializeFramework(const std::string& pluginBundleIdentifier);
  platform::BundleRef FindFramework(const std::string& pluginBundleIdentifier);
  bool StartFramework();
  void ShowFormattedVaultMessage(const char* key, const std::string& path);

  EUIStatus mStatus = kLoading;
  bool mInitialized = false;
  VPFDictionary mHostDetails;
  std::unique_ptr<VPFFunctionTable> mTable;
};

// A non-owning pointer to the shared interface. Calls through it are safe even if it is null.
class VPFInterfaceRef {
 public:
  VPFInterfaceRef(VPFInterface* interface = nullptr) : mInterface(interface) {}  // NOLINT: acts as a pointer
  explicit operator bool() const { return mInterface != nullptr; }
  VPFInterface* operator->() const { return mInterface ? mInterface : Absent(); }
  VPFInterface* Get() const { return mInterface; }

 private:
  static VPFInterface* Absent();
  VPFInterface* mInterface;
};
