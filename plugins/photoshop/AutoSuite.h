// A holder of one host suite, acquired on demand and given back at the end of every host call, so that a suite pointer
// never outlives a call into the plug-in. Use of a suite that the host does not give throws its error as an unsigned
// integer; who is called by the host catches that. Main thread only.
#pragma once

#include "host/include/HostSuites.h"

// Taken from every incoming message.
extern const host_sdk::SPBasicSuite* sSPBasic;
extern host_sdk::SPPluginRef gPlugInRef;

class AutoSuiteBase {
 public:
  AutoSuiteBase(const char* name, int32_t version);
  AutoSuiteBase(const AutoSuiteBase&) = delete;
  AutoSuiteBase& operator=(const AutoSuiteBase&) = delete;

  // With bThrow an error is thrown as an unsigned integer.
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
  // The suite, or null if the host does not give it. Never throws: for destructors.
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

// Gives all of them back.
void PIUSuitesRelease();

// One call of the host: gives them back at its end, however it ends.
struct SuitesForOneCall {
  SuitesForOneCall() = default;
  ~SuitesForOneCall() { PIUSuitesRelease(); }
  SuitesForOneCall(const SuitesForOneCall&) = delete;
  SuitesForOneCall& operator=(const SuitesForOneCall&) = delete;
};
