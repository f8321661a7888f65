#include "frameworks/VelorantPlugins/Texts.h"

namespace texts {

namespace {

constexpr Text kTexts[] = {
    // Message boxes.
    {"FontManagerNotFoundHeader", "[FONT_MANAGER_MODIFIER] is not running"},
    {"FontManagerNotFoundMessage",
     "The auto-activation plug-in cannot reach the font manager. No fonts are activated until you restart [host app]."},
    {"MarquineOldVersionHeader", "[FONT_MANAGER_MODIFIER] cannot be used"},
    {"MarquineOldVersionMessage",
     "No font manager that this plug-in can work with is running. No fonts are activated until you restart [host app]."},
    {"ConnectionLostHeader", "Connection lost"},
    {"ConnectionLostMessage",
     "The connection to the font server was lost. Fonts that are not on this computer cannot be activated until it is "
     "back."},
    {"NotLoggedInHeader", "Not logged in"},
    {"NotLoggedInPluginDisabledMessage",
     "You are not logged in to the font server. The auto-activation plug-in stays off until you log in."},
    {"NotLoggedInOfferLoginMessage", "You are not logged in to the font server. Do you want to log in now?"},
    {"LoggedOffHeader", "Logged off"},
    {"LoggedOffPluginDisabledMessage",
     "You were logged off from the font server. The auto-activation plug-in stays off until you log in again."},
    {"LoggedOffOfferLoginMessage", "You were logged off from the font server. Do you want to log in again?"},
    {"MPCoreAgentMissingHeader", "[FONT_MANAGER_MODIFIER] cannot be started"},
    {"MPCoreAgentMissingMessage",
     "The font manager is not running and could not be started. Try again, or cancel to go on without auto-activation."},
    {"HBCoreAgentMissingHeader", "The [FONT_MANAGER_MODIFIER] client cannot be started"},
    {"HBCoreAgentMissingMessage",
     "The font server's client is not running and could not be started. Try again, or cancel to go on without "
     "auto-activation."},
    {"GoOnlineErrorHeader", "Cannot go online"},
    {"GoOnlineErrorMessage", "The font server cannot be reached. Check the network connection and try again."},
    {"MustBeOnlineMessage", "This can only be done online. Go online and try again."},
    {"SomeFontsOfflineHeader", "Some fonts are not on this computer"},
    {"SomeFontsOfflineMessage",
     "Some of the document's fonts are only on the font server. Do you want to go online and activate them?"},
    {"NoLibrariesHeader", "No font library"},
    {"NoLibrariesMessage",
     "There is no font library to activate fonts from. Give [host app] a folder of fonts as its library, then restart it."},
    {"NoWorkgroupsHeader", "No workgroup"},
    {"NoWorkgroupsMessage", "You are in no workgroup. Ask the administrator of your font server to add you to one."},
    {"CannotExportHeader", "The fonts cannot be collected"},
    {"CannotExportMessage",
     "The fonts of this document cannot be collected: it has no file yet, or you lack the permission to export its "
     "fonts."},
    {"MissingFontsExportHeader", "Some fonts are missing"},
    {"MissingFontsExportMessage", "Not all of the document's fonts were found. The others are collected."},
    {"MissingFontsOfflineExportMessage",
     "Not all of the document's fonts were found, because you work offline. The others are collected."},
    {"SetNameTooLongHeader", "The name is too long"},
    {"SetNameTooLongMessage", "The name of the set was shortened."},
    {"MPCoreAgentOutOfSyncHeader", "The versions do not match"},
    {"MPCoreAgentOutOfSyncMessage",
     "[FONT_MANAGER_MODIFIER] and this plug-in are of different versions. Update both, then restart [host app]."},
    {"HBCoreAgentOutOfSyncHeader", "The versions do not match"},
    {"HBCoreAgentOutOfSyncMessage",
     "The [FONT_MANAGER_MODIFIER] client and this plug-in are of different versions. Ask your administrator for an "
     "update, then restart [host app]."},
    {"FontVaultClosedMsg", "The font vault is closed. No fonts are activated until you restart [host app]."},
    {"VaultNeedsUpgradeTitle", "The font vault cannot be used"},
    {"VaultNeedsUpgradeMessage",
     "The font vault was made by another version of the font manager. The font manager's log, agent.log, says more. No fonts are activated until you restart [host app]."},
    {"CouldNotOpenVaultInUseLaunchPrefs",
     "The font vault “%@” is in use by another program. Close that program, then restart [host app]."},
    {"CouldNotOpenVaultLaunchPrefs",
     "The font vault “%@” could not be opened. The font manager's log, agent.log, gives the reason. No fonts are activated until you restart [host app]."},
    {"SomeLayersMissingFontsMessage", "Some layers of this document use fonts that were not found."},
    {"CommandNotAvailableHeader", "This command is not available"},
    {"CreateDocSetNotAvailableMessage",
     "A set belongs to one workgroup or library. Choose a single one and try again."},

    // Progress.
    {"FontActivationWindowTitle", "Activating Fonts"},
    {"FontActivationHeaderFormat", "Fonts still to be activated: %d"},
    {"FontDeactivationWindowTitle", "Deactivating Fonts"},
    {"FontDeactivationHeaderForDoc", "Fonts of the closed document still to be deactivated: %d"},
    {"FontDeactivationHeaderForQuit", "Fonts still to be deactivated before quitting: %d"},

    // Names of workgroups.
    {"AllServerFontsWorkgroup", "All Server Fonts"},
    {"ServerBasedPersonalWorkgroup", "Personal (on the server)"},
    {"LocalPersonalWorkgroup", "Personal (on this computer)"},
    {"SystemWorkgroup", "System Fonts"},
    {"MasterGoogleFontsLibrary", "Google Fonts"},
    {"Font Library", "Font Library"},
    {"All Libraries", "All Libraries"},
    {"All Workgroups", "All Workgroups"},

    // Commands on documents.
    {"PhotoshopMissingFonts", "Missing Fonts"},
    {"[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]",
     "[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]"},
    {"Enter name of new folder.  Collected fonts will be placed here.",
     "Enter the name of a new folder. The collected fonts are placed in it."},
    {"%@'s fonts", "%@'s fonts"},
    {"Create a [FONT_MANAGER_MODIFIER] set for this document's fonts?",
     "Create a [FONT_MANAGER_MODIFIER] set for this document's fonts?"},
    {"Set Name:", "Set Name:"},

    // Buttons.
    {"OK", "OK"},
    {"Cancel", "Cancel"},
    {"Close", "Close"},
    {"Try Again", "Try Again"},
    {"Log In", "Log In"},
    {"Go Online", "Go Online"},
    {"Stay Offline", "Stay Offline"},
    {"Use Choices", "Use Choices"},
    {"Check Document Fonts", "Check Document Fonts"},
    {"Make Document Set", "Make Document Set"},
    {"Collect for Output", "Collect for Output"},
    {"Preferences", "Preferences"},
    {"About", "About"},

    // The other boxes.
    {"AboutPluginVersion", "Plug-in version %@"},
    {"AboutInterfaceVersion", "Font manager interface version %@"},
    {"ResolveFontsHeader", "Choose fonts for this document"},
    {"ResolveFontsMessage",
     "These fonts have no certain match. Choose one for each; a font left without a choice is left to [host app]."},
    {"FontVersion", "version %@"},
    {"FontIsActive", "active"},
    {"FontNotFound", "not found"},
    {"RestrictedFontsHeader", "Some fonts are restricted"},
    {"RestrictedFontsMessage",
     "You lack the permission to activate these fonts, so none of the document's fonts was activated."},
    {"MissingFontsHeader", "Some fonts are missing"},
    {"MissingFontsMessage", "These fonts of the document were not found."},
    {"SelectWorkgroupHeader", "Choose a workgroup"},
    {"SelectWorkgroupMessage", "Fonts are activated from the workgroup or library that you choose."},
    {"WorkingOnline", "You work online."},
    {"WorkingOffline", "You work offline."},

    // Labels of preferences.
    {"PreferencesHeader", "Auto-Activation Preferences"},
    {"EnablePluginLabel", "Activate fonts automatically"},
    {"EnableGlyphsureLabel", "Store identification data in documents and use it"},
    {"PickBestMatchLabel", "Choose the best match without asking"},
    {"SupportEmbeddedObjectsLabel", "Look into embedded objects"},
    {"ActivateEntireFamiliesLabel", "Activate whole families"},
    {"ActivateLocallyLabel", "Activate for preview only"},
    {"ActivateGloballyLabel", "With preview: activate for all programs as well"},
    {"CloseFontsOnDocCloseLabel", "Deactivate a document's fonts when it is closed"},
    {"CloseFontsOnHostAppQuitLabel", "Deactivate fonts when [host app] quits"},
    {"SuppressHostAppDialogsLabel", "Hide the missing-fonts window of [host app]"},
    {"SuppressPluginCoreDialogsLabel", "Hide messages about the font manager"},
    {"RMF5Label", "Milliseconds before a document is reopened with its fonts"},
    {"EnableLoggingLabel", "Keep a diagnostic log"},
};

}  // namespace

const std::span<const Text> kEnglish = kTexts;

}  // namespace texts
