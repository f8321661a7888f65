// The font manager as the rest of the plug-in sees it: default answers for every question, the one live manager, and the
// logic that does not depend on how the agent is reached. Statuses are signed, 0 for success, -1 for not supported. Main
// thread only.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Bridge/FontOrSetInfoRec.h"
#include "Bridge/OwnedPointer.h"
#include "ErrorCodes.h"
#include "GMutex.h"
#include "Identification/FontKeys.h"
#include "platform/Value.h"

class FontManagerInterface {
 public:
  using Array = platform::Array;
  using Dictionary = platform::Dictionary;
  using FontIDs = std::vector<uint32_t>;
  using ActivationStates = std::map<uint32_t, bool>;
  // Tells how far a batch is.
  using ProgressFunction = void (*)(int current, int maximum, const std::string& text, void* context);

  // Null until the connection is made and after shutdown. The agent's callback reads it on its own thread.
  static OwnedPointer<FontManagerInterface> sm_pFontManager;
  // Held through the whole of CompatibleFontManagerIsRunning and OnHostAppShuttingDown.
  static GMutex sm_Mutex;
  static bool sValidWorkgroupSelected;

  static constexpr int kAllWorkgroupsID = -2;
  static constexpr size_t kNameBufferSize = 128;  // bytes of a name that can be looked up, its end counted

  // Is a font manager there, loaded, and of a usable interface? The first call that finds the library makes the manager.
  // outBundleName may be null.
  static TModuleErrorCode CompatibleFontManagerIsRunning(const std::string** outBundleName, bool& outRunning);
  // The one manager, or null while there is none that is connected.
  static FontManagerInterface* ConnectedManager();
  static bool AutoActivationIsReady();
  static void OnHostAppShuttingDown(bool showProgress);
  // Asks the operating system, not the agent, for a font of this PostScript or family name.
  static bool IsFontActive(const std::string& name);
  static bool IsFontActive(const unsigned char* pascalName);
  static bool CheckSelectWorkgroup();

