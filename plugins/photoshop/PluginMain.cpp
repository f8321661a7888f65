// Starts and stops the services in their order, and dispatches the host's calls.
#include "photoshop/PluginMain.h"

#include <cstring>
#include <memory>

#include "Bridge/FontManagerInterface.h"
#include "Panel/PanelManager.h"
#include "Panel/SDKPlugPlug.h"
#include "Readers/CommonFunctionality.h"
#include "Readers/XMPFontMetadata.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "frameworks/PlugPlug/include/PanelEvents.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/MissingFontsWindow.h"
#include "photoshop/NotificationTimer.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "photoshop/PluginCommands.h"

using namespace host_sdk;

std::string gPluginFileName;

namespace {

constexpr int kGetSocketPortOperation = 4;
constexpr const char* kSuppressPanelLaunch = "SuppressPanelLaunch";

// The plug-in's globals, which the host keeps between calls.
struct Globals {
  uint64_t reserved;
  SPPluginRef plugin;
};
static_assert(sizeof(Globals) == 16);

Globals* gGlobals = nullptr;
bool gNotifierOn = false;  // all four notifiers have been added
int sNumberOfTimesStartupPluginHasBeenCalled = 0;
bool sentStartNotification = false;
bool registeredPlugPlug = false;
SDKPlugPlug sPPLib;

// Leaked on purpose: lives as long as the process, like the run loop that holds it.
auto& notificationTimer = *new std::unique_ptr<NotificationTimer>;

const CommonFunctionality::StaticPluginInitializer sInitializer("com.velorant.AutoActivationPlugin.PS21");

struct Notifier {
  FourCharCode event;
  NotifierCallback callback;
};

// Wraps a notifier: releases the host's suites at the end of the call, and turns a missing suite into the result.
template <NotifierCallback Handler>
SPErr Notified(FourCharCode event, PIActionDescriptor descriptor, int32_t options, void* userData) {
  const SuitesForOneCall suites;
  try {
    return Handler(event, descriptor, options, userData);
  } catch (unsigned int missingSuite) {
    return static_cast<SPErr>(missingSuite);
  }
}

constexpr Notifier kNotifiers[] = {
    {Code("Opn "), Notified<OpenEvent>},
    {Code("Mk  "), Notified<MakeEvent>},
    {Code("Cls "), Notified<CloseEvent>},
    {Code("save"), Notified<SaveEvent>},
};

// Asks the host to open the panel, once per user. Returns true if the event was sent or must not be sent.
bool SendStartNotification(const VPFInterfaceRef& ui) {
  sPPLib.Load();
  if (ui->GetPreferenceForKey(kSuppressPanelLaunch)) return true;
  const csxs::event::Event event{panel_events::kStartPanel, panel_events::kApplicationScope, "test", nullptr, ""};
  const bool isSent = sPPLib.DispatchEvent(&event) == csxs::event::kEventErrorCode_Success;
  ui->SetPreferenceForKey(kSuppressPanelLaunch, isSent);
  if (!isSent) sPPLib.Unload();
  return isSent;
}

void processNotifications(platform::RunLoopTimer&, void*) {
  if (!sentStartNotification) {
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (ui && ui->IsValid()) sentStartNotification = SendStartNotification(ui);
  }
  PanelManager* panels = PanelManager::GetSharedInstance();
  // A host without an event service is not asked again: no later tick would load it.
  if (sentStartNotification && !registeredPlugPlug && sPPLib.IsUsable()) {
    registeredPlugPlug = panels->RegisterPlugPlug(&sPPLib) == 0;
  }
  if (FontManagerInterface::sm_pFontManager) FontManagerInterface::sm_pFontManager->ProcessNotifications();
  panels->SelectSocket(true);
  panels->PopNotifications();
}

// A shorter delay is raised to the default at every start; a longer one stays. "RMF4" is the key of an earlier release.
// It is raised as well, although only "RMF5" is read.
void RaiseReplaceDelays() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui) return;
  for (const char* key : {"RMF4", kVPFPreference_PhotoshopRMFDelayMilliseconds}) {
    if (ui->GetLongPreferenceForKey(key) < kPhotoshopDefaultRMFDelayMilliseconds) {
      ui->SetLongPreferenceForKey(key, kPhotoshopDefaultRMFDelayMilliseconds);
    }
  }
}

SPErr AddNotifiers() {
  for (const Notifier& notifier : kNotifiers) {
    const SPErr error = sPSActionControl->AddNotify(gPlugInRef, notifier.event, notifier.callback, nullptr);
    if (error != kNoErr) return error;
  }
  gNotifierOn = true;
  return kNoErr;
}

// Stops at the first error. A missing suite is such an error; it is returned, so that the caller still ends the XMP
// library.
SPErr RemoveNotifiers() {
  if (!sPSActionControl.IfPresent()) return sPSActionControl.GetLastError();
  for (const Notifier& notifier : kNotifiers) {
    const SPErr error = sPSActionControl->RemoveNotify(gPlugInRef, notifier.event, notifier.callback);
    if (error != kNoErr) return error;
  }
  return kNoErr;
}

const SPBlocksSuite* AcquireBlocks() {
  const void* suite = nullptr;
  sSPBasic->AcquireSuite(kSPBlocksSuite, kSPBlocksSuiteVersion, &suite);  // a missing suite is noticed on use
  return static_cast<const SPBlocksSuite*>(suite);
}

void ReleaseBlocks(const void* suite) {
  PhotoshopFontUtils::ReleaseSuite(kSPBlocksSuite, kSPBlocksSuiteVersion, &suite);
}

