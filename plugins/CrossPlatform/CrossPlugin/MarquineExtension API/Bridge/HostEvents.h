// News that the host side forwards to the panels. The operations of HostAppInterface, the panel manager's fan-out and
// the panels' operations are generated from this one list.
//
// To add a push: a line in NOTICE_EVENTS, its implementation in Panel/PanelNotifications.cpp, and, if an event of the
// agent causes it, a line in AGENT_EVENTS and one in AgentNotificationResponses.cpp.
#pragma once

// X(operation of the host, operation of the panels, (parameters), arguments)
// clang-format off
// These are messages of the protocol, the same for every panel.
#define NOTICE_EVENTS(X)                                                                                               \
  X(HandlePanelDataChanged, PushDataChangedNotification, (), )                                                         \
  X(SetIsOnline, PushOnlineStateChangedNotification, (bool isOnline), isOnline)                                        \
  X(FontActivated, PushFontActivatedNotification, (unsigned int fontID), fontID)                                       \
  X(DesignActivationFailedComplianceCheck, PushFontNonCompliantNotification, (unsigned int fontID), fontID)            \
  X(FontDeactivated, PushFontDeactivatedNotification, (unsigned int fontID), fontID)                                   \
  X(FontMissing, PushFontMissingNotification, (unsigned int fontID), fontID)                                           \
  X(BulkReplicationProgress, PushBulkReplicationProgressNotification, (const platform::Dictionary& details), details)  \
  X(BulkReplicationStopped, PushBulkReplicationStoppedNotification, (), )                                              \
  X(IncrementalReplicationProgress, PushIncrementalReplicationProgressNotification,                                    \
    (const platform::Dictionary& details), details)                                                                    \
  X(IncrementalReplicationStopped, PushIncrementalReplicationStoppedNotification, (), )                                \
  X(GoogleReplicationProgress, PushGoogleReplicationProgressNotification,                                              \
    (const platform::Dictionary& details), details)                                                                    \
  X(GoogleReplicationStopped, PushGoogleReplicationStoppedNotification, (), )                                          \
  X(GoogleWebFontsEnabled, PushGoogleWebFontsEnabledNotificaton, (bool enabled), enabled)                              \
  X(FontServerReplicationProgress, PushFontServerReplicationProgressNotification,                                      \
    (const platform::Dictionary& details), details)                                                                    \
  X(FontServerReplicationStopped, PushFontServerReplicationStoppedNotification, (), )                                  \
  X(SmartListsChanged, PushSmartListsChangedNotification, (), )                                                        \
  X(OfflineDownloadFinished, PushOfflineDownloadFinishedNotification, (), )
// Each kind of panel sends images in a form of its own.
#define IMAGE_EVENTS(X) X(PreviewPNGsRendered, SendFontImages, (const platform::Dictionary& fontPNGs), fontPNGs)
#define HOST_EVENTS(X) \
  NOTICE_EVENTS(X)     \
  IMAGE_EVENTS(X)
// clang-format on
