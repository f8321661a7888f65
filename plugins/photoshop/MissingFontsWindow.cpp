#include "photoshop/MissingFontsWindow.h"

#include <algorithm>

#include "Bridge/FontManagerInterface.h"
#include "Documents/AllTrackedDocuments.h"
#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "photoshop/DocumentEvents.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "photoshop/ReplaceMissingFonts.h"

using platform::Window;
using platform::WindowOrdering;

namespace {

constexpr size_t kFewestSubviews = 4;
constexpr size_t kCancelButtonIndex = 2;
constexpr int kEscapeKeyCode = 53;
constexpr int kAlertAnswered = 1000;

// Before the exchange our override, afterwards the platform's own method.
platform::OrderWindowMethod sOtherMethod = &orderOverrideWindow;
platform::RunModalMethod sOtherRunModal = &runModalOverride;

FontManagerInterface* Manager() { return FontManagerInterface::sm_pFontManager.get(); }

// Returns whether to dismiss the window of a document in this state. Traces the reason if not.
bool ShouldDismiss(const std::string& title, OneTrackedDocument* document) {
  if (!PhotoshopFontUtils::isCurrentDocumentBeingOpened(document)) {
    OutputIndentedAndFormattedString(
        0, "Ignoring window '%s' because '%s' is not an existing document in the process of being opened.",
        title.c_str(), document->GetDocumentFilePath().c_str());
    return false;
  }
  if (document->GetHasMissingFonts()) {
    OutputIndentedAndFormattedString(0, "Ignoring window '%s' because '%s' has missing fonts.", title.c_str(),
                                     document->GetDocumentFilePath().c_str());
    return false;
  }
  const platform::Array unresolved = document->GetUnresolvedFonts();
  if (unresolved.Count() > 0) {
    OutputIndentedAndFormattedString(0, "Ignoring window '%s' because '%s' has %d unresolved font problems.",
                                     title.c_str(), document->GetDocumentFilePath().c_str(),
                                     static_cast<int>(unresolved.Count()));
    return false;
  }
  return true;
}

OneTrackedDocument* FindCurrentDocument(const std::string& title) {
  int id = 0;
  PhotoshopFontUtils::GetCurrentDocumentID(&id);
  OneTrackedDocument* document =
      id != 0 ? AllTrackedDocuments::FindTrackedDocumentByHandle(id) : AllTrackedDocuments::GetCurrentDocument();
  if (document) return document;
  if (id != 0) {
    OutputIndentedAndFormattedString(0, "Ignoring window '%s' because document ID 0x%08x is not yet being tracked.",
                                     title.c_str(), static_cast<unsigned>(id));
  }
  OutputIndentedAndFormattedString(0, "Ignoring window '%s' because no document appears to have been opened.",
                                   title.c_str());
  return nullptr;
}

void SuppressIfSolved(Window& window) {
  // The host has not announced the open yet, so the fonts get activated here.
  DetectAndHandleNewlyOpenedDocuments(false);
  const std::string title = window.Title();
  OneTrackedDocument* document = FindCurrentDocument(title);
  if (!document || !ShouldDismiss(title, document)) return;
  OutputIndentedAndFormattedString(0, "Attempting to suppress '%s'", title.c_str());
  const bool dismissed = clickPSMissingFontsWindowCancelButton(window);
  OutputIndentedAndFormattedString(
      0, dismissed ? "Dismissed '%s' by clicking Cancel button." : "Tried but failed to click Cancel button in '%s'",
      title.c_str());
}

}  // namespace

void SwizzleNSWindowOrderOverride() { platform::ExchangeOrderWindowMethod(sOtherMethod); }

void SwizzleNSAlertRunModal() { platform::ExchangeRunModalMethod(sOtherRunModal); }

void ResetMissingFontsWindowForTesting() {
  if (sOtherRunModal != &runModalOverride) platform::ExchangeRunModalMethod(sOtherRunModal);
  if (sOtherMethod != &orderOverrideWindow) platform::ExchangeOrderWindowMethod(sOtherMethod);
  ResetReplaceMissingFontsForTesting();
}

const std::vector<std::string>& suppressibleTitles() {
  static const std::vector<std::string> sTitles = {
      "Missing Fonts",      "Missing fonts",      "Fehlende Schriften",     "Fehlende schriften",
      "Polices manquantes", "Polices Manquantes", "Fuentes no disponibles", "Fuentes no Disponibles",
      "Fontes Ausentes",    "Fontes ausentes",    "Font Mancanti",          "Font mancanti",
      "フォント",
  };
  return sTitles;
}

bool hasSuppressibleTitle(const Window& window) {
  const auto& titles = suppressibleTitles();
  return std::any_of(titles.begin(), titles.end(),
                     [&](const std::string& title) { return window.Title().find(title) != std::string::npos; });
}

bool isSuppressibleWindow(const Window& window) {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !ui->IsValid() || !ui->GetEnabledAutoActivationPref()) return false;
  if (!MarquineGlobals::GetSuppressingHostAppDialogs() || !Manager()) return false;
  return Manager()->IsLoggedIn() && hasSuppressibleTitle(window);
}

bool clickPSMissingFontsWindowCancelButton(Window& window) {
  const auto& subviews = window.ContentSubviews();
  if (subviews.size() < kFewestSubviews || subviews[kCancelButtonIndex].className != "NSButton") return false;
  // The layout check only looks at the button; the Escape key dismisses the window.
  platform::KeyEvent event;
  event.windowNumber = window.Number();
  event.characters = event.charactersIgnoringModifiers = "\x1B";
  event.keyCode = kEscapeKeyCode;
  OutputIndentedAndFormattedString(0, "Suppressing missing fonts dialog with fake esc key press");
  window.SendEvent(event);
  return true;
}

void orderOverrideWindow(Window& window, WindowOrdering place, int relativeTo) {
  // Cheap tests first: this runs for every window.
  if (MarquineGlobals::ArePluginServicesEnabled() && MarquineGlobals::GetSuppressingHostAppDialogs() &&
      isSuppressibleWindow(window)) {
    const SuitesForOneCall suites;
    try {
      SuppressIfSolved(window);
    } catch (unsigned int missingSuite) {
      OutputIndentedAndFormattedString(0, "Ignoring window '%s' because the host lacks a suite (0x%08x).",
                                       window.Title().c_str(), missingSuite);
    }
  }
  sOtherMethod(window, place, relativeTo);
}

int runModalOverride(platform::Alert& alert) {
  const struct Counter {
    Counter() { ++gShowingAlertCallCounter; }
    ~Counter() { --gShowingAlertCallCounter; }
  } counter;
  if (gShowingAlertCallCounter > 1) return 0;
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (!ui || !ui->IsValid() || !ui->GetEnabledAutoActivationPref() || !MarquineGlobals::ArePluginServicesEnabled() ||
      !Manager() || !Manager()->IsLoggedIn()) {
    return sOtherRunModal(alert);
  }
  const bool isOfMissingFonts =
      alert.MessageText().find(ui->LocalizedString("PhotoshopMissingFonts")) != std::string::npos;
  return isOfMissingFonts ? kAlertAnswered : sOtherRunModal(alert);
}