const SPBlocksSuite* AcquireBlocksForStart() {
  try {
    return AcquireBlocks();
  } catch (int error) {
    OutputIndentedAndFormattedString(0, "EXCEPTION: SPErr from AcquireSuite(kSPBlocksSuite)");
    PhotoshopFontUtils::ThrowSPErr(error);
    return nullptr;
  }
}

void AllocateGlobals(const SPBlocksSuite* blocks, SPMessageData* message) {
  void* block = nullptr;
  const SPErr error = blocks ? blocks->AllocateBlock(sizeof(Globals), "globals", &block) : kSuiteNotFound;
  // Thrown as a long, which passes through StartupPlugin to the host.
  PhotoshopFontUtils::ThrowSPErr(error);
  if (!block) return PhotoshopFontUtils::ThrowSPErr(kBadParameters);
  std::memset(block, 0, sizeof(Globals));
  gGlobals = static_cast<Globals*>(block);
  message->globals = gGlobals;
  gGlobals->plugin = gPlugInRef;
}

// Returns false if the start failed. Throws the host's error code if a suite is missing.
bool StartServices() {
  SwizzleNSWindowOrderOverride();
  MarquineGlobals::SetSuppressingHostAppDialogs(true);
  // Open the panel's socket before anything that can fail.
  PanelManager::GetSharedInstance()->OpenSocket();
  notificationTimer = std::make_unique<NotificationTimer>();
  notificationTimer->initWithCallback(processNotifications);
  if (CommonFunctionality::Startup(true) != CoreErrorCodes::kSuccess) return false;
  CommonFunctionality::InitializeCommonPreferences();
  RaiseReplaceDelays();
  return true;
}

SPErr StartupPlugin(SPMessageData* message) {
  if (sNumberOfTimesStartupPluginHasBeenCalled++ > 0) return kNoErr;
  const SPBlocksSuite* blocks = AcquireBlocksForStart();
  AllocateGlobals(blocks, message);
  bool hasStarted = false;
  try {
    hasStarted = StartServices();
  } catch (unsigned int) {
    // A suite is missing.
  }
  // Without services the plug-in stays loaded but idle; its commands tell the user what is wrong.
  if (!hasStarted) OutputIndentedAndFormattedString(0, "StartupPlugin, after catching an error\n");
  ReleaseBlocks(blocks);
  return gNotifierOn ? kNoErr : AddNotifiers();
}

SPErr ShutDownServices(SPMessageData* message) {
  MarquineGlobals::SetSuppressingHostAppDialogs(false);
  FontManagerInterface::OnHostAppShuttingDown(false);
  MarquineGlobals::CleanUpOnShutdown();
  // A missing block is not an error: the start may have failed before it.
  const SPBlocksSuite* blocks = AcquireBlocks();
  if (blocks && gGlobals) blocks->FreeBlock(gGlobals);
  gGlobals = nullptr;
  message->globals = nullptr;
  ReleaseBlocks(blocks);
  if (!gNotifierOn) return kNoErr;  // leaves the XMP library initialized
  const SPErr error = RemoveNotifiers();
  TerminateGlyphsureXMP();
  return error;
}

SPErr ShutdownPlugin(SPMessageData* message) {
  try {
    return ShutDownServices(message);
  } catch (int error) {
    return error;
  } catch (unsigned int missingSuite) {
    return static_cast<SPErr>(missingSuite);
  } catch (...) {
    return -1;  // tells the host that the shutdown failed
  }
}

SPErr DoIt(void*, PIActionParameters* parameters) {
  if (!parameters) return kBadParameters;
  int32_t operation = 0;
  HostValue value;
  value.integer = &operation;
  const SPErr error = PIUGetSingleItemFromDescriptor(parameters->descriptor, Code("Oper"), value);
  sPSActionDescriptor->Clear(parameters->descriptor);
  if (error == kNoErr && operation == kGetSocketPortOperation) {
    const auto port = static_cast<int32_t>(PanelManager::GetSharedInstance()->GetSocketPort());
    sPSActionDescriptor->PutInteger(parameters->descriptor, Code("SPor"), port);
    return kNoErr;
  }
  return HandleCommandBoxAction();
}

SPErr Dispatch(const char* caller, const char* selector, SPMessageData* message) {
  SPErr error = kNoErr;
  if (sSPBasic->IsEqual(caller, kCallerInterface)) {
    if (sSPBasic->IsEqual(selector, "About")) {
      ShowAbout();
    } else if (sSPBasic->IsEqual(selector, "Startup")) {
      error = StartupPlugin(message);
    } else if (sSPBasic->IsEqual(selector, "Shutdown")) {
      error = ShutdownPlugin(message);
    }
  }
  if (sSPBasic->IsEqual(caller, kCallerHost) && sSPBasic->IsEqual(selector, "Do It")) {
    error = DoIt(nullptr, message->actionParameters);
  }
  return error;
}

}  // namespace

void ResetPluginMainForTesting() {
  PanelManager::GetSharedInstance()->ResetForTesting();
  notificationTimer.reset();
  gGlobals = nullptr;
  gNotifierOn = sentStartNotification = registeredPlugPlug = false;
  sNumberOfTimesStartupPluginHasBeenCalled = 0;
  sSPBasic = nullptr;
  gPlugInRef = nullptr;
}

int32_t AutoPluginMain(const char* caller, const char* selector, void* messageData) {
  const SuitesForOneCall suites;
  SPErr error = kNoErr;
  if (auto* message = static_cast<SPMessageData*>(messageData)) {
    sSPBasic = message->basic;
    gPlugInRef = message->self;
    try {
      error = Dispatch(caller, selector, message);
    } catch (unsigned int missingSuite) {
      error = static_cast<SPErr>(missingSuite);
    }
  }
  return error;
}
