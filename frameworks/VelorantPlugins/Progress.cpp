// The one progress window. Showing it again while it is open updates it.
#include "frameworks/VelorantPlugins/Exports.h"
#include "platform/Presenter.h"

using platform::Dictionary;
using platform::Value;

namespace {
bool sIsShown = false;
}  // namespace

void VPFShowProgress(platform::ValueRef progress) {
  const Dictionary shown(Value::Retain(progress));
  if (!shown) return;
  if (sIsShown) {
    platform::UpdateProgress(shown);
    return;
  }
  sIsShown = true;
  platform::ShowProgress(shown);
}

void VPFUpdateProgress(platform::ValueRef progress) {
  const Dictionary shown(Value::Retain(progress));
  if (shown && sIsShown) platform::UpdateProgress(shown);
}

void VPFHideProgress() {
  if (!sIsShown) return;
  sIsShown = false;
  platform::HideProgress();
}
