#include "Services/ProgressProperties.h"

#include "XCore/ECFExtensions/TextConversion.h"

ProgressProperties::ProgressProperties(int max) : mMax(max) {
  mProperties.SetIntForKey("MaxProgress", max);
  mProperties.SetIntForKey("CurrentProgress", 0);
  mProperties.SetBoolForKey("IsIndeterminate", false);
}

ProgressProperties::~ProgressProperties() = default;

void ProgressProperties::SetCurrentProgress(int current) { mProperties.SetIntForKey("CurrentProgress", current); }

FontProgressProperties::FontProgressProperties(int max, const std::string& windowTitle, const std::string& headerFormat)
    : ProgressProperties(max), mHeaderFormat(headerFormat) {
  mProperties.SetStringForKey("WindowTitle", windowTitle);
  mProperties.SetStringForKey("Status", "");
  FontProgressProperties::SetCurrentProgress(0);
}

void FontProgressProperties::SetCurrentProgress(int current) {
  if (current < GetMax()) {
    std::string header = mHeaderFormat;
    replaceAll(header, "%d", std::to_string(GetMax() - current));
    mProperties.SetStringForKey("Header", header);
  }
  ProgressProperties::SetCurrentProgress(current);
}

void FontProgressProperties::SetCurrentPostscriptName(const std::string& name) {
  mProperties.SetStringForKey("Status", name);
}
