// The agent interface library's exported functions: one list from which the library, the plug-in's table of pointers and
// the fakes of the tests are made.
//
// Strings are NUL-terminated UTF-8. Font IDs, workgroup IDs and counts are 32-bit unsigned; 0 as a workgroup means all.
// A result of type TModuleErrorCode is 0 for success. Values (platform::ValueRef) put into an out parameter belong to the
// caller; those marked "filled" are given empty by the caller and are appended to. Calls block until the agent has
// answered; an agent that is gone gives one of the agent-gone codes. Every function may be called from any thread.
#pragma once

#include <cstdint>

#include "agent/include/ResultCodes.h"
#include "platform/Value.h"

namespace PluginInterface {

using TModuleErrorCode = agent_protocol::ResultCode;
using FacadeHandle = uint64_t;
using ValueRef = platform::ValueRef;

// What `data` of the notification callback points to. It is borrowed for the length of the call.
enum class EventPayload {
  kNothing,     // null
  kFlag,        // const int32_t*, used as a boolean
  kFontID,      // const uint32_t*
  kDictionary,  // ValueRef of a dictionary
};

// What the agent tells through the notification callback: X(number, Name, payload). Progress dictionaries hold "stepIndex",
// "numSteps" and "text"; LoggedInStateChanged holds "isLoggedIn" (boolean) and "serverType" (integer); PreviewPNGsRendered
// holds font IDs as decimal text, each with a dictionary with "pngBytes" and two file names.
#define AGENT_EVENTS(X)                             \
  X(0, AgentShutdown, Nothing)                      \
  X(1, OnlineStateChanged, Flag)                    \
  X(2, LoggedInStateChanged, Dictionary)            \
  X(3, WorkgroupsChanged, Nothing)                  \
  X(4, UserPermissionsChanged, Nothing)             \
  X(8, FontActivated, FontID)                       \
  X(9, FontDeactivated, FontID)                     \
  X(10, FontMissing, FontID)                        \
  X(14, GoogleWebFontsEnabled, Flag)                \
  X(15, GoogleReplicationProgress, Dictionary)      \
  X(16, GoogleReplicationStopped, Nothing)          \
  X(17, PreviewPNGsRendered, Dictionary)            \
  X(18, SmartListsChanged, Nothing)                 \
  X(19, BulkReplicationProgress, Dictionary)        \
  X(20, BulkReplicationStopped, Nothing)            \
  X(21, IncrementalReplicationProgress, Dictionary) \
  X(22, IncrementalReplicationStopped, Nothing)     \
  X(23, PanelDataChanged, Nothing)                  \
  X(24, DesignActivationNonCompliant, FontID)       \
  X(25, OfflineDownloadFinished, Nothing)           \
  X(27, FontServerReplicationProgress, Dictionary)  \
  X(28, FontServerReplicationStopped, Nothing)

enum ECallbackKind : uint32_t {
#define AGENT_EVENT_KIND(number, name, payload) k##name = number,
  AGENT_EVENTS(AGENT_EVENT_KIND)
#undef AGENT_EVENT_KIND
};

// Runs on the library's reader thread. Its result is not looked at.
using NotificationCallback = TModuleErrorCode (*)(ECallbackKind kind, void* data);

// What GetFontInfoByID writes of a font beside its dictionary; it starts at the record's font ID.
struct FontRecordFields {
  uint32_t nDatabaseID;
  uint8_t agentFields[74];
};

// The codes that callers compare with.
using agent_protocol::kAgentShutdownCode;
using agent_protocol::kNotImplemented;
using agent_protocol::kServiceUnavailableCode;

}  // namespace PluginInterface

