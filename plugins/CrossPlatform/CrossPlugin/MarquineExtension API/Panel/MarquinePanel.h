// The protocol between the plug-in and a font panel: small JSON messages, whatever carries them. Each kind of panel is
// a subclass that carries them. docs/PANEL.md describes every message.
//
// Main thread only. Results are codes of ErrorCodes.h, 0 for success; a failed step is logged where it fails. Arguments
// are borrowed for the call. No call waits, except for the agent's answers.
//
// The JSON layer throws at malformed UTF-8 within a text and at array elements that are no integers. Such exceptions,
// and that of GetSmartList, leave CallMethodForMessage; the run loop reports them.
//
// Sources: PanelSession.cpp (state and settings), PanelNotifications.cpp (Push..., PopNotifications),
// PanelFontServices.cpp (activation, pictures and lists of fonts), PanelSmartLists.cpp, MarquinePanel.cpp (the rest).
#pragma once

#include <map>
#include <set>
#include <string>

#include "Bridge/HostAppInterface.h"
#include "ErrorCodes.h"
#include "JsonNode.h"
#include "JsonParser.h"
#include "platform/Value.h"

// Pushes that do not forward an operation of the host. The columns are those of HOST_EVENTS.
#define PANEL_ONLY_PUSHES(X)                                                          \
  X(none, PushLoggedInStateChangedNotification, (EServerType serverType), serverType) \
  X(none, PushTypekitEnabledNotification, (bool enabled), enabled)

// What the panel manager repeats on every panel.
#define PANEL_PUSHES(X) \
  HOST_EVENTS(X)        \
  PANEL_ONLY_PUSHES(X)

class MarquinePanel {
 public:
  // The identifier of a message. Requests and replies share it. The numbers that are left out are in no message.
  enum operatorIDs : int {
    kDesignActivateFamilyForFont = 8,
    kEnableGoogleFonts = 9,
    kAreGoogleFontsEnabled = 10,
    kGetDimensions = 11,
    kSetDimensions = 12,
    kDeleteFile = 13,
    kIsWindows = 16,
    kSaveDropDownSelection = 17,
    kGetDropDownSelection = 18,
    kCouldNotCreateTmpFile = 19,
    kConnectionComplete = 20,
    kGoogleWebFontsEnabled = 22,
    kGoogleWebFontsDisabled = 23,
    kFontActivated = 24,
    kFontDeactivated = 25,
    kGoogleReplicationProgress = 28,
    kGoogleReplicationStopped = 29,
    kEnabled = 30,
    kGetFontPNG = 32,
    kRenameSmartList = 33,
    kDeleteSmartList = 34,
    kQueryForSmartListFonts = 35,
    kGetSmartList = 36,
    kGetPanelSmartListTree = 37,
    kGetAllSmartLists = 38,
    kCreateSmartList = 39,
    kGetSmartListFonts = 40,
    kFontList = 41,
    kSetSmartListQuery = 42,
    kSmartListsChanged = 43,
    kSetSmartListName = 44,
    kFontMissing = 45,
    kFontActivationError = 46,
    kTrackFontClick = 47,
    kIgnoredMessage48 = 48,
    kIsLoggedIn = 49,
    kLoggedInStateChanged = 50,
    kIgnoredMessage51 = 51,
    kBulkReplicationProgress = 52,
    kBulkReplicationStopped = 53,
    kIncrementalReplicationProgress = 54,
    kIncrementalReplicationStopped = 55,
    kDataChanged = 56,
    kCanAccessGoogleFonts = 58,
    kIsLoggedInAlias = 59,
    kFontNonCompliant = 60,
    kWentOffline = 61,
    kWentOnline = 62,
    kOfflineDownloadFinished = 63,
    kTypekitEnabled = 64,
    kTypekitDisabled = 65,
    kStartPanelInfo = 66,
    kFontServerReplicationProgress = 68,
    kFontServerReplicationStopped = 69,
  };

  MarquinePanel() = default;
  virtual ~MarquinePanel();
  MarquinePanel(const MarquinePanel&) = delete;
  MarquinePanel& operator=(const MarquinePanel&) = delete;

  // Carries out one message of the panel: a JSON object. Fails only if the message cannot be read or has no identifier.
  // Does nothing while the plug-in's services are off.
  virtual TModuleErrorCode CallMethodForMessage(const std::string& message);
  // Tells the panel whether the plug-in's services are on.
  virtual TModuleErrorCode SetEnabled(bool enabled);
  // Sends what was queued, by identifier. Keeps everything while there is no agent. After a failure, the whole queue
  // goes out again at the next call.
  virtual TModuleErrorCode PopNotifications();

  // Progress is sent at once. Everything else is queued; any number of pushes of one kind is one message. Without an
  // agent nothing happens, except for the online state and Typekit, which are queued. Font IDs are the agent's.
#define PANEL_PUSH(operation, push, parameters, arguments) virtual TModuleErrorCode push parameters;
  NOTICE_EVENTS(PANEL_PUSH)
  PANEL_ONLY_PUSHES(PANEL_PUSH)
#undef PANEL_PUSH

