// The tables of functions that a plug-in acquires by name and version. On wrong use (null, an object that was freed or
// has another kind, an unknown key) a function returns a host error and leaves its out parameters unchanged.
#pragma once

#include <cstddef>

#include "host/include/HostSuites.h"

namespace host {

const host_sdk::SPBasicSuite& BasicSuite();
const host_sdk::SPBlocksSuite& BlocksSuite();
const host_sdk::PSActionControlSuite& ActionControlSuite();
const host_sdk::PSActionDescriptorSuite& ActionDescriptorSuite();
const host_sdk::PSActionReferenceSuite& ActionReferenceSuite();
const host_sdk::PSActionListSuite& ActionListSuite();
const host_sdk::PSAliasSuite& AliasSuite();
const host_sdk::PSHandleSuite& HandleSuite();
const host_sdk::ASZStringSuite& ZStringSuite();
const host_sdk::ASZStringSuite2& ZStringSuite2();

size_t AcquiredSuites();  // acquisitions that were not released, over all suites
void ForgetAcquisitions();

}  // namespace host
