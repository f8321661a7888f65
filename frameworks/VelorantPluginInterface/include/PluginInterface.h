// The functions that the agent interface library exports. The library, the plug-in's table of pointers and the fakes of
// the tests are all generated from this one list.
//
// Conventions of all functions, unless a description below says otherwise:
//
// Threads    Any thread may call any function.
// Blocking   A call blocks until the agent replies. If the agent is silent for 20 seconds (10 minutes for ExportFonts),
//            the call fails and later calls fail at once until the agent replies again. Functions that need no agent
//            are marked "local".
// Results    TModuleErrorCode: 0 is success; agent/include/ResultCodes.h lists the others. kAgentShutdownCode and
//            kServiceUnavailableCode mean that the agent is gone: relaunch it, call ResetPluginFacadeInstance and try
//            again. A null pointer where a value is needed gives kNullPointer. Nothing throws.
// Arguments  Strings are NUL-terminated UTF-8. IDs and counts are 32-bit unsigned. As a workgroup ID, 0 means all
//            workgroups. An array parameter may be null if its count is 0. The library borrows every argument for the
//            call and keeps none.
// Out        `out...` and `out` must not be null. A ValueRef stored there belongs to the caller, who releases it. A
//            "filled" array is created by the caller; the function appends to it.
// Buffers    `size` is in bytes and includes the NUL. Text that does not fit gives kInvalidParam and an empty string.
//
// Parameters called `zero`, `alsoZero`, `one`, `alsoOne` and `flag` are part of the binary interface, but their meaning
// is not known. Callers pass the value that the name says (the description gives the value of `flag`); this library
// ignores them.
#pragma once

#include <cstdint>

#include "agent/include/ResultCodes.h"
#include "platform/Value.h"

namespace PluginInterface {

using TModuleErrorCode = agent_protocol::ResultCode;
using FacadeHandle = uint64_t;
using ValueRef = platform::ValueRef;

// What `data` of the notification callback points to. The callback borrows it for the call. A flag, font ID or
// dictionary is null if the agent sent none.
enum class EventPayload {
  kNothing,     // null
  kFlag,        // const int32_t*, used as a boolean
  kFontID,      // const uint32_t*
  kDictionary,  // ValueRef of a dictionary
};

// The events that the notification callback receives: X(number, Name, payload). The dictionaries contain:
//   ...Progress           "stepIndex" and "numSteps" (integers), "text" (string)
//   LoggedInStateChanged  "isLoggedIn" (boolean), "serverType" (integer)
//   PreviewPNGsRendered   for each font its ID as decimal text; the value is a dictionary with "pngBytes" (data) and
//                         the paths "pngFilename" and "2xPNGFilename". The paths are left out if the agent can't keep
//                         files; the dictionary is empty if the name can't be drawn at all.
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

// Runs on the library's reader thread, one call at a time, in the order in which the agent sent the events. It may call
// any function of this interface. Keep it short: until it returns, no further event is delivered, and replies to other
// threads wait. The library ignores the result. An exception must not leave it.
using NotificationCallback = TModuleErrorCode (*)(ECallbackKind kind, void* data);

// The fixed part of a font record, which GetFontInfoByID fills. The layout belongs to the binary interface. This
// library sets nDatabaseID, the font ID, and leaves agentFields zero.
struct FontRecordFields {
  uint32_t nDatabaseID;
  uint8_t agentFields[74];
};

// The codes that callers compare with.
using agent_protocol::kAgentShutdownCode;
using agent_protocol::kServiceUnavailableCode;

}  // namespace PluginInterface