  // Starts to listen for the panel. A panel without a socket does nothing and returns 0.
  virtual TModuleErrorCode OpenSocket() = 0;
  // Accepts a waiting connection, reads what the panel sent and answers it. After closeListeningSocket the panel
  // accepts no further connection.
  virtual TModuleErrorCode SelectSocket(bool closeListeningSocket) = 0;
  // Returns the TCP port on which the panel listens, or 0 without a socket.
  virtual unsigned int GetSocketPort() = 0;
  // Sends one message at once: a JSON text in parentheses, in UTF-8.
  virtual TModuleErrorCode SendMessage(const std::string& text) = 0;
  // Sends drawn names of fonts. Each key is a font ID as decimal text; each value is a dictionary as the agent's event
  // PreviewPNGsRendered has it.
  virtual TModuleErrorCode SendFontImages(const platform::Dictionary& fontPNGs) = 0;

  // Queues whether the user has a library of Typekit fonts. Called when the workgroups changed.
  virtual TModuleErrorCode CheckForTypekit();

 protected:
  using Node = restful_mapper::Json::Node;
  using Parser = restful_mapper::Json::Parser;

  // Handlers of messages. Those with a parameter get the whole text of the message and parse it again. They return
  // their first failed step; the panel then gets no reply.
  virtual TModuleErrorCode SendReplicationProgress(int message, const platform::Dictionary& details);
  virtual TModuleErrorCode HBSIsLoggedIn();
  virtual TModuleErrorCode IsWindows();
  virtual TModuleErrorCode CanAccessGoogleFonts();
  virtual TModuleErrorCode StartPanelInfo();
  virtual TModuleErrorCode DesignActivateFamilyForFont(const std::string& message);
  virtual TModuleErrorCode GoogleEnableWebFonts();
  virtual TModuleErrorCode IsGoogleWebFontsEnabled();
  virtual TModuleErrorCode RenameSmartList(const std::string& message);
  virtual TModuleErrorCode DeleteSmartList(const std::string& message);
  virtual TModuleErrorCode QueryForSmartListFonts(const std::string& message);
  virtual TModuleErrorCode GetSmartList(const std::string& message);
  virtual TModuleErrorCode GetPanelSmartListTree(const std::string& message);
  virtual TModuleErrorCode GetDimensions();
  virtual TModuleErrorCode SetDimensions(const std::string& message);
  virtual TModuleErrorCode SaveDropDownSelection(const std::string& message);
  virtual TModuleErrorCode GetDropDownSelection();
  virtual TModuleErrorCode GetFontPNGs(const std::string& message);
  virtual TModuleErrorCode GetAllSmartLists();
  virtual TModuleErrorCode CreateSmartList(const std::string& message);
  virtual TModuleErrorCode SetSmartListQuery(const std::string& message);
  virtual TModuleErrorCode SetSmartListName(const std::string& message);
  virtual TModuleErrorCode GetSmartListFonts(const std::string& message);
  virtual TModuleErrorCode GetSmartListFonts(unsigned int smartListID);
  // Writes the fonts into a new file and sends its URL. The panel deletes the file with kDeleteFile. `message` is not
  // used.
  virtual TModuleErrorCode SendFontList(const platform::Array& fonts, unsigned int message);
  virtual TModuleErrorCode DeleteFile(const std::string& message);
  virtual TModuleErrorCode SendFontActivationError(unsigned int fontID, unsigned int conflictID, bool isConflictError);
  virtual TModuleErrorCode SendTrackFontClick(const std::string& message);
  // Queues `message` with one more font. An activation cancels a waiting deactivation of the font, every other message
  // a waiting activation. The message stays queued, with an empty list if its last font was cancelled.
  virtual TModuleErrorCode PushNotificationWithFontSet(unsigned int fontID, operatorIDs message,
                                                       std::set<unsigned int>& fonts);

  // Parses a message. The node belongs to the parser.
  static TModuleErrorCode GetJSONValueFromMessage(const std::string& message, Node& jsonValue, Parser& jsonObject);
  static TModuleErrorCode GetMessageFromJSONValue(const Node& jsonValue, std::string& message);
  static TModuleErrorCode PopulateJSONArrayFromSet(const std::set<unsigned int>& values, const Node& jsonArray);
  // Sends the object that a reply was built in.
  TModuleErrorCode SendReply(const Node& root);

 private:
  struct Handler;
  struct Family;

  static const Handler* FindHandler(operatorIDs operatorID);
  TModuleErrorCode QueueIfConnected(operatorIDs message);
  std::set<unsigned int>* FontSetOf(unsigned int message);
  TModuleErrorCode SendQueued(unsigned int message);
  TModuleErrorCode ActivateFamily(unsigned int fontID, const std::string& postScriptName,
                                  const std::string& displayName);
  TModuleErrorCode ActivateAndTell(const Family& family);
  void StorePendingLogin();

  std::set<unsigned int> mPendingNotifications;  // identifiers
  std::set<unsigned int> mActivatedFonts, mDeactivatedFonts, mMissingFonts, mNonCompliantFonts;
  std::map<std::string, std::string> mTempFiles;  // lists that the panel has not deleted: URL and path
  // The user's login, to be stored once it has succeeded. No message of today's panels sets them.
  platform::String mPendingAddress, mPendingPort, mPendingUsername;
};