  virtual ~FontManagerInterface();
  virtual bool ConnectedToMarquine() { return false; }
  virtual bool ConnectedToMarquinePrime() { return false; }
  virtual bool ConnectedToCoreAgent() { return false; }
  virtual bool RunningStandalone() { return true; }
  virtual bool GoogleWebFontsEnabled() { return false; }
  virtual int DisconnectFromFontManager() { return 0; }
  virtual void OnServerConnectionLost() {}
  virtual bool IsFontManagerConnected() { return true; }
  virtual void SetFontManagerConnected(bool) {}
  virtual void DoEnableTCConnection() {}
  virtual bool FontManagerIsClientServer() { return true; }
  virtual int SetFontAutoActivationStatus(bool) { return 0; }
  virtual int FontIDsForPostScriptName(const std::string&, long, std::vector<uint64_t>&) { return -1; }
  virtual int FontIDsForFamilyName(const std::string&, long, std::vector<uint64_t>&) { return -1; }
  // True means that the agent still holds the font as activated for this client.
  virtual ActivationStates GetClientFontActivationStates(const FontIDs& ids);
  virtual ActivationStates GetFontIsActivated(const Array& fonts) = 0;
  virtual std::map<uint32_t, uint32_t> GetFontConflicts(const FontIDs&) { return {}; }
  virtual int ActivateFontByName(const std::string& name, long workgroupID, const std::string& documentIdentifier,
                                 unsigned long* outFontID);
  virtual int ActivateFontByID(const Dictionary& font, const std::string& documentIdentifier, void** handle) = 0;
  // activated and refused may be null handles; records are appended to those that are not.
  virtual int ActivateFontsByID(const Array& fonts, const std::string& documentIdentifier, void** handle,
                                Array activated, Array refused, ProgressFunction progress, void* context) = 0;
  virtual int DeactivateFont(const Dictionary& font, void* handle) = 0;
  virtual int DeactivateFonts(const Array& fonts, void* handle, Array deactivated, ProgressFunction progress,
                              void* context) = 0;
  virtual int EndActivationChange() { return 0; }
  virtual void BeginOpeningFontsForDocument(const std::string&) {}
  virtual void FinishOpeningFontsForDocument(const std::string&) {}
  virtual void FinishClosingFontsForDocument(const std::string&, bool) {}
  virtual int CountNamedFonts(const std::string& name, TypeOfFontName kind, long workgroupID, long* outCount,
                              std::string& scratch);
  // index from 1.
  virtual int GetNamedFontInfo(const std::string&, TypeOfFontName, long, long, std::string&, FontOrSetInfoRec*) {
    return -1;
  }
  virtual int GetFontInfoByID(const Dictionary&, FontOrSetInfoRec*) { return -1; }
  virtual int GetPostscriptNameByID(std::string&, int, unsigned) { return -1; }
  // The font's record as the XML text of a one-element array.
  virtual int GetGlyphsureInfo(unsigned, const Dictionary&, char*, unsigned long*) { return -1; }
  virtual int EndGetGlyphsureInfo(const std::string&) { return 0; }
  virtual int FindFontsInSameFamilyForActivation(const Dictionary&, const Array&, int, Array*) { return -1; }
  virtual int MakeSetForDocumentFonts(const platform::String&, const Array&) { return -1; }
  virtual int CollectFontsUsedByCurrentDocument(const std::string&, const std::string&, const Array&) { return -1; }
  virtual int ProcessNotifications() { return 0; }
  virtual bool AreSchemaVersionsInSync() { return true; }
  virtual int GetAllWorkgroupsForUser(Array* out, bool addAllWorkgroups, bool includeSpecial, bool flag) = 0;
  virtual bool CheckForWorkgroups() { return true; }
  virtual int SetDefaultWorkgroupID(int id);
  virtual int SetDefaultWorkgroupName(const platform::String& name);
  virtual platform::String GetDefaultWorkgroupName();
  virtual int GetWorkgroupID(const platform::String& name, int* outID);
  virtual platform::String GetWorkgroupNameFromID(long id);
  virtual int RemoveRemoteFonts(Array fonts) = 0;
  virtual int AddWorkgroupNamesToFonts(const Array& fonts);
  virtual platform::String FindWorkgroupIDGetName(long id, const Array& workgroups);
  virtual bool IsAllWorkgroups(int id) { return id == kAllWorkgroupsID; }
  virtual bool IsSelectedWorkgroupLocal() { return false; }
  virtual bool IsRemoteWorkgroupTypeDisabled(long) { return false; }
  virtual bool CanActivateFromAllWorkgroups() { return false; }
  virtual bool CanExportFromWorkgroup(const Array&) { return false; }
  virtual bool CannotExportFromSomeWorkgroup() { return false; }
  virtual bool IsRunning() { return false; }
  virtual bool IsLoggedIn() { return true; }
  virtual bool IsOnline() { return true; }
  virtual int GoOnline() { return -1; }
  virtual int GoOffline() { return -1; }
  virtual bool IsWindows() { return false; }
  virtual void DoOnlineOffline() {}
  virtual void SetCountForLongOperations(int) {}

  bool IsValidWorkgroupForUser(int id);
  bool UserHasAtLeastOneWorkgroup();
  int GetCurrentWorkgroupID();
  void InitializeDefaultWorkgroup();
  bool IsAllWorkgroupsSelected() { return IsAllWorkgroups(GetCurrentWorkgroupID()); }
  void HandleSelectWorkgroup();
  // Finds identification data for one document font: the database records of its name, best first. The result is the low
  // half of the status. *inOut must be an array.
  int16_t GetGlyphsureData(const Dictionary& record, TypeOfFontName kind, bool& excludedRemote, long workgroupID,
                           Array* inOut);
  int16_t GetGlyphsureDataForFontName(const char* name, TypeOfFontName kind, bool& excludedRemote, long workgroupID,
                                      Array* out);
  static std::string GetStringFromDictionary(const Dictionary& dictionary, std::string_view key);

  static void ResetForTesting();

 private:
  int SearchWithoutAdditions(const std::string& name, bool& excludedRemote, long workgroupID, Array* inOut);
  int AppendRecordOf(const FontOrSetInfoRec& found, const char* name, bool& excludedRemote, Array& result);

  static bool sSelectWorkgroupInProgress;  // the selection can run a modal loop
};