// The functions by subject. The list below them is in the order of the plug-in's table.
//
// --- Instance and life cycle ---
// GetPluginFacadeInstance        Local. Returns the current handle for the parameter `h`; 0 if there is no memory. Get
//                                it anew for each call, because a relaunch of the agent replaces it. An old handle
//                                gives kAgentShutdownCode, a handle that never existed gives kInvalidParam.
// ResetPluginFacadeInstance      Local. Discards the handle and its connection. The agent takes back what this process
//                                activated; the next connection asks for it again.
// InitAppInstance                Connects. An agent that cannot be reached is a success here, because the caller asks
//                                GetIsCoreAgentProcessRunning next. kVersionMismatch if the agent speaks another
//                                protocol. hostType is a constant of the host program and build a constant of the
//                                caller; this library ignores both.
// InitThreadInstance             Asks whether the agent can serve fonts. kAgentNotFound if it cannot be reached,
//                                kInvalidVault if it cannot use its database.
// DestroyThreadInstance          Orderly end of a client. Fonts that this process activated for documents stay active.
//                                Previews end, and so do activations that were restored after a relaunch of the agent.
//                                Closes the connection. The next call connects again.
// CleanUpOnShutdown              The same, and discards the handle.
// RegisterForNotifications       Adds the callback and connects. Registering it again changes nothing. The callback
//                                stays registered if connecting fails and when the agent is relaunched.
// UnregisterForNotifications     Local. Removes the callback. Waits until a running callback returns, unless that
//                                callback is the caller; afterwards the callback is not called any more. Always 0.
//
// --- Logging and folders: local ---
// BeginLogging                   Opens the log file logName in the log folder for appending. The name must not contain
//                                a "/". kInvalidParam, kCouldNotMakeFolder or kCouldNotOpenFile on failure. `h` is
//                                ignored.
// Log                            Appends text as it is, without a line end. kNotInitialized before BeginLogging. `h` is
//                                ignored.
// OSDoesDirectoryExist           Returns 1 or 0; 0 for a null path.
// OSCreateDirectory              Creates a folder and its parents. An existing folder is a success.
//
// --- State: one 32-bit integer in *out. On failure *out is unchanged, so set it to the default first ---
// GetIsCoreAgentProcessRunning   1 if an agent is connected, or its process runs and it is not silent. An agent that has
//                                ended by itself is started again first.
// GetAreSchemaVersionsInSync     1 if the agent speaks the same protocol, 0 if not. Connects.
// GetIsLoggedIn, GetIsOnline, GetIsStandaloneMode
//                                Always 1: this agent serves one user without a server.
// GetIsReplicationRunning, GetCurrentReplicationMode
//                                Always 0.
// GetIsGoogleWebFontsEnabled     1 if the fonts of the folder of web fonts are wanted.
//
// --- Fonts ---
// GetFontsByPostscriptName       Writes the IDs of the fonts with exactly this name, the library's fonts first, then by
//                                ID. Writes at most `capacity` (in elements) and drops the rest. *outCount is the
//                                number written. An empty list of workgroups, or a 0 in it, means all.
// GetFontsByFamilyName           The same for a family name, ignoring case.
// GetFontInfoByID                `request` is a dictionary with "DatabaseID" (decimal text). Fills *outFields and
//                                creates *outDictionary, the font record. kInvalidParam without a usable ID, kNotFound
//                                for an unknown font. The workgroups are ignored, because a font is in one workgroup
//                                only.
// FindFontsInSameFamilyForActivation
//                                `fontRecord` is a dictionary with "AssignedFamilyID" and, optionally, "DatabaseID"
//                                (both decimal text). Appends one font record (dictionary) for each PostScript name of
//                                the family. kInvalidParam without a family ID.
// GetFontIsActivated             outFlags has room for `count` elements: 1 for an active font, 0 for others and unknown
//                                ones.
// GetClientFontActivationStates  The same for fonts that this process activated and still holds.
// GetFontConflicts               outConflictingIDs has room for `count` elements: for each font the ID of the active
//                                font that it conflicts with, or 0.
//
// --- Activation ---
// ActivateFonts                  Activates fonts. `kind` is an AgentActivationState: kAutoActivated for a document,
//                                kPreviewActivated until this process ends, kActivated until the user deactivates it. A
//                                font that is active already is a success. Fonts that could not be activated come back
//                                in failedIDs, fonts that the agent's configuration forbids in refusedIDs. Capacities
//                                are in elements; what does not fit is dropped. Both lists may be null, both counts
//                                (numbers written) must not. Failed fonts do not make the call fail.
// PreviewActivateFonts           Activates fonts until this process ends. Succeeds if at least one font is active; ask
//                                GetFontIsActivated for each.
// DeactivateFonts                Ends the activations by this process, and those that an earlier process left behind,
//                                but not those by the user. kCantDeactivateSystemFonts if only the operating system can
//                                deactivate one of the fonts; the others are deactivated all the same.
//
// --- Workgroups and rights ---
// GetAllWorkgroupsForUser        *outArray receives dictionaries with "WorkgroupID", "WorkgroupName" and
//                                "WorkgroupType", all strings; null on failure. includeSpecial adds the workgroups of
//                                the operating system's fonts and of web fonts. The meaning of `flag` is not known; the
//                                plug-in passes false.
// GetDefaultLibraryName          Writes the name of the first library.
// GetSystemWorkgroupID           The ID of the workgroup of the operating system's fonts. On failure *out is unchanged.
// IsAllWorkgroups                Local. 1 for 0 and for -2, which the plug-in uses for "all"; otherwise 0.
// GetPermission                  1 in *out if the user has the right, otherwise 0. On failure *out is unchanged.
//                                `right` is the name from GetCanActivateAcrossWorkgroupsColumnID or
//                                GetExportFontsColumnID. `flag` is always 1. With workgroup 0, whether the user has
//                                the right in every workgroup.
//
// --- Sets and copies ---
// CreateTopLevelSet              Creates a set of fonts in a workgroup. On failure *outSetID is unchanged and no set
//                                exists. kNotFound for an unknown font.
// AddFontsToSets                 Adds all fonts to all sets, or nothing: kNotFound for an unknown set or font.
// CanExportFonts                 1 in *out if all fonts are known and may be exported, otherwise 0. On failure *out is
//                                unchanged.
// ExportFonts                    Copies the font files to `folder`, an absolute path. An existing file is not replaced;
//                                the copy gets another name. kCouldNotCopyFile if a file could not be copied,
//                                kNotGrantedExport if one may not; the others are copied all the same.
// GetFontVaultPath               Writes the folder of the agent's databases.
//
// --- Previews ---
// RenderFontNamePreviewPNGs      Draws the names of fonts in the fonts themselves, those of highPriorityIDs first.
//                                Returns at once; the pictures come as PreviewPNGsRendered. textSize is that of the em
//                                square, in pixels; the picture is `height` pixels high and at most `width` wide. A
//                                second picture is twice as large. A name that its font can't show is drawn in another
//                                font with an empty box before it. Unknown fonts are ignored. smartListID and `one` are
//                                not used. kInvalidParam for a size out of range.
// GetRenderedPNGsDirectory       Writes the folder of these pictures. Files in it may go at any time.
//
// --- Smart lists ---
// A query is three lists of IDs, of workgroups, sets and smart sets; it has the fonts of all of them. A null array is
// an empty list, whatever its count. kNotFound for an unknown list; kInvalidParam for a change of a list with an ID
// below 101, which the agent has by itself, and for a name that is empty or longer than 1,023 bytes. Each change is
// followed by the event SmartListsChanged. Where an array is filled, it gets nothing on failure.
// GetAllSmartLists               Adds a dictionary for each list, with "smartListID" (integer), "smartListName"
//                                (string), "workgroupIDs", "setIDs" and "smartSetIDs" (arrays of integers).
// GetSmartList                   The same for one list. The caller owns *outObject, unchanged on failure.
// GetPanelSmartListTree          A text with the definition of a list, a line for each part (docs/PROTOCOL.md). The
//                                caller owns *outString, unchanged on failure.
// QueryForSmartListFonts         Adds the IDs of the fonts, sorted by name.
// GetSmartListFonts              Adds a dictionary for each font of a list, sorted by name, with "fontID", "activated",
//                                "fontLocation", "fontIsLocal" (integers), "displayName" and "postscriptName"
//                                (strings). Location 3 is this machine, 4 the operating system, 10 the web.
// CreateSmartList, RenameSmartList, DeleteSmartList, SetSmartListQuery
// EnableDesignActivation         From now on this client gets the event DesignActivationNonCompliant for each font that
//                                may not be activated with kind 3.
// TrackFontPanelClick            Counts a click on a font. kNotFound for an unknown one.
//
// --- Names: local; write the name of a column or right. Their result is a TModuleErrorCode ---
// Get...ColumnID                 The key of that column in a font record, or the name of a right for
//                                GetCanActivateAcrossWorkgroupsColumnID and GetExportFontsColumnID.
//
// --- Web fonts ---
// SetGoogleWebFontsEnabled       kNotFound if the agent has no folder of web fonts. Followed by the event
//                                GoogleWebFontsEnabled, and by GoogleReplicationProgress and GoogleReplicationStopped
//                                while files are unpacked.
// GetGoogleFonts                 Adds a dictionary for each web font, as GetSmartListFonts does. None while they are
//                                disabled.
// CanAccessGoogleFonts           Returns 1 if the folder is there, otherwise 0, and 0 without an agent.

// X(name, result, (parameters)) in the order of the table.
// clang-format off
#define PLUGIN_INTERFACE_COLUMN(X, name) X(name, uint32_t, (char* buffer, uint32_t size))
#define PLUGIN_INTERFACE_STATE(X, name) \
  X(name, PluginInterface::TModuleErrorCode, (PluginInterface::FacadeHandle h, int32_t* out))
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
     const uint32_t* fontIDs, uint32_t smartListID, uint32_t textSize, uint32_t width, uint32_t height, uint32_t one)) \
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
