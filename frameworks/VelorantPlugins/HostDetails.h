// What the plug-in told about its host and about the font manager behind it. Main thread only.
#pragma once

#include <string>

#include "platform/Value.h"

struct HostDetails {
  static HostDetails& Shared();

  // Takes the keys that are there and leaves the others: "HostApp", "PluginVersion", "VelorantPluginInterfaceVersion",
  // "FontManager" (the bundle name of an edition of the font manager).
  void Take(const platform::Dictionary& details);

  std::string hostApp = "Document Host";  // the name, as the user reads it
  std::string pluginVersion;
  std::string interfaceVersion;
  std::string fontManager = "Velorant";  // the edition's name, as the user reads it
  bool isOnline = false;
};
