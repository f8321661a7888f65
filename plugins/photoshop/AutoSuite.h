// A holder of one host suite. It acquires the suite on demand and releases it at the end of every host call, so that a
// suite pointer never outlives a call into the plug-in. If the host does not offer the suite, a use throws the host's
// error as an unsigned int; the functions that the host calls catch it. Main thread only.
#pragma once

#include "host/include/HostSuites.h"

// Set from each message of the host.
extern const host_sdk::SPBasicSuite* sSPBasic;
extern host_sdk::SPPluginRef gPlugInRef;

class AutoSuiteBase {
 public:
  AutoSuiteBase(const char* name, int32_t version);
  AutoSuiteBase(const AutoSuiteBase&) = delete;
  AutoSuiteBase& operator=(const AutoSuiteBase&) = delete;

  // With bThrow, throws an error as an unsigned int.
  void AcquireSuite(bool bThrow);
  void ReleaseSuite();
  host_sdk::SPErr GetLastError() const { return mError; }

 protected:
  const void* mSuite = nullptr;

 private:
  int32_t mVersion;
  const char* mName;
  host_sdk::SPErr mError = host_sdk::kNoErr;
};

template <class T>
class AutoSuite : public AutoSuiteBase {
 public:
  using AutoSuiteBase::AutoSuiteBase;
  // Returns the suite, or null if the host does not offer it. Never throws: for destructors.
  const T* IfPresent() noexcept {
    if (!mSuite) AcquireSuite(false);
    return static_cast<const T*>(mSuite);
  }
  const T* operator->() {
    if (!mSuite) AcquireSuite(true);
    return static_cast<const T*>(mSuite);
  }
};

extern AutoSuite<host_sdk::PSActionControlSuite> sPSActionControl;
extern AutoSuite<host_sdk::PSActionDescriptorSuite> sPSActionDescriptor;
extern AutoSuite<host_sdk::PSActionReferenceSuite> sPSActionReference;
extern AutoSuite<host_sdk::PSActionListSuite> sPSActionList;
extern AutoSuite<host_sdk::PSAliasSuite> sPSAlias;
extern AutoSuite<host_sdk::PSHandleSuite> sPSHandle;
extern AutoSuite<host_sdk::ASZStringSuite> sASZString;
extern AutoSuite<host_sdk::ASZStringSuite2> sASZString2;

// Releases all suites.
void PIUSuitesRelease();

// Releases all suites at the end of one host call, also when an exception ends it.
struct SuitesForOneCall {
  SuitesForOneCall() = default;
  ~SuitesForOneCall() { PIUSuitesRelease(); }
  SuitesForOneCall(const SuitesForOneCall&) = delete;
  SuitesForOneCall& operator=(const SuitesForOneCall&) = delete;
};
