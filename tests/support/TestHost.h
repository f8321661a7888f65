// The real host's suites with documents that are names only. Records every event that the plug-in plays. Any property,
// notifier or suite can be made to fail.
#pragma once

#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/ActionControl.h"
#include "host/HostObjects.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"

namespace fakes {

using host_sdk::FourCharCode;
using host_sdk::kNoErr;
using host_sdk::SPErr;

// A descriptor that the host passes to the plug-in for one call.
class GivenDescriptor {
 public:
  explicit GivenDescriptor(host::DescriptorData data = {})
      : mDescriptor(host::HostObjects::Shared().descriptors.Add(std::move(data))) {}
  GivenDescriptor(FourCharCode key, host::ActionValue value) : GivenDescriptor() { Put(key, std::move(value)); }
  ~GivenDescriptor() { host::HostObjects::Shared().descriptors.Remove(mDescriptor); }
  GivenDescriptor(const GivenDescriptor&) = delete;
  GivenDescriptor& operator=(const GivenDescriptor&) = delete;

  host_sdk::PIActionDescriptor Get() const { return mDescriptor; }
  void Put(FourCharCode key, host::ActionValue value) const { Data().Put(key, std::move(value)); }
  bool Has(FourCharCode key) const { return Data().Find(key) != nullptr; }

 private:
  host::DescriptorData& Data() const { return *host::HostObjects::Shared().descriptors.Find(mDescriptor); }
  host_sdk::PIActionDescriptor mDescriptor;
};

// While an object exists, it is the host. One at a time.
class TestHost : public host::ActionHost {
 public:
  TestHost() { host::SetActionHost(sCurrent = this); }
  ~TestHost() override {
    host::SetActionHost(sCurrent = nullptr);
    host::HostObjects::Shared().Clear();
    host::ForgetAcquisitions();
  }
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  static const host_sdk::SPBasicSuite& Basic() {
    static const host_sdk::SPBasicSuite sSuite = {Acquire, host::BasicSuite().ReleaseSuite, host::BasicSuite().IsEqual};
    return sSuite;
  }

  // Adds a document in front, untitled without a path. Returns its ID, from 1 on.
  int32_t Add(const std::string& path) {
    host::Document document;
    document.path = path;
    return documents.Add(std::move(document)).id;
  }
  void RemoveAll() {
    while (const host::Document* front = documents.Front()) documents.Remove(front->id);
  }
  static size_t Objects() {
    return host::LiveObjects().Total() - host::LiveObjects().suites - host::LiveObjects().blocks;
  }

  host::DocumentList documents;
  std::set<FourCharCode> failingProperties;
  std::set<FourCharCode> failingNotifiers;
  std::set<std::string> missingSuites;
  SPErr blockError = kNoErr;

  // The record of what happened.
  std::vector<std::string> played;
  std::vector<std::pair<FourCharCode, host_sdk::NotifierCallback>> notifiers;

 private:
  const host::DocumentList& OpenDocuments() const override { return documents; }
  host::Notifiers& EventNotifiers() override { return mNotifiers; }
  bool IsPlugin(host_sdk::SPPluginRef) const override { return true; }
  void SelectDocument(int32_t id) override {
    played.push_back("select " + std::to_string(id));
    documents.BringToFront(id);
  }
  std::string OpenDocument(const std::string& path) override {
    played.push_back("open " + path);
    Add(path);
    return "";
  }
  std::string SaveDocument(int32_t id) override {
    played.push_back("save " + std::to_string(id));
    return "";
  }
  std::string CloseDocument(int32_t id) override {
    played.push_back("close " + std::to_string(id));
    documents.Remove(id);
    return "";
  }

  static SPErr Acquire(const char* name, int32_t version, const void** suite) {
    if (sCurrent->missingSuites.count(name) > 0) return host_sdk::kSuiteNotFound;
    const SPErr error = host::BasicSuite().AcquireSuite(name, version, suite);
    if (*suite == &host::ActionControlSuite()) *suite = &Control();
    if (*suite == &host::BlocksSuite()) *suite = &Blocks();
    return error;
  }

  static const host_sdk::PSActionControlSuite& Control() {
    static const host_sdk::PSActionControlSuite sSuite = {Play,
                                                          Get,
                                                          host::ActionControlSuite().StringIDToTypeID,
                                                          host::ActionControlSuite().TypeIDToStringID,
                                                          AddNotifier,
                                                          RemoveNotifier};
    return sSuite;
  }
  static SPErr Play(FourCharCode event, host_sdk::PIActionDescriptor descriptor, int32_t dialogMode,
                    host_sdk::PIActionDescriptor* result) {
    if (dialogMode != host_sdk::kSilentDialogMode) sCurrent->played.push_back("with dialogs:");
    // Only a close without saving shows no box.
    if (event == host::kEventClose && sCurrent->documents.Front()) sCurrent->documents.Front()->isDirty = true;
    if (descriptor) return host::ActionControlSuite().Play(event, descriptor, dialogMode, result);
    sCurrent->played.push_back(host::StringOfTypeID(event));
    return kNoErr;
  }
  static SPErr Get(host_sdk::PIActionDescriptor* result, host_sdk::PIActionReference reference) {
    for (const host::ReferenceForm& form : host::HostObjects::Shared().references.Find(reference)->forms) {
      const bool isProperty = form.kind == host::ReferenceForm::Kind::kProperty;
      if (isProperty && sCurrent->failingProperties.count(form.key) > 0) return host_sdk::kNoSuchObject;
    }
    return host::ActionControlSuite().Get(result, reference);
  }
  static SPErr AddNotifier(host_sdk::SPPluginRef, FourCharCode event, host_sdk::NotifierCallback callback, void*) {
    if (sCurrent->failingNotifiers.count(event) > 0) return host_sdk::kBadParameters;
    sCurrent->notifiers.emplace_back(event, callback);
    return kNoErr;
  }
  static SPErr RemoveNotifier(host_sdk::SPPluginRef, FourCharCode event, host_sdk::NotifierCallback callback) {
    if (sCurrent->failingNotifiers.count(event) > 0) return host_sdk::kBadParameters;
    std::erase(sCurrent->notifiers, std::pair(event, callback));
    return kNoErr;
  }

  static const host_sdk::SPBlocksSuite& Blocks() {
    static const host_sdk::SPBlocksSuite sSuite = {Allocate, host::BlocksSuite().FreeBlock};
    return sSuite;
  }
  static SPErr Allocate(size_t size, const char* name, void** block) {
    if (sCurrent->blockError != kNoErr) return sCurrent->blockError;
    const SPErr error = host::BlocksSuite().AllocateBlock(size, name, block);
    if (error == kNoErr) std::memset(*block, 0xEE, size);
    return error;
  }

  host::Notifiers mNotifiers;
  inline static TestHost* sCurrent = nullptr;
};

}  // namespace fakes
