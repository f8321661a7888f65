// Initialization of the framework, the details of the host, and texts.
#include <string_view>

#include "frameworks/VelorantPlugins/Exports.h"
#include "frameworks/VelorantPlugins/HostDetails.h"
#include "frameworks/VelorantPlugins/Preferences.h"
#include "frameworks/VelorantPlugins/Texts.h"

using platform::Dictionary;
using platform::String;
using platform::Value;

namespace {
constexpr int32_t kNoDetails = 1;
}  // namespace

int32_t VPFIsVersionCompatible(const char* version) { return version && std::string_view(version) == "1.0" ? 1 : 0; }

// A second call starts anew, with the current details, language and preferences file.
int32_t VPFInitializeFramework(platform::ValueRef hostDetails) {
  const Dictionary details(Value::Retain(hostDetails));
  if (!details) return kNoDetails;
  HostDetails::Shared() = HostDetails();
  HostDetails::Shared().Take(details);
  texts::ChooseLanguage();
  Preferences::Shared().Reset();
  Preferences::Shared().Override(details.GetDictionary("PreferenceOverrides"));
  return 0;
}

platform::ValueRef VPFLocalizedString(const char* key) {
  return key ? String::FromUTF8(texts::Localized(key)).Release() : nullptr;
}

void VPFSetIsOnline(int8_t isOnline) { HostDetails::Shared().isOnline = isOnline != 0; }

void VPFSetHostDetails(platform::ValueRef given) {
  const Dictionary details(Value::Retain(given));
  HostDetails::Shared().Take(details);
  Preferences::Shared().Override(details.GetDictionary("PreferenceOverrides"));
}