// X(name, result, (parameters)) in the order of the table.
// clang-format off
#define PLUGIN_INTERFACE_COLUMN(X, name) X(name, uint32_t, (char* buffer, uint32_t size))
#define PLUGIN_INTERFACE_STATE(X, name) X(name, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, int32_t* out))
#define PLUGIN_INTERFACE_FUNCTIONS(X)                                                                                  \
  X(ActivateFonts, PluginInterface::TModuleErrorCode,                                                                  \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t zero, uint32_t kind,           \
     uint32_t one, uint32_t alsoOne, uint32_t failedCapacity, uint32_t refusedCapacity, uint32_t* failedIDs,           \
     uint32_t* refusedIDs, uint32_t* failedCount, uint32_t* refusedCount))                                             \
  X(AddFontsToSets, PluginInterface::TModuleErrorCode,                                                                 \
    (PluginInterface::FacadeHandle h, uint32_t setCount, const uint32_t* setIDs, uint32_t count,                       \
     const uint32_t* fontIDs))                                                                                         \
  X(BeginLogging, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, const char* logName))           \
  X(CanExportFonts, PluginInterface::TModuleErrorCode,                                                                 \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, int32_t* out))                          \
  X(CreateTopLevelSet, PluginInterface::TModuleErrorCode,                                                              \
    (PluginInterface::FacadeHandle h, uint32_t* outSetID, uint32_t workgroupID, const char* name, uint32_t zero,       \
     uint32_t alsoZero, uint32_t count, const uint32_t* fontIDs))                                                      \
  X(DeactivateFonts, PluginInterface::TModuleErrorCode,                                                                \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t zero))                         \
  X(DestroyThreadInstance, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h))                       \
  X(EnableDesignActivation, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h))                      \
  X(ExportFonts, PluginInterface::TModuleErrorCode,                                                                    \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, const char* folder, uint32_t zero,      \
     uint32_t alsoZero))                                                                                               \
  X(FindFontsInSameFamilyForActivation, PluginInterface::TModuleErrorCode,                                             \
    (PluginInterface::ValueRef fontRecord, const uint32_t* workgroupIDs, uint32_t workgroupCount,                      \
     PluginInterface::ValueRef filledArray))                                                                           \
  PLUGIN_INTERFACE_COLUMN(X, GetActivationStateColumnID)                                                               \
  X(GetAllWorkgroupsForUser, PluginInterface::TModuleErrorCode,                                                        \
    (PluginInterface::FacadeHandle h, PluginInterface::ValueRef* outArray, bool includeSpecial, bool flag))            \
  PLUGIN_INTERFACE_STATE(X, GetAreSchemaVersionsInSync)                                                                \
  X(RegisterForNotifications, PluginInterface::TModuleErrorCode,                                                       \
    (PluginInterface::FacadeHandle h, PluginInterface::NotificationCallback callback))                                 \
  X(UnregisterForNotifications, PluginInterface::TModuleErrorCode,                                                     \
    (PluginInterface::FacadeHandle h, PluginInterface::NotificationCallback callback))                                 \
  PLUGIN_INTERFACE_COLUMN(X, GetCanActivateAcrossWorkgroupsColumnID)                                                   \
  X(GetClientFontActivationStates, PluginInterface::TModuleErrorCode,                                                  \
    (uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags))                                                     \
  X(GetDefaultLibraryName, PluginInterface::TModuleErrorCode,                                                          \
    (PluginInterface::FacadeHandle h, char* buffer, uint32_t size))                                                    \
  PLUGIN_INTERFACE_COLUMN(X, GetExportFontsColumnID)                                                                   \
  PLUGIN_INTERFACE_COLUMN(X, GetFamilyGroupIDColumnID)                                                                 \
  PLUGIN_INTERFACE_COLUMN(X, GetFamilyGroupNameColumnID)                                                               \
  PLUGIN_INTERFACE_COLUMN(X, GetFamilyNameColumnID)                                                                    \
  PLUGIN_INTERFACE_COLUMN(X, GetFileSizeColumnID)                                                                      \
  PLUGIN_INTERFACE_COLUMN(X, GetFontFaceIDColumnID)                                                                    \
  X(GetFontInfoByID, PluginInterface::TModuleErrorCode,                                                                \
    (PluginInterface::FacadeHandle h, const uint32_t* workgroupIDs, uint32_t workgroupCount,                           \
     PluginInterface::ValueRef request, PluginInterface::FontRecordFields* outFields,                                  \
     PluginInterface::ValueRef* outDictionary))                                                                        \
  X(GetFontIsActivated, PluginInterface::TModuleErrorCode,                                                             \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t* outFlags))                    \
  PLUGIN_INTERFACE_COLUMN(X, GetFontLocationColumnID)                                                                  \
  PLUGIN_INTERFACE_COLUMN(X, GetGlyphsureChecksumColumnID)                                                             \
  PLUGIN_INTERFACE_COLUMN(X, GetFontTypeColumnID)                                                                      \
  X(GetFontVaultPath, PluginInterface::TModuleErrorCode,                                                               \
    (PluginInterface::FacadeHandle h, uint32_t size, char* buffer))                                                    \
  PLUGIN_INTERFACE_COLUMN(X, GetFontVersionColumnID)                                                                   \
  X(GetFontsByPostscriptName, PluginInterface::TModuleErrorCode,                                                       \
    (PluginInterface::FacadeHandle h, const char* name, const uint32_t* workgroupIDs, uint32_t workgroupCount,         \
     uint32_t* outFontIDs, uint32_t capacity, uint32_t* outCount))                                                     \
  X(GetFontsByFamilyName, PluginInterface::TModuleErrorCode,                                                           \
    (PluginInterface::FacadeHandle h, const char* name, const uint32_t* workgroupIDs, uint32_t workgroupCount,         \
     uint32_t* outFontIDs, uint32_t capacity, uint32_t* outCount))                                                     \
  PLUGIN_INTERFACE_COLUMN(X, GetFoundryNameColumnID)                                                                   \
  PLUGIN_INTERFACE_STATE(X, GetIsCoreAgentProcessRunning)                                                              \
  PLUGIN_INTERFACE_COLUMN(X, GetIsFontLocalColumnID)                                                                   \
  PLUGIN_INTERFACE_STATE(X, GetIsLoggedIn)                                                                             \
  PLUGIN_INTERFACE_STATE(X, GetIsOnline)                                                                               \
  PLUGIN_INTERFACE_STATE(X, GetIsStandaloneMode)                                                                       \
  PLUGIN_INTERFACE_COLUMN(X, GetIsMarquineFileColumnID)                                                                \
  PLUGIN_INTERFACE_COLUMN(X, GetKerningChecksumColumnID)                                                               \
  PLUGIN_INTERFACE_COLUMN(X, GetLegacyGlyphsureChecksumColumnID)                                                       \
  PLUGIN_INTERFACE_COLUMN(X, GetLocalPathColumnID)                                                                     \
  X(GetPermission, PluginInterface::TModuleErrorCode,                                                                  \
    (PluginInterface::FacadeHandle h, uint16_t flag, const char* right, uint32_t workgroupID, int32_t* out))           \
  X(GetPluginFacadeInstance, PluginInterface::FacadeHandle, ())                                                        \
  X(ResetPluginFacadeInstance, PluginInterface::TModuleErrorCode, ())                                                  \
  PLUGIN_INTERFACE_COLUMN(X, GetPostscriptNameColumnID)                                                                \
  PLUGIN_INTERFACE_COLUMN(X, GetDisplayNameColumnID)                                                                   \
  PLUGIN_INTERFACE_COLUMN(X, GetScannedFoundryColumnID)                                                                \
  X(GetSystemWorkgroupID, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, uint32_t* out))         \
  PLUGIN_INTERFACE_COLUMN(X, GetWorkgroupIDColumnID)                                                                   \
  PLUGIN_INTERFACE_COLUMN(X, GetWorkgroupNameColumnID)                                                                 \
  PLUGIN_INTERFACE_COLUMN(X, GetWorkgroupTypeColumnID)                                                                 \
  X(InitAppInstance, PluginInterface::TModuleErrorCode,                                                                \
    (PluginInterface::FacadeHandle h, uint32_t hostType, uint32_t build))                                              \
  X(InitThreadInstance, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h))                          \
  X(IsAllWorkgroups, int32_t, (int32_t workgroupID))                                                                   \
  X(Log, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, const char* text))                       \
  X(OSCreateDirectory, PluginInterface::TModuleErrorCode, (const char* path, uint32_t one))                            \
  X(OSDoesDirectoryExist, int32_t, (const char* path))                                                                 \
  X(PreviewActivateFonts, PluginInterface::TModuleErrorCode,                                                           \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t zero))                         \
  X(GetGoogleFonts, PluginInterface::TModuleErrorCode,                                                                 \
    (PluginInterface::FacadeHandle h, PluginInterface::ValueRef filledArray))                                          \
  PLUGIN_INTERFACE_STATE(X, GetIsReplicationRunning)                                                                   \
  PLUGIN_INTERFACE_STATE(X, GetCurrentReplicationMode)                                                                 \
  PLUGIN_INTERFACE_STATE(X, GetIsGoogleWebFontsEnabled)                                                                \
  X(SetGoogleWebFontsEnabled, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, int32_t enabled))   \
  X(GetRenderedPNGsDirectory, PluginInterface::TModuleErrorCode,                                                       \
    (PluginInterface::FacadeHandle h, char* buffer, uint32_t size))                                                    \
  X(RenderFontNamePreviewPNGs, PluginInterface::TModuleErrorCode,                                                      \
    (PluginInterface::FacadeHandle h, uint32_t highPriorityCount, const uint32_t* highPriorityIDs, uint32_t count,     \
     const uint32_t* fontIDs, uint32_t panelValue, uint32_t pointSize, uint32_t width, uint32_t height, uint32_t one)) \
  X(RenameSmartList, PluginInterface::TModuleErrorCode,                                                                \
    (PluginInterface::FacadeHandle h, uint32_t smartListID, const char* name))                                         \
  X(DeleteSmartList, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, uint32_t smartListID))       \
  X(GetSmartList, PluginInterface::TModuleErrorCode,                                                                   \
    (PluginInterface::FacadeHandle h, uint32_t smartListID, PluginInterface::ValueRef* outObject))                     \
  X(GetPanelSmartListTree, PluginInterface::TModuleErrorCode,                                                          \
    (PluginInterface::FacadeHandle h, uint32_t smartListID, PluginInterface::ValueRef* outString))                     \
  X(QueryForSmartListFonts, PluginInterface::TModuleErrorCode,                                                         \
    (PluginInterface::FacadeHandle h, uint32_t firstCount, const uint32_t* firstIDs, uint32_t secondCount,             \
     const uint32_t* secondIDs, uint32_t thirdCount, const uint32_t* thirdIDs, PluginInterface::ValueRef filledArray)) \
  X(GetAllSmartLists, PluginInterface::TModuleErrorCode,                                                               \
    (PluginInterface::FacadeHandle h, PluginInterface::ValueRef filledArray))                                          \
  X(CreateSmartList, PluginInterface::TModuleErrorCode,                                                                \
    (PluginInterface::FacadeHandle h, const char* name, uint32_t firstCount, const uint32_t* firstIDs,                 \
     uint32_t secondCount, const uint32_t* secondIDs, uint32_t thirdCount, const uint32_t* thirdIDs,                   \
     uint32_t* outID))                                                                                                 \
  X(SetSmartListQuery, PluginInterface::TModuleErrorCode,                                                              \
    (PluginInterface::FacadeHandle h, uint32_t smartListID, uint32_t firstCount, const uint32_t* firstIDs,             \
     uint32_t secondCount, const uint32_t* secondIDs, uint32_t thirdCount, const uint32_t* thirdIDs))                  \
  X(GetSmartListFonts, PluginInterface::TModuleErrorCode,                                                              \
    (PluginInterface::FacadeHandle h, uint32_t smartListID, PluginInterface::ValueRef filledArray))                    \
  X(CleanUpOnShutdown, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h))                           \
  X(GetFontConflicts, PluginInterface::TModuleErrorCode,                                                               \
    (PluginInterface::FacadeHandle h, uint32_t count, const uint32_t* fontIDs, uint32_t* outConflictingIDs))           \
  X(TrackFontPanelClick, PluginInterface::TModuleErrorCode,                                                            \
    (PluginInterface::FacadeHandle h, uint32_t fontID, const char* text))                                              \
  X(CanAccessGoogleFonts, int32_t, (PluginInterface::FacadeHandle h))
// clang-format on
