#include "frameworks/VelorantPlugins/HostDetails.h"

namespace {

void TakeText(const platform::Dictionary& details, const char* key, std::string& text) {
  const platform::String value = details.GetString(key);
  if (!value.IsEmpty()) text = value.Text();
}

// An unknown edition is shown by its bundle name.
std::string EditionName(const std::string& bundleName) {
  if (bundleName == "MarquinePrimePlugin") return "Marquine Prime";
  if (bundleName == "HarbinetPlugin") return "Harbinet";
  return bundleName;
}

// The plug-in passes an internal key for the host, which is not for the user.
std::string HostName(const std::string& key) { return key == "PhotoshopCC2020" ? "Document Host" : key; }

}  // namespace

HostDetails& HostDetails::Shared() {
  static HostDetails sShared;
  return sShared;
}

void HostDetails::Take(const platform::Dictionary& details) {
  std::string host;
  TakeText(details, "HostApp", host);
  if (!host.empty()) hostApp = HostName(host);
  TakeText(details, "PluginVersion", pluginVersion);
  TakeText(details, "VelorantPluginInterfaceVersion", interfaceVersion);
  std::string bundleName;
  TakeText(details, "FontManager", bundleName);
  if (!bundleName.empty()) fontManager = EditionName(bundleName);
}
