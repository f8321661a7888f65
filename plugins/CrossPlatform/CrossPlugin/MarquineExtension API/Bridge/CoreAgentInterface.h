// The font manager that asks the agent. It turns every question into calls of the agent function table and makes font
// records from the results. If the agent is gone during a command, it relaunches the agent and repeats the command
// until the agent replies or relaunching is given up. Main thread only, except EnqueueNotification.
//
// Sources: CoreAgentFonts.cpp (questions about fonts), CoreAgentActivation.cpp (activation, sets, collecting),
// AgentNotificationResponses.cpp (ProcessNotifications), CoreAgentInterface.cpp (the rest).
#pragma once

#include <functional>

#include "Bridge/CoreAgentNotifications.h"
#include "Bridge/FontManagerInterface.h"

class CoreAgentInterface : public FontManagerInterface {
 public:
  CoreAgentInterface();  // connects to the agent; failures show in MarquineGlobals
  ~CoreAgentInterface() override;

  bool ConnectedToCoreAgent() override { return true; }
  bool RunningStandalone() override;
  int DisconnectFromFontManager() override;
  int FontIDsForPostScriptName(const std::string& name, long workgroupID, std::vector<uint64_t>& out) override;
  int FontIDsForFamilyName(const std::string& name, long workgroupID, std::vector<uint64_t>& out) override;
  ActivationStates GetClientFontActivationStates(const FontIDs& ids) override;
  ActivationStates GetFontIsActivated(const Array& fonts) override;
  std::map<uint32_t, uint32_t> GetFontConflicts(const FontIDs& ids) override;
  int ActivateFontByName(const std::string& name, long workgroupID, const std::string& documentIdentifier,
                         unsigned long* outFontID) override;
  int ActivateFontByID(const Dictionary& font, const std::string& documentIdentifier, void** handle) override;
  int ActivateFontsByID(const Array& fonts, const std::string& documentIdentifier, void** handle, Array activated,
                        Array refused, ProgressFunction progress, void* context) override;
  int DeactivateFont(const Dictionary& font, void* handle) override;
  int DeactivateFonts(const Array& fonts, void* handle, Array deactivated, ProgressFunction progress,
                      void* context) override;
  int CountNamedFonts(const std::string& name, TypeOfFontName kind, long workgroupID, long* outCount,
                      std::string& scratch) override;
  int GetNamedFontInfo(const std::string& name, TypeOfFontName kind, long workgroupID, long index, std::string& scratch,
                       FontOrSetInfoRec* out) override;
  int GetFontInfoByID(const Dictionary& request, FontOrSetInfoRec* out) override;
  int GetPostscriptNameByID(std::string& outName, int workgroupID, unsigned fontID) override;
  int GetGlyphsureInfo(unsigned databaseID, const Dictionary& fontInfo, char* xmlBuffer,
                       unsigned long* inOutSize) override;
  int EndGetGlyphsureInfo(const std::string& scratch) override;
  int FindFontsInSameFamilyForActivation(const Dictionary& font, const Array& documentFonts, int workgroupID,
                                         Array* outFonts) override;
  int MakeSetForDocumentFonts(const platform::String& defaultName, const Array& fonts) override;
  int CollectFontsUsedByCurrentDocument(const std::string& documentName, const std::string& path,
                                        const Array& fonts) override;
  int ProcessNotifications() override;
  bool AreSchemaVersionsInSync() override;
  int GetAllWorkgroupsForUser(Array* out, bool addAllWorkgroups, bool includeSpecial, bool flag) override;
  bool CheckForWorkgroups() override { return UserHasAtLeastOneWorkgroup(); }
  int RemoveRemoteFonts(Array fonts) override;
  bool IsSelectedWorkgroupLocal() override;
  bool IsRemoteWorkgroupTypeDisabled(long type) override;
  bool CanActivateFromAllWorkgroups() override;
  bool CanExportFromWorkgroup(const Array& fonts) override;
  bool IsRunning() override;
  bool IsLoggedIn() override;
  void DoOnlineOffline() override;

  virtual bool IsGoogleWebFontsEnabled();
  virtual int GetGoogleWebFontsLibraryID();
  virtual void PopulateWorkgroupArray(int workgroupID, FontIDs& out);

  void InitializeCoreAgent(const platform::String& hostApp);
  void DeleteCoreAgent();
  void EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification);
  // Converts the agent's activation state to the plug-in's. 0 for a state without a counterpart.
  static int ComputePluginActivationState(long agentState);
  // Replaces the agent's activation state in a record by the plug-in's and sets the flags that follow from it. Returns
  // -1 for null.
  static int ConvertActivationStateValues(Dictionary record);
  int GetSpecialWorkgroupID(long type);
  int GetSystemWorkgroupID();
  platform::String CreateLocalizedWorkgroupName(long type, const platform::String& name);
  void AskUserToRelaunchAgent();
  bool WarnUserAgentRelaunchFailed();
  bool AttemptRelaunchTryAgain();
  static int LaunchZephyneAgentIfNeeded();
  static int RelaunchZephyneAgent();
  // Loops forever, calling `progress`. Part of the class's form; never call it.
  [[noreturn]] static void HandleProgress(ProgressFunction progress, void* context);
  // Appends to `out` the records of `in` whose ID is not 0 and not in the list.
  static void CreateFontArrayWithErrorsRemoved(const Array& in, Array out, const FontIDs& failedIDs);

  static void ResetForTesting();  // resets the cached IDs and the time of the last check

 private:
  using Command = std::function<TModuleErrorCode()>;
  // Repeats the command until it returns a code other than the agent-gone ones, or until relaunching is given up.
  // Returns the last code.
  TModuleErrorCode CallWithRelaunch(const Command& command);
  TModuleErrorCode ActivateByPreference(const FontIDs& ids, FontIDs& failed, FontIDs& refused, uint32_t& failedCount,
                                        uint32_t& refusedCount);
  void ReportInitialization(TModuleErrorCode code);
  void ReportNotRunning(TModuleErrorCode code, int isRunning);
  bool GetPermission(uint16_t flag, const std::string& right, int workgroupID);
  int LookUp(const std::string& name, TypeOfFontName kind, long workgroupID, std::vector<uint64_t>& out);
  void LookForAgent();

  CoreAgentPluginNotificationQueue mQueue;
};
