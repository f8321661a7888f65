#include "host/HostApplication.h"

#include "host/DocumentOperations.h"
#include "host/HostObjects.h"
#include "host/PluginModule.h"
#include "host/Problems.h"
#include "host/Suites.h"
#include "host/TypeIDs.h"
#include "platform/RunLoop.h"
#include "platform/Trace.h"
#include "platform/Window.h"

using namespace host_sdk;

namespace host {

struct HostApplication::State {
  PluginModule plugin;
  DocumentOperations documents{[this](SPPluginRef ref) { return ref && ref == plugin.Ref(); }};
  bool isStarted = false;

  // Detaches the plug-in: nothing calls it any more.
  void LetGo() {
    isStarted = false;
    documents.EventNotifiers().Clear();
    plugin.Release();
    if (CurrentActionHost() == &documents) SetActionHost(nullptr);
  }
};

HostApplication::HostApplication() : state_(std::make_unique<State>()) {}

HostApplication::~HostApplication() {
  Quit();
  state_->LetGo();
}

std::string HostApplication::Start(const std::string& pluginBundleFolder) {
  if (CurrentActionHost()) return "A host is running in this process already";
  // Drops what the plug-in of an earlier run kept.
  HostObjects::Shared().Clear();
  ForgetAcquisitions();
  SetActionHost(&state_->documents);
  std::string problem = state_->plugin.Load(pluginBundleFolder);
  if (problem.empty()) problem = state_->plugin.Send(kCallerInterface, "Startup");
  if (!problem.empty()) {
    state_->LetGo();
    return problem;
  }
  state_->isStarted = true;
  return "";
}

std::string HostApplication::Open(const std::string& path, int32_t* id) {
  state_->documents.EventNotifiers().NotifyDeferred();  // before a window or box of this document runs the loop
  return state_->documents.Open(path, id);
}

std::string HostApplication::Make(int32_t* id) {
  const int32_t made = state_->documents.Make();
  if (id) *id = made;
  return "";
}

std::string HostApplication::Edit(int32_t id, const std::string& fontName) {
  return state_->documents.Edit(id, fontName);
}

std::string HostApplication::Save(int32_t id) { return state_->documents.Save(id); }

std::string HostApplication::SaveAs(int32_t id, const std::string& path) { return state_->documents.SaveAs(id, path); }

std::string HostApplication::Close(int32_t id) { return state_->documents.Close(id); }

std::string HostApplication::DoIt(int32_t operation, int32_t* port) {
  if (port) *port = -1;
  state_->documents.EventNotifiers().NotifyDeferred();
  auto& descriptors = HostObjects::Shared().descriptors;
  DescriptorData given;
  given.Put(kKeyOperation, operation);
  PIActionParameters parameters = {descriptors.Add(std::move(given))};
  std::string problem;
  {
    // The command may show boxes, which run the loop.
    const Notifiers::Deferral deferral(state_->documents.EventNotifiers());
    problem = state_->plugin.Send(kCallerHost, "Do It", &parameters);
  }
  const DescriptorData* answer = descriptors.Find(parameters.descriptor);
  const int32_t* answered = answer ? answer->Get<int32_t>(kKeyServerPort) : nullptr;
  if (port && answered) *port = *answered;
  descriptors.Remove(parameters.descriptor);
  state_->documents.EventNotifiers().NotifyDeferred();
  return problem;
}

std::string HostApplication::About() { return state_->plugin.Send(kCallerInterface, "About"); }

void HostApplication::Wait(double seconds) { platform::RunLoop::Main().RunFor(seconds); }

void HostApplication::Quit() {
  if (!state_->isStarted) return;
  // By ID, because a plug-in may open and close documents in between.
  for (const DocumentInfo& document : Documents()) state_->documents.Close(document.id);
  state_->documents.EventNotifiers().NotifyDeferred();
  const std::string problem = state_->plugin.Send(kCallerInterface, "Shutdown");
  if (!problem.empty()) platform::ReportProblem(problem);
  state_->LetGo();
  const size_t left = LiveObjects().Total();
  if (left > 0) platform::TraceLine(0, "The plug-in left " + std::to_string(left) + " objects of the host unfreed");
}

std::vector<DocumentInfo> HostApplication::Documents() const {
  std::vector<DocumentInfo> infos;
  for (const auto& document : state_->documents.OpenDocuments().All()) {
    infos.push_back({document->id, document->path, document->Title(), document->isDirty, document->FontNames()});
  }
  return infos;
}

int32_t HostApplication::FrontDocument() const {
  const Document* front = state_->documents.OpenDocuments().Front();
  return front ? front->id : 0;
}

std::vector<WindowInfo> HostApplication::Windows() const {
  std::vector<WindowInfo> windows;
  for (const auto& document : state_->documents.OpenDocuments().All()) {
    const platform::Window* window = document->missingFontsWindow.get();
    if (window) windows.push_back({window->Title(), window->Number(), window->IsVisible()});
  }
  return windows;
}

}  // namespace host
