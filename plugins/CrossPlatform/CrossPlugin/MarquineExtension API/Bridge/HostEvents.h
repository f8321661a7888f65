// News that the host side forwards to the panels. The operations of HostAppInterface, the panel manager's fan-out and
// the panels' operations are generated from this one list.
//
// To add a push: a line here, its implementation in MarquinePanel's subclasses, and, if an event of the agent causes it, a
// line in AGENT_EVENTS and one in AgentNotificationResponses.cpp.
#pragma once

// X(operation of the host, operation of the panels, (parameters), arguments)
// clang-format off
#define HOST_EVENTS(X)                                                                                                 \
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
  X(PreviewPNGsRendered, SendFontImages, (const platform::Dictionary& fontPNGs), fontPNGs)                             \
  X(SmartListsChanged, PushSmartListsChangedNotification, (), )                                                        \
  X(OfflineDownloadFinished, PushOfflineDownloadFinishedNotification, (), )
// clang-format on
