// What the plug-in reported about its host and the font manager. Main thread only.
#pragma once

#include <string>

#include "platform/Value.h"

struct HostDetails {
  static HostDetails& Shared();

  // Takes the keys that are present and keeps the other values: "HostApp", "PluginVersion",
  // "VelorantPluginInterfaceVersion", "FontManager" (the bundle name of an edition of the font manager).
  void Take(const platform::Dictionary& details);

  std::string hostApp = "Document Host";  // shown to the user
  std::string pluginVersion;
  std::string interfaceVersion;
  std::string fontManager = "Velorant";  // the edition's name, shown to the user
  bool isOnline = false;
};
