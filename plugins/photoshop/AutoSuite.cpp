#include "photoshop/AutoSuite.h"

using namespace host_sdk;

const SPBasicSuite* sSPBasic = nullptr;
SPPluginRef gPlugInRef = nullptr;

AutoSuite<PSActionControlSuite> sPSActionControl(kPSActionControlSuite, kPSActionControlSuiteVersion);
AutoSuite<PSActionDescriptorSuite> sPSActionDescriptor(kPSActionDescriptorSuite, kPSActionDescriptorSuiteVersion);
AutoSuite<PSActionReferenceSuite> sPSActionReference(kPSActionReferenceSuite, kPSActionReferenceSuiteVersion);
AutoSuite<PSActionListSuite> sPSActionList(kPSActionListSuite, kPSActionListSuiteVersion);
AutoSuite<PSAliasSuite> sPSAlias(kPSAliasSuite, kPSAliasSuiteVersion);
AutoSuite<PSHandleSuite> sPSHandle(kPSHandleSuite, kPSHandleSuiteVersion);
AutoSuite<ASZStringSuite> sASZString(kASZStringSuite, kASZStringSuiteVersion);
AutoSuite<ASZStringSuite2> sASZString2(kASZStringSuite, kASZStringSuite2Version);

AutoSuiteBase::AutoSuiteBase(const char* name, int32_t version) : mVersion(version), mName(name) {}

void AutoSuiteBase::AcquireSuite(bool bThrow) {
  mError = sSPBasic ? sSPBasic->AcquireSuite(mName, mVersion, &mSuite) : kBadParameters;
  if (mError != kNoErr) mSuite = nullptr;
  if (bThrow && mError != kNoErr) throw static_cast<unsigned int>(mError);
}

void AutoSuiteBase::ReleaseSuite() {
  if (mSuite && sSPBasic) sSPBasic->ReleaseSuite(mName, mVersion);
  mSuite = nullptr;
}

void PIUSuitesRelease() {
  AutoSuiteBase* const suites[] = {&sPSActionControl, &sPSActionDescriptor, &sPSActionReference, &sPSActionList,
                                   &sPSAlias,         &sPSHandle,           &sASZString,         &sASZString2};
  for (AutoSuiteBase* suite : suites) suite->ReleaseSuite();
}
