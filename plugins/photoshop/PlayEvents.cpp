// Closes the current document and opens a path by playing the host's events.
#include <memory>

#include "Services/DiagnosticLog.h"
#include "Services/MarquineGlobals.h"
#include "photoshop/PhotoshopFontUtils.h"
#include "platform/Clock.h"

using namespace host_sdk;

std::unique_ptr<FontProgressProperties> PhotoshopFontUtils::pProgressProperties;

namespace {
constexpr int kProgressMax = 100;
}

void PhotoshopFontUtils::ResetForTesting() {
  pProgressProperties.reset();
  replaceSubstitutes = 0;
}

SPErr PhotoshopFontUtils::PlayeventClose() {
  const VPFInterfaceRef ui = MarquineGlobals::GetSharedVPFInterface();
  if (ui && !pProgressProperties) {
    pProgressProperties =
        std::make_unique<FontProgressProperties>(kProgressMax, ui->LocalizedString("FontActivationWindowTitle"),
                                                 ui->LocalizedString("FontActivationHeaderFormat"));
    pProgressProperties->GetProperties().SetBoolForKey("IsIndeterminate", true);
    ui->ShowProgress(*pProgressProperties);
    ui->UpdateProgress(*pProgressProperties);
    OutputIndentedAndFormattedString(0, "Indeterminate progress dialog created at %d",
                                     static_cast<int>(platform::Clock::WholeSeconds()));
  }
  ScopedDescriptor descriptor, result;
  SPErr error = sPSActionDescriptor->Make(descriptor.Out());
  if (error == kNoErr) {
    error = sPSActionDescriptor->PutEnumerated(descriptor.Get(), Code("Svng"), Code("YsN "), Code("N   "));
  }
  if (error == kNoErr) error = sPSActionControl->Play(Code("Cls "), descriptor.Get(), kSilentDialogMode, result.Out());
  return error;
}

SPErr PhotoshopFontUtils::PlayeventOpen(const std::string& path) {
  ScopedHandle alias;
  ScopedDescriptor descriptor, result;
  SPErr error = FullPathToAlias(path, alias.Out());
  if (error == kNoErr) error = sPSActionDescriptor->Make(descriptor.Out());
  if (error == kNoErr) error = sPSActionDescriptor->PutAlias(descriptor.Get(), Code("null"), alias.Get());
  if (error == kNoErr) error = sPSActionControl->Play(Code("Opn "), descriptor.Get(), kSilentDialogMode, result.Out());
  if (pProgressProperties) {
    MarquineGlobals::GetSharedVPFInterface()->HideProgress();
    pProgressProperties.reset();
    OutputIndentedAndFormattedString(0, "Indeterminate progress dialog destroyed at %d",
                                     static_cast<int>(platform::Clock::WholeSeconds()));
  }
  return error;
}
