#include "host/ActionControl.h"

#include "host/ActionProperties.h"
#include "host/HostObjects.h"
#include "host/Problems.h"
#include "host/Suites.h"
#include "host/TextOut.h"
#include "host/TypeIDs.h"
#include "platform/Trace.h"

using namespace host_sdk;

namespace host {

namespace {

ActionHost* sActionHost = nullptr;

// Reports a failure to the user and returns an error for the plug-in.
SPErr Told(const std::string& problem) {
  if (problem.empty()) return kNoErr;
  platform::ReportProblem(problem);
  return kNoSuchObject;
}

SPErr PlayOpen(const DescriptorData& descriptor) {
  const AliasData* alias = descriptor.Get<AliasData>(kKeyTarget);
  const std::string path = alias ? alias->Path() : std::string();
  return path.empty() ? kBadParameters : Told(sActionHost->OpenDocument(path));
}

// Without a value for saving, a document with changes stays open, because nobody is asked here.
SPErr PlayClose(const DescriptorData& descriptor) {
  const Document* front = sActionHost->OpenDocuments().Front();
  if (!front) return kNoSuchObject;
  const int32_t id = front->id;
  const EnumeratedValue* saving = descriptor.Get<EnumeratedValue>(kKeySaving);
  if (saving && saving->type != kTypeYesNo) return kBadParameters;
  const bool mayDrop = saving && saving->value == kEnumNo;
  if (front->isDirty && !mayDrop) {
    if (!saving || saving->value != kEnumYes) return kBadParameters;
    const SPErr error = Told(sActionHost->SaveDocument(id));
    if (error != kNoErr) return error;
  }
  return Told(sActionHost->CloseDocument(id));
}

SPErr PlaySelect(const DescriptorData& descriptor) {
  const ReferenceData* reference = descriptor.Get<ReferenceData>(kKeyTarget);
  if (!reference) return kBadParameters;
  SPErr error = kNoErr;
  const Document* document = FindDocument(sActionHost->OpenDocuments(), *reference, error);
  if (document) sActionHost->SelectDocument(document->id);
  return error;
}

SPErr Play(FourCharCode event, PIActionDescriptor descriptor, int32_t, PIActionDescriptor* result) {
  if (!sActionHost) return kNoSuchObject;
  const DescriptorData* found = HostObjects::Shared().descriptors.Find(descriptor);
  if (descriptor && !found) return kBadParameters;
  const Notifiers::Deferral deferral(sActionHost->EventNotifiers());
  // A copy: the plug-in's callbacks run in between and may free the descriptor.
  const DescriptorData data = found ? *found : DescriptorData();
  SPErr error = kNoSuchObject;  // any other event
  if (event == kEventOpen) error = PlayOpen(data);
  if (event == kEventClose) error = PlayClose(data);
  if (event == kEventSelect) error = PlaySelect(data);
  if (error == kNoErr && result) *result = nullptr;  // no event here has a result
  return error;
}

SPErr Get(PIActionDescriptor* result, PIActionReference reference) {
  const ReferenceData* data = HostObjects::Shared().references.Find(reference);
  if (!sActionHost || !result || !data) return kBadParameters;
  DescriptorData properties;
  const SPErr error = ReadProperties(sActionHost->OpenDocuments(), *data, properties);
  if (error == kNoErr) *result = HostObjects::Shared().descriptors.Add(std::move(properties));
  return error;
}

SPErr StringIDToTypeID(const char* name, FourCharCode* code) {
  if (!name || !*name || !code) return kBadParameters;
  *code = TypeIDOfString(name);
  return kNoErr;
}

SPErr TypeIDToStringID(FourCharCode code, char* buffer, uint32_t size) {
  const std::string name = StringOfTypeID(code);
  return name.empty() ? kNoSuchObject : CopyText(name, buffer, size);
}

SPErr AddNotify(SPPluginRef plugin, FourCharCode event, NotifierCallback callback, void* userData) {
  if (!sActionHost || !callback || !sActionHost->IsPlugin(plugin)) return kBadParameters;
  sActionHost->EventNotifiers().Add(event, callback, userData);
  return kNoErr;
}

SPErr RemoveNotify(SPPluginRef plugin, FourCharCode event, NotifierCallback callback) {
  if (!sActionHost || !sActionHost->IsPlugin(plugin)) return kBadParameters;
  return sActionHost->EventNotifiers().Remove(event, callback) ? kNoErr : kNoSuchObject;
}

}  // namespace

void SetActionHost(ActionHost* host) { sActionHost = host; }
ActionHost* CurrentActionHost() { return sActionHost; }

const PSActionControlSuite& ActionControlSuite() {
  static constexpr PSActionControlSuite sSuite = {Play,      Get,         StringIDToTypeID, TypeIDToStringID,
                                                  AddNotify, RemoveNotify};
  return sSuite;
}

}  // namespace host
