// The host of the plug-in's logic when there is no document host: this program has no documents of its own, no windows
// and no panels, so it has nothing to pass on.
#pragma once

#include "Bridge/HostAppInterface.h"

namespace with_fonts {

class CommandLineHost : public HostAppInterface {
 public:
  void RebuildWorkgroupsMenu() override {}
};

}  // namespace with_fonts
