#include "photoshop/PluginCommands.h"

#include "Bridge/CoreAgentInterface.h"
#include "Bridge/CoreAgentSupport.h"
#include "Documents/AllTrackedDocuments.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "XCore/ECFExtensions/TextConversion.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "photoshop/ReplaceMissingFonts.h"

using namespace host_sdk;
using platform::Array;
using platform::Dictionary;

namespace {

constexpr SPErr kNothingToCommand = static_cast<SPErr>(Code("fbar"));
constexpr long kLocalPersonalType = 3;

FontManagerInterface* Manager() { return FontManagerInterface::sm_pFontManager.get(); }

VPFDictionary MakeBox(const VPFInterfaceRef& ui) {
  VPFDictionary box;
  Array workgroups;
  if (Manager()->GetAllWorkgroupsForUser(&workgroups, true, false, false) == 0) {
    for (size_t i = 0; i < workgroups.Count(); ++i) {
      VPFDictionary workgroup{Dictionary(workgroups.At(i))};
      workgroup.SetBoolForKey("IsLocalPersonal", WorkgroupTypeOf(workgroup.GetDictionary()) == kLocalPersonalType);
    }
    box.SetArrayForKey("Workgroups", workgroups);
  }
  box.SetIntForKey("CurrentWorkgroupID", Manager()->GetCurrentWorkgroupID());
  box.SetBoolForKey("ButtonsEnabled",
                    ui->GetEnabledAutoActivationPref() && !AllTrackedDocuments::GetDocumentList().empty());
  box.SetBoolForKey("IsOnline", Manager()->IsOnline());
  return box;
}

// Returns true if the box should be shown again.
bool RunCommand(int code) {
  switch (code) {
    case kVPFCommandAbout: ShowAbout(); return true;
    case kVPFCommandPreferences: ShowPreferences(); return true;
    case kVPFCommandCollectForOutput: DoCollectForOutput(); return false;
    case kVPFCommandMakeDocumentSet: DoMakeDocumentSet(); return false;
    case kVPFCommandCheckDocumentFonts: DoCheckDocFonts(); return false;
    default: return false;
  }
}

// Tells the user why the command cannot run. Returns false if it can.
bool IsBlocked(const VPFInterfaceRef& ui) {
  if (!Manager()->IsLoggedIn()) {
    ui->ShowNotLoggedInMessageBox(false);
  } else if (!Manager()->RunningStandalone() && !Manager()->CheckForWorkgroups()) {
    ui->ShowNoWorkgroupsMessageBox();
  } else if (!MarquineGlobals::ArePluginServicesEnabled()) {
    ui->ShowFontManagerNotFoundMessageBox();
  } else {
    return false;
  }
  return true;
}

}  // namespace

SPErr HandleCommandBoxAction() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!Manager() || !ui) return kNothingToCommand;
  if (!ui->IsValid()) {
    VPFInterface::ShowVPFNotFoundMessageBox();
    return kNoErr;
  }
  bool again = true;
  while (again && !IsBlocked(ui)) {
    const VPFDictionary box = MakeBox(ui);
    int choice = Manager()->GetCurrentWorkgroupID();
    const int code = ui->ShowCommandBox(box.GetDictionary(), choice);
    // Store the choice before the command runs, because the command works in the chosen workgroup.
    if (code != kVPFCommandCancelled) Manager()->SetDefaultWorkgroupID(choice);
    again = RunCommand(code);
  }
  return kNoErr;
}

void DoCheckDocFonts() {
  const TracedCall traced("HandleCheckDocFontsCommand", "Entering %s()", __func__);
  if (!FontManagerInterface::AutoActivationIsReady()) return;
  std::string path;
  if (PhotoshopFontUtils::GetCurrentDocumentPathTracked(&path) != kNoErr) return;
  OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (!document) return;
  const std::shared_ptr<OneTrackedDocument> hold = document->Hold();
  int count = 0;
  ActivateFontsForDocument(false, count, document->GetDocumentFilePath(), document);
  if (count < 1 || document->GetHasMissingFonts()) return;
  int id = 0;
  PSDocumentSuite::GetCurrentDocument(id);
  DeferredReplaceMissingFonts(id);
}

void DoMakeDocumentSet() {
  if (!Manager() || !Manager()->ConnectedToCoreAgent()) return;
  const int workgroupID = Manager()->GetCurrentWorkgroupID();
  if (Manager()->IsAllWorkgroupsSelected()) {
    // A set belongs to one workgroup.
    const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
    if (ui->IsValid()) ui->ShowMessageBox("CommandNotAvailableHeader", "CreateDocSetNotAvailableMessage", 0);
    return;
  }
  std::string path;
  if (PhotoshopFontUtils::GetCurrentDocumentPathTracked(&path) != kNoErr) return;
  Array fonts;
  bool allFound = false;
  CreateGlyphsureDataForDocument(path, fonts, workgroupID, true, allFound);
  const platform::String name = CFStringCreateWithUncertainEncoding(PhotoshopFontUtils::FileNameOnly(path).c_str());
  if (name) Manager()->MakeSetForDocumentFonts(name, fonts);
}

void DoCollectForOutput() {
  constexpr const char* kName = "HandleCollectForOutputCommand";
  const TracedCall traced(kName, "Entering %s", kName);
  if (!Manager() || !Manager()->ConnectedToCoreAgent()) return;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  const int workgroupID = Manager()->GetCurrentWorkgroupID();
  std::string path;
  const SPErr error = PhotoshopFontUtils::GetCurrentDocumentPathTracked(&path);
  const OneTrackedDocument* document = AllTrackedDocuments::FindTrackedDocumentByPath(path);
  if (!document) OutputIndentedAndFormattedString(0, "*** Hmm, OpenDocument::FindCurrentDocument() returned NULL!");
  if (!document || (!Manager()->RunningStandalone() && !document->GetCanExportFontsForDocument())) {
    ui->ShowCannotExportMessageBox();
    return;
  }
  const std::string identifier = document->GetIdentifier();
  Array fonts;
  bool allFound = false;
  CreateGlyphsureDataForDocument(path, fonts, workgroupID, true, allFound);
  // Collect the other fonts anyway.
  if (!allFound) ui->ShowFontsMissingForExportMessageBox(!Manager()->IsOnline());
  if (error == kNoErr) {
    Manager()->CollectFontsUsedByCurrentDocument(PhotoshopFontUtils::FileNameOnly(path), identifier, fonts);
  }
}

void ShowAbout() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (ui && ui->IsValid()) ui->ShowAboutBox();
}

void ShowPreferences() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (ui && ui->IsValid()) ui->ShowPreferences();
}
