// The font manager as the rest of the plug-in sees it: an abstract base with a default answer for every question, the
// one live manager, and the logic that does not depend on how the agent is reached. CoreAgentInterface is the
// implementation.
//
// Threads    Main thread only, except that the agent's callback reads sm_pFontManager on its own thread. Most calls ask
//            the agent and block until it replies (see PluginInterface.h).
// Results    An int status is 0 for success and -1 for failure or "not supported", unless noted. Nothing throws.
// Values     Arguments are borrowed. Out values that are handles (Array, Dictionary) share ownership with the caller.
//            An array passed as `activated`, `refused` or `deactivated` is created by the caller and appended to.
// Records    A font record is a dictionary with the kGS_... keys of Identification/FontKeys.h. A record that identifies
//            a font to the agent needs kGS_DatabaseIDKey, the font ID as decimal text.
// Workgroups 0 means none, kAllWorkgroupsID means all.
// Not used   `documentIdentifier`, `handle`, `scratch`, `progress` and `context` are part of the class's form. The
//            implementation ignores them; pass an empty string or null.
// Sources    FontManagerWorkgroups.cpp here. Above this floor: Identification/FontManagerSearch.cpp
//            (GetGlyphsureData...), Tracking/FontManagerLifecycle.cpp (creating and deleting the manager).
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
  using ActivationStates = std::map<uint32_t, bool>;  // by font ID
  using ProgressFunction = void (*)(int current, int maximum, const std::string& text, void* context);

  // The live manager. Null until CompatibleFontManagerIsRunning creates it and after OnHostAppShuttingDown.
  static OwnedPointer<FontManagerInterface> sm_pFontManager;
  // Locked for the whole of CompatibleFontManagerIsRunning and OnHostAppShuttingDown.
  static GMutex sm_Mutex;
  static bool sValidWorkgroupSelected;  // the preferences name a workgroup that this user may use

  static constexpr int kAllWorkgroupsID = -2;
  static constexpr size_t kNameBufferSize = 128;  // bytes; the longest name that is looked up, including its NUL

  // Says whether a font manager is installed, loaded and running. The first call that finds the agent's library creates
  // the manager and connects; the manager then exists whatever the result is.
  //   0                                running and logged in
  //   3                                running, nobody is logged in
  //   CoreErrorCodes::kVersionMismatch the library lacks a function that may be missing, and the agent is not running
  //   CoreErrorCodes::kUnknownError    no library, or the agent is not running
  // outBundleName may be null; it is set only by the call that creates the manager, to a string that lives forever.
  static TModuleErrorCode CompatibleFontManagerIsRunning(const std::string** outBundleName, bool& outRunning);
  // Returns the manager, or null if there is none or it is not connected. Not owned by the caller.
  static FontManagerInterface* ConnectedManager();
  // True if the user interface is loaded, automatic activation is switched on, the services are enabled and the user is
  // logged in.
  static bool AutoActivationIsReady();
  // Deactivates the fonts of all documents if the preferences say so, then disconnects and deletes the manager.
  static void OnHostAppShuttingDown(bool showProgress);
  // True if the operating system lists an active font of this PostScript name (UTF-8). Does not ask the agent. The
  // second form takes a Pascal string: the length in the first byte.
  static bool IsFontActive(const std::string& name);
  static bool IsFontActive(const unsigned char* pascalName);
  // Selects a workgroup if none is selected and returns whether the plug-in may work. May show a message box. Always
  // marks the user as having workgroups first, because a login must find that flag set.
  static bool CheckSelectWorkgroup();

  virtual ~FontManagerInterface();

  // Which manager this is, and the state of the connection. The first two are false for every manager of this edition.
  virtual bool ConnectedToMarquine() { return false; }
  virtual bool ConnectedToMarquinePrime() { return false; }
  virtual bool ConnectedToCoreAgent() { return false; }
  virtual bool RunningStandalone() { return true; }
  virtual bool GoogleWebFontsEnabled() { return false; }
  virtual int DisconnectFromFontManager() { return 0; }  // stops notifications
  virtual void OnServerConnectionLost() {}
  virtual bool IsFontManagerConnected() { return true; }
  virtual void SetFontManagerConnected(bool) {}
  virtual void DoEnableTCConnection() {}
  virtual bool FontManagerIsClientServer() { return true; }
  virtual int SetFontAutoActivationStatus(bool) { return 0; }

  // Look-ups. `out` is replaced. The fonts of the given workgroup come first, then those of the operating system. At
  // most 1024 IDs for a PostScript name and 4096 for a family name, from each of the two; the rest is dropped.
  virtual int FontIDsForPostScriptName(const std::string&, long, std::vector<uint64_t>&) { return -1; }
  virtual int FontIDsForFamilyName(const std::string&, long, std::vector<uint64_t>&) { return -1; }

  // Activation. The states map each ID to whether this process holds the font, or whether the font is active at all.
  // GetFontIsActivated returns an empty map if the agent fails. The base has no agent and reports every font as held.
  virtual ActivationStates GetClientFontActivationStates(const FontIDs& ids);
  virtual ActivationStates GetFontIsActivated(const Array& fonts) = 0;
  // Maps each ID to the active font that it conflicts with, or to 0. Empty if the agent fails.
  virtual std::map<uint32_t, uint32_t> GetFontConflicts(const FontIDs&) { return {}; }
  // Activates the font of a PostScript name if exactly one has it, otherwise none. *outFontID receives its ID or 0; a
  // null outFontID gives kErrorBadArgument.
  virtual int ActivateFontByName(const std::string& name, long workgroupID, const std::string& documentIdentifier,
                                 unsigned long* outFontID);
  virtual int ActivateFontByID(const Dictionary& font, const std::string& documentIdentifier, void** handle) = 0;
  // Activates fonts and appends the records of those that are active now to `activated`, and of those that the agent's
  // configuration forbids to `refused`. Either may be a null handle. An empty array is a success.
  virtual int ActivateFontsByID(const Array& fonts, const std::string& documentIdentifier, void** handle,
                                Array activated, Array refused, ProgressFunction progress, void* context) = 0;
  virtual int DeactivateFont(const Dictionary& font, void* handle) = 0;
  // Deactivates fonts and, on success, appends all of them to `deactivated`, which may be a null handle.
  virtual int DeactivateFonts(const Array& fonts, void* handle, Array deactivated, ProgressFunction progress,
                              void* context) = 0;
  // Hooks around the changes of a document. The implementation does nothing here.
  virtual int EndActivationChange() { return 0; }
  virtual void BeginOpeningFontsForDocument(const std::string&) {}
  virtual void FinishOpeningFontsForDocument(const std::string&) {}
  virtual void FinishClosingFontsForDocument(const std::string&, bool) {}

  // Font data. CountNamedFonts sets *outCount to the number of fonts of a name; GetNamedFontInfo reads one of them.
  virtual int CountNamedFonts(const std::string& name, TypeOfFontName kind, long workgroupID, long* outCount,
                              std::string& scratch);
  // The index starts at 1; one beyond the list gives -1.
  virtual int GetNamedFontInfo(const std::string&, TypeOfFontName, long, long, std::string&, FontOrSetInfoRec*) {
    return -1;
  }
  // Fills the record of the font that the request's kGS_DatabaseIDKey names. kGS_WorkgroupIDKey is optional.
  virtual int GetFontInfoByID(const Dictionary&, FontOrSetInfoRec*) { return -1; }
  virtual int GetPostscriptNameByID(std::string&, int, unsigned) { return -1; }
  // Writes the font's record (the second argument) as an XML property list: an array with one dictionary. The size is
  // that of the buffer in bytes and is not changed. Text that does not fit leaves the buffer unchanged and is not an
  // error. EndGetGlyphsureInfo ends a series of such calls; its result means nothing.
  virtual int GetGlyphsureInfo(unsigned, const Dictionary&, char*, unsigned long*) { return -1; }
  virtual int EndGetGlyphsureInfo(const std::string&) { return 0; }
  // Appends the records of the font's family to the last argument, which must be an array. Leaves out fonts whose
  // PostScript name is in the second argument, the document's fonts; the font itself always stays.
  virtual int FindFontsInSameFamilyForActivation(const Dictionary&, const Array&, int, Array*) { return -1; }

  // Commands with dialogs. The first asks for a name, offering the given one, and makes a set of the fonts; it returns
  // -1 on every path. The second asks for a folder, offering a name made from the document's, and copies the fonts
  // there; a cancel returns 0. The path argument is ignored.
  virtual int MakeSetForDocumentFonts(const platform::String&, const Array&) { return -1; }
  virtual int CollectFontsUsedByCurrentDocument(const std::string&, const std::string&, const Array&) { return -1; }

  // Responds to all queued notifications of the agent and returns how many there were. Every few seconds it also checks
  // that the agent is still running. Called by the plug-in's timer.
  virtual int ProcessNotifications() { return 0; }
  // True if the plug-in and the agent speak the same protocol.
  virtual bool AreSchemaVersionsInSync() { return true; }

  // Workgroups. *out receives dictionaries with kGS_WorkgroupIDKey, kGS_WorkgroupNameKey and kGS_WorkgroupTypeKey.
  // addAllWorkgroups appends an entry for all, if the user may use it; includeSpecial adds the operating system's
  // fonts. The meaning of `flag` is not known; pass false. Returns the agent's code on failure.
  virtual int GetAllWorkgroupsForUser(Array* out, bool addAllWorkgroups, bool includeSpecial, bool flag) = 0;
  virtual bool CheckForWorkgroups() { return true; }  // the user has at least one
  // The default workgroup is the one in the preferences. A name must match exactly.
  virtual int SetDefaultWorkgroupID(int id);
  virtual int SetDefaultWorkgroupName(const platform::String& name);
  virtual platform::String GetDefaultWorkgroupName();
  virtual int GetWorkgroupID(const platform::String& name, int* outID);
  virtual platform::String GetWorkgroupNameFromID(long id);  // null for an unknown ID
  // Removes the records of fonts whose workgroup type is disabled. -1 for an empty array.
  virtual int RemoveRemoteFonts(Array fonts) = 0;
  // Adds kGS_WorkgroupNameKey to the records. -1 if no record got a name.
  virtual int AddWorkgroupNamesToFonts(const Array& fonts);
  // Returns the name of the first workgroup of the list with this ID, or null.
  virtual platform::String FindWorkgroupIDGetName(long id, const Array& workgroups);
  virtual bool IsAllWorkgroups(int id) { return id == kAllWorkgroupsID; }
  virtual bool IsSelectedWorkgroupLocal() { return false; }
  virtual bool IsRemoteWorkgroupTypeDisabled(long) { return false; }
  virtual bool CanActivateFromAllWorkgroups() { return false; }
  // Whether the user may export these fonts from the current workgroup. With all workgroups selected, a null array asks
  // for no particular fonts and gives true.
  virtual bool CanExportFromWorkgroup(const Array&) { return false; }
  virtual bool CannotExportFromSomeWorkgroup() { return false; }

  // The state of the agent and of the session.
  virtual bool IsRunning() { return false; }
  virtual bool IsLoggedIn() { return true; }
  virtual bool IsOnline() { return true; }
  virtual int GoOnline() { return -1; }
  virtual int GoOffline() { return -1; }
  virtual bool IsWindows() { return false; }
  virtual void DoOnlineOffline() {}  // switches between the two
  virtual void SetCountForLongOperations(int) {}

  // True if the user's list has a workgroup with the name of this one. 0 is not valid.
  bool IsValidWorkgroupForUser(int id);
  bool UserHasAtLeastOneWorkgroup();
  int GetCurrentWorkgroupID();  // from the preferences; 0 if none is stored
  // Keeps the current workgroup if it is valid; otherwise selects all workgroups, or the only one, if that is possible.
  // Sets sValidWorkgroupSelected. Does nothing while the agent is not running.
  void InitializeDefaultWorkgroup();
  bool IsAllWorkgroupsSelected() { return IsAllWorkgroups(GetCurrentWorkgroupID()); }
  // Selects a workgroup for a user who has none selected. Shows a message if the user has no workgroup at all. A call
  // during a call does nothing.
  void HandleSelectWorkgroup();
  // Finds the agent's records for one document font and sorts them, the best match first. Searches by the name that
  // `kind` chooses from the record; if nothing has that name, by shorter forms of it. *inOut must be an array and is
  // replaced if something was found. excludedRemote is set to true if a font was left out because its workgroup is
  // disabled. No match is a success. The result is the low half of the status; kErrorMarquineNotRunning ends the
  // search.
  int16_t GetGlyphsureData(const Dictionary& record, TypeOfFontName kind, bool& excludedRemote, long workgroupID,
                           Array* inOut);
  // The same for one name, unsorted. kErrorBadArgument for null. *out is replaced only if something was found.
  int16_t GetGlyphsureDataForFontName(const char* name, TypeOfFontName kind, bool& excludedRemote, long workgroupID,
                                      Array* out);
  // The string of the key, empty if absent.
  static std::string GetStringFromDictionary(const Dictionary& dictionary, std::string_view key);

  static void ResetForTesting();

 private:
  int SearchWithoutAdditions(const std::string& name, bool& excludedRemote, long workgroupID, Array* inOut);
  int AppendRecordOf(const FontOrSetInfoRec& found, const char* name, bool& excludedRemote, Array& result);

  static bool sSelectWorkgroupInProgress;  // guards against re-entry, because the message runs a modal loop
};
