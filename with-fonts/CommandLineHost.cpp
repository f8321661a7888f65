#include "with-fonts/CommandLineHost.h"

HostAppInterface* HostAppInterface::GetHostAppInterface() {
  static with_fonts::CommandLineHost sHost;
  return sm_pHostApp ? sm_pHostApp : &sHost;
}
