// The messages between the agent and its clients, and where the two find each other.
//
// The agent listens on the socket kAgentSocketName in the runtime folder of the state folder (STATE/run). A message is
// one JSON object in the framing of platform/LocalSocket.h.
//   request       {"id": 7, "call": "ActivateFonts", "arguments": {...}}       id is unique within the connection
//   reply         {"id": 7, "code": 0, "result": {...}}                        code is one of ResultCodes.h
//   notification  {"notify": 8, "fontID": 12}  or {"notify": 19, "payload": {...}}   notify is an ECallbackKind
// AgentCalls.h lists the calls with their arguments and results, ResultCodes.h the codes; docs/PROTOCOL.md says what
// they do. A connection is one client. When it ends, the agent deactivates what the client activated and did not
// deactivate, unless it called "KeepActivations".
#pragma once

#include <cstddef>
#include <cstdint>

namespace agent_protocol {

inline constexpr const char* kAgentName = "Nexcore";
inline constexpr const char* kAgentIdentifier = "com.velorant.Nexcore";
inline constexpr const char* kAgentSocketName = "nexcore.sock";
inline constexpr uint32_t kProtocolVersion = 2;

// The longest request, in bytes. A longer one ends the connection. Replies may be longer.
inline constexpr uint32_t kLongestRequest = 1u << 20;
// The most numbers in a list of a request, and the most pairs of set and font in "AddFontsToSets".
inline constexpr size_t kMostNumbers = 65536;
// The most that may wait for the first scan: requests of one client, and bytes of all clients together.
inline constexpr size_t kMostHeldRequests = 1000;
inline constexpr size_t kMostHeldBytesOfAll = 32u << 20;

// The agent's one argument is its state folder, STATE. It reads STATE/nexcore.json; every key may be absent:
//   {"library": ["/folder", ...],      the folders of the first library, searched with their subfolders; relative to STATE
//    "libraries": [{"id": 11, "name": "Mine", "folders": [...]}],   more libraries; the agent changes these on request
//    "lastLibraryID": 11,              the greatest ID so far; the agent never uses one again
//    "webFonts": {"folder": "/folder", "enabled": false},   a folder of web fonts, which may be packed
//    "desktop": false,                 true: activate in the user's own font folder
//    "exitWithLastClient": false,      true: end when the last client has gone
//    "refused": ["PostScriptName"]}    fonts that may not be activated
// and keeps:
//   STATE/run/             the socket and the list of running applications, mode 0700; where it cannot be written, it has a
//                          substitute, see client/AgentFolders.h
//   STATE/agent/index.db   what a scan found; may be deleted at any time
//   STATE/agent/user.db    sets, rights, and activations that outlive clients; migrated, never deleted
//   STATE/agent/webfonts/  unpacked web fonts; may be deleted at any time
//   STATE/agent/agent.log  what a person should know
//   STATE/agent/scan.log   what was wrong with files and folders in the last scan, one problem per line
//   STATE/active/0 .. f    the links that make fonts active, spread by the last hexadecimal digit of the font ID; with
//                          "desktop" they are in a subfolder of the user's font folder, see client/AgentFolders.h
//   STATE/fonts.conf       the fontconfig file; the program that sets up the state folder writes it
inline constexpr const char* kConfigurationName = "nexcore.json";
inline constexpr const char* kActiveFolderName = "active";

// The activation states in font records ("ActivationStatus"). Programs read whole files, so a file is active with all
// its faces.
enum AgentActivationState : int32_t {
  kInactive = 0,
  kAutoActivated = 1,       // for a document, by a plug-in
  kAutoActivatedAgain = 2,  // restored for a client after a restart of the agent
  kPreviewActivated = 3,    // for a preview of a design, until its client ends
  kActivated = 4,           // by the user, until the user deactivates it
  kSystemActive = 5,        // by the operating system, as one of its own fonts; the agent cannot change it
  kActiveWithFile = 6,      // with another face of its file, which the user activated
  kCannotBeActive = 7,      // inactive, although it is wanted: another active font has its name, or it cannot be linked
  kForbidden = 8,           // inactive: the configuration refuses it
  kTemporary = 9,           // for its client only, until that ends
  kPreviewedWithFile = 10,  // with another face of its file, which is active in state 3 or 9
  kActiveInPlace = 11,      // by the operating system, which reads its folder of the library
};

constexpr bool IsActiveState(AgentActivationState state) {
  return state != kInactive && state != kCannotBeActive && state != kForbidden;
}

}  // namespace agent_protocol
