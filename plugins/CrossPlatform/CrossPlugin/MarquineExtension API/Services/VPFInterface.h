// Every message box, localized text and preference of the plug-in, through the user-interface framework, which is found
// and loaded at construction. Without a framework every method does nothing and gives its default. Main thread only.
//
// Code that may meet a null pointer holds it as a VPFInterfaceRef, through which every call is safe.
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
  bool isShared = false;  // the framework came from the fixed folder
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
  // Stands in for a null pointer: no framework, and none is looked for.
  VPFInterface();
  // With a table given: for tests.
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
  // A plug-in of the next generation in the same process knows its fonts itself: identification on, no best match.
  static bool isHostAppUsingNextGenPlugin();
  bool GetEnabledGlyphsure() const { return isHostAppUsingNextGenPlugin() || GetPreferenceForKey("EnableGlyphsure"); }
  bool GetPickBestMatch() const { return !isHostAppUsingNextGenPlugin() && GetPreferenceForKey("PickBestMatch"); }

  // Windows.
  void ShowAboutBox();
  void ShowPreferences();
  // The button, from 1; 1 without a framework. A null key is an absent text.
  int ShowMessageBox(const char* headerKey, const char* messageKey, int buttonSet) const;
  // Nonzero if confirmed; -1 without a framework.
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

  // Message boxes; one with two buttons is true when the first was chosen.
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
  // For the framework's own absence: a plain alert.
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

// A pointer to the shared interface, not owned, through which calls are safe when it is null.
class VPFInterfaceRef {
 public:
  VPFInterfaceRef(VPFInterface* interface = nullptr) : mInterface(interface) {}  // NOLINT: it stands for the pointer
  explicit operator bool() const { return mInterface != nullptr; }
  VPFInterface* operator->() const { return mInterface ? mInterface : Absent(); }
  VPFInterface* Get() const { return mInterface; }

 private:
  static VPFInterface* Absent();
  VPFInterface* mInterface;
};
