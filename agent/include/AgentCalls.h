// Every call that the agent serves: its name, its arguments and its result.
//
// The agent's handlers, the library's exported functions and the fuzz targets are generated from these lists. A call
// without a handler, or a handler for other arguments, does not compile. docs/PROTOCOL.md says what each call does.
//
// To add a call: a struct and one line in a list here, the handler in the agent (the compiler requires it), and a row
// in docs/PROTOCOL.md.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/include/AgentProtocol.h"
#include "agent/include/CallTypes.h"
#include "agent/include/PanelCalls.h"
#include "agent/include/WorkgroupCalls.h"

namespace agent_protocol {

// Answered at once, also during a scan.
#define AGENT_SESSION_CALLS(X)  \
  X(Hello)                      \
  X(SetNotifications)           \
  X(EnableDesignActivation)     \
  X(InitThreadInstance)         \
  X(GetFontVaultPath)           \
  X(GetIsLoggedIn)              \
  X(GetIsOnline)                \
  X(GetIsStandaloneMode)        \
  X(GetIsReplicationRunning)    \
  X(GetCurrentReplicationMode)  \
  X(GetIsGoogleWebFontsEnabled) \
  X(SetGoogleWebFontsEnabled)   \
  X(CanAccessGoogleFonts)       \
  X(SetWebFontsFolder)          \
  X(GetWebFontsStatus)          \
  X(GetAllWorkgroupsForUser)    \
  X(GetDefaultLibraryName)      \
  X(GetSystemWorkgroupID)       \
  X(GetPermission)              \
  X(GetRenderedPNGsDirectory)   \
  X(GetStatus)                  \
  X(GetWorkgroups)              \
  X(PutLibrary)                 \
  X(DeleteLibrary)              \
  X(GetDeniedRights)            \
  X(DenyRight)                  \
  X(AllowRight)

// Delayed until the first scan of the library has finished: "not found" must not mean "not yet".
#define AGENT_FONT_CALLS(X)             \
  X(GetFontsByPostscriptName)           \
  X(LookUpFonts)                        \
  X(GetFontInfoByID)                    \
  X(FindFontsInSameFamilyForActivation) \
  X(GetFontIsActivated)                 \
  X(GetScanReport)                      \
  X(Rescan)                             \
  X(ActivateFonts)                      \
  X(PreviewActivateFonts)               \
  X(RestoreActivations)                 \
  X(DeactivateFonts)                    \
  X(GetClientFontActivationStates)      \
  X(GetFontConflicts)                   \
  X(KeepActivations)                    \
  X(CreateTopLevelSet)                  \
  X(AddFontsToSets)                     \
  X(RenameSet)                          \
  X(DeleteSet)                          \
  X(RemoveFontsFromSet)                 \
  X(GetSets)                            \
  X(CanExportFonts)                     \
  X(ExportFonts)                        \
  X(GetAllSmartLists)                   \
  X(GetSmartList)                       \
  X(GetPanelSmartListTree)              \
  X(QueryForSmartListFonts)             \
  X(GetSmartListFonts)                  \
  X(CreateSmartList)                    \
  X(RenameSmartList)                    \
  X(SetSmartListQuery)                  \
  X(DeleteSmartList)                    \
  X(GetSmartSets)                       \
  X(PutSmartSet)                        \
  X(DeleteSmartSet)                     \
  X(FindFonts)                          \
  X(GetGoogleFonts)                     \
  X(GetFontKinds)                       \
  X(DescribeFonts)                      \
  X(TrackFontPanelClick)

// Served like the calls for fonts, but not by the library of fonts alone.
#define AGENT_PREVIEW_CALLS(X) X(RenderFontNamePreviewPNGs)

#define AGENT_CALLS(X)   \
  AGENT_SESSION_CALLS(X) \
  AGENT_FONT_CALLS(X)    \
  AGENT_PREVIEW_CALLS(X)

namespace calls {

struct Lookup {
  std::string name;
  Numbers workgroupIDs;  // empty, or with a 0 in it, means all
  AGENT_FIELDS(name, workgroupIDs)
};

// Each requested font is in exactly one of the lists.
struct Activated {
  Numbers activated;  // active now, by this call or before
  Numbers failed;
  Numbers refused;  // by the agent's configuration
  AGENT_FIELDS(activated, failed, refused)
};

// Session.

struct Hello {
  struct Arguments {
    bool notifications = false;
    uint32_t protocol = kProtocolVersion;  // the client's
    AGENT_FIELDS(notifications, protocol)
  };
  struct Result {
    uint32_t protocol = 0;  // the agent's
    AGENT_FIELDS(protocol)
  };
};

struct SetNotifications {
  struct Arguments {
    bool wanted = false;
    AGENT_FIELDS(wanted)
  };
  using Result = Nothing;
};

// The client then gets event 24 for each font that may not be activated for a preview.
struct EnableDesignActivation {
  struct Arguments : Nothing {};
  using Result = Nothing;
};

struct InitThreadInstance {
  struct Arguments : Nothing {};
  using Result = Nothing;
};

struct GetFontVaultPath {
  struct Arguments : Nothing {};
  struct Result {
    std::string path;
    AGENT_FIELDS(path)
  };
};

struct GetIsLoggedIn {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct GetIsOnline {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct GetIsStandaloneMode {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct GetIsReplicationRunning {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct GetCurrentReplicationMode {
  struct Arguments : Nothing {};
  using Result = Value;
};

struct GetStatus {
  struct Arguments : Nothing {};
  struct Result {
    bool isScanning = false;  // or unpacking web fonts
    uint32_t step = 0;        // of that, in files
    uint32_t steps = 0;
    uint32_t fonts = 0;
    std::string activeFolder;  // where active fonts are linked
    bool isDesktop = false;    // active fonts are active for all programs of the user
    std::string unwritable;    // why what changes is kept only until the agent ends; empty if it is stored
    bool isUnwatched = false;  // a folder can't be watched for changes, so libraries are scanned on a timer
    AGENT_FIELDS(isScanning, step, steps, fonts, activeFolder, isDesktop, unwritable, isUnwatched)
  };
};

struct GetRenderedPNGsDirectory {
  struct Arguments : Nothing {};
  struct Result {
    std::string path;
    AGENT_FIELDS(path)
  };
};

// Fonts.

struct GetFontsByPostscriptName {
  struct Arguments : Lookup {};
  using Result = IDs;
};

// Looks many names up in one call, and sends the first records along.
struct LookUpFonts {
  struct Arguments {
    std::vector<std::string> names;
    bool byFamily = false;       // family names, ignoring case; otherwise PostScript names
    Numbers workgroupIDs;        // empty, or with a 0 in it, means all
    uint32_t recordsOfEach = 0;  // of the first fonts with each name; kMostRecords in all
    AGENT_FIELDS(names, byFamily, workgroupIDs, recordsOfEach)
  };
  struct Found {
    Numbers fontIDs;
    std::vector<Record> records;  // of the first of these
    Numbers flags;                // for each record 1 if its font is active, otherwise 0
    AGENT_FIELDS(fontIDs, records, flags)
  };
  struct Result {
    std::vector<Found> found;  // one for each name
    AGENT_FIELDS(found)
  };
  static constexpr size_t kMostRecords = 4096;
};

struct GetFontInfoByID {
  struct Arguments {
    uint32_t fontID = 0;
    AGENT_FIELDS(fontID)
  };
  struct Result {
    Record record;
    AGENT_FIELDS(record)
  };
};

struct FindFontsInSameFamilyForActivation {
  struct Arguments {
    uint32_t fontID = 0;  // 0: prefer no file because it is the requested font's
    uint32_t familyID = 0;
    Numbers workgroupIDs;
    AGENT_FIELDS(fontID, familyID, workgroupIDs)
  };
  struct Result {
    std::vector<Record> records;
    AGENT_FIELDS(records)
  };
};

struct GetFontIsActivated {
  struct Arguments : IDs {};
  using Result = Flags;
};

struct GetScanReport {
  struct Problem {
    std::string path;
    std::string message;
    AGENT_FIELDS(path, message)
  };
  struct Arguments : Nothing {};
  struct Result {
    uint32_t files = 0;  // with a usable face
    uint32_t faces = 0;
    std::vector<Problem> problems;
    AGENT_FIELDS(files, faces, problems)
  };
};

struct Rescan {
  struct Arguments : Nothing {};
  using Result = Nothing;
};

// Activation.

struct ActivateFonts {
  struct Arguments {
    Numbers fontIDs;
    uint32_t kind = 0;  // kAutoActivated, kPreviewActivated or kActivated
    AGENT_FIELDS(fontIDs, kind)
  };
  using Result = Activated;
};

struct PreviewActivateFonts {
  struct Arguments : IDs {};
  using Result = Activated;
};

struct RestoreActivations {
  struct Arguments : IDs {};
  using Result = Activated;
};

struct DeactivateFonts {
  struct Arguments {
    Numbers fontIDs;
    bool alsoUser = false;  // also what the user activated
    AGENT_FIELDS(fontIDs, alsoUser)
  };
  struct Result {
    Numbers failed;  // only the operating system can deactivate these
    AGENT_FIELDS(failed)
  };
};

struct GetClientFontActivationStates {
  struct Arguments : IDs {};
  using Result = Flags;
};

struct GetFontConflicts {
  struct Arguments : IDs {};
  struct Result {
    Numbers conflicts;  // for each font the ID of the active font that it conflicts with, or 0
    AGENT_FIELDS(conflicts)
  };
};

struct KeepActivations {
  struct Arguments : Nothing {};
  using Result = Nothing;
};

// Sets and copies.

struct CreateTopLevelSet {
  struct Arguments {
    std::string name;
    uint32_t workgroupID = 0;
    Numbers fontIDs;
    AGENT_FIELDS(name, workgroupID, fontIDs)
  };
  struct Result {
    uint32_t setID = 0;
    AGENT_FIELDS(setID)
  };
};

struct AddFontsToSets {
  struct Arguments {
    Numbers setIDs;
    Numbers fontIDs;
    AGENT_FIELDS(setIDs, fontIDs)
  };
  using Result = Nothing;
};

struct RenameSet {
  struct Arguments {
    uint32_t setID = 0;
    std::string name;
    AGENT_FIELDS(setID, name)
  };
  using Result = Nothing;
};

// Smart lists that name it lose it.
struct DeleteSet {
  struct Arguments {
    uint32_t setID = 0;
    AGENT_FIELDS(setID)
  };
  using Result = Nothing;
};

// Fonts that are not in the set are ignored.
struct RemoveFontsFromSet {
  struct Arguments {
    uint32_t setID = 0;
    Numbers fontIDs;
    AGENT_FIELDS(setID, fontIDs)
  };
  using Result = Nothing;
};

struct GetSets {
  struct Set {
    uint32_t setID = 0;
    std::string name;
    uint32_t workgroupID = 0;
    Numbers fontIDs;
    AGENT_FIELDS(setID, name, workgroupID, fontIDs)
  };
  struct Arguments : Nothing {};
  struct Result {
    std::vector<Set> sets;
    AGENT_FIELDS(sets)
  };
};

struct CanExportFonts {
  struct Arguments : IDs {};
  using Result = Value;
};

struct ExportFonts {
  struct Arguments {
    Numbers fontIDs;
    std::string folder;  // an absolute path
    AGENT_FIELDS(fontIDs, folder)
  };
  struct Result {
    std::vector<std::string> copies;  // paths
    Numbers failed;
    AGENT_FIELDS(copies, failed)
  };
};

}  // namespace calls

// The name of a call in a request. Defined only for the calls in the lists.
template <class Call>
struct CallName;
#define AGENT_CALL_NAME(name)                   \
  template <>                                   \
  struct CallName<calls::name> {                \
    static constexpr const char* kText = #name; \
  };
AGENT_CALLS(AGENT_CALL_NAME)
#undef AGENT_CALL_NAME

}  // namespace agent_protocol
