#include "Bridge/HostAppInterface.h"

HostAppInterface* HostAppInterface::sm_pHostApp = nullptr;

HostAppInterface::~HostAppInterface() = default;
