#include "host/console/Session.h"

#include <algorithm>
#include <filesystem>

#include "frameworks/PlugPlug/include/PlugPlugEvents.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "frameworks/VelorantPlugins/include/UIFramework.h"
#include "host/DocumentFile.h"
#include "host/Problems.h"
#include "host/console/BatchProgress.h"
#include "host/console/FontLister.h"
#include "host/console/Slug.h"
#include "host/include/HostTerminology.h"
#include "platform/TextEncoding.h"
#include "platform/Trace.h"

namespace console {

namespace {

// The host's placeholder for layers without visible text. No font has this name, and none is needed.
constexpr const char* kInvisibleFont = "AdobeInvisFont";

#define NAME_OF(name, result, parameters) #name,
constexpr const char* kInterfaceFunctions[] = {PLUGIN_INTERFACE_FUNCTIONS(NAME_OF)};
constexpr const char* kUserInterfaceFunctions[] = {UI_FRAMEWORK_FUNCTIONS(NAME_OF)};
constexpr const char* kEventFunctions[] = {PLUG_PLUG_FUNCTIONS(NAME_OF)};
#undef NAME_OF

bool Contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  return std::filesystem::absolute(path, error).lexically_normal().string();
}

// Returns the path relative to the current folder if it is below it.
std::string FromHere(const std::string& path) {
  std::error_code error;
  const std::string here = std::filesystem::current_path(error).string() + "/";
  return !error && path.starts_with(here) ? path.substr(here.size()) : path;
}

// Removes the file from a line of the host, because the report names it anyway. The host names it as given, by its real
// path or by its title.
std::string WithoutFile(const std::string& line, const std::string& file) {
  const std::string whole = AbsolutePath(file), title = std::filesystem::path(file).filename().string();
  for (const std::string& prefix :
       {file + ": ", whole + ": ", host::ResolvedPath(file) + ": ", title + ": ", file + "/"}) {
    if (line.starts_with(prefix)) return line.substr(prefix.size());
  }
  return line;
}

}  // namespace

Session::Session(Sandbox& sandbox, Report& report)
    : sandbox_(sandbox),
      report_(report),
      agent_(sandbox),
      fonts_(sandbox, agent_),
      preferences_(sandbox.UserInterfaceFramework()) {
  platform::SetProblemSink([this](const std::string& line) { TakeProblem(line); });
}

Session::~Session() { platform::SetProblemSink(nullptr); }

void Session::CheckParts() {
  if (sandbox_.KilledPredecessor() != 0) {
    report_.Note(sandbox_.Folder(), "the host that used this folder before, process " +
                                        std::to_string(sandbox_.KilledPredecessor()) +
                                        ", ended without quitting; its fonts have been given back");
  }
  const Part parts[] = {
      {sandbox_.InterfaceFramework(), kInterfaceFunctions, "no font will be activated"},
      {sandbox_.UserInterfaceFramework(), kUserInterfaceFunctions, "no font will be activated"},
      {sandbox_.EventsFramework(), kEventFunctions, "there is no font panel"},
  };
  for (const Part& part : parts) CheckPart(part);
}

void Session::CheckPart(const Part& part) {
  std::string problem;
  const platform::BundleRef bundle = platform::Bundle::Create(part.framework, &problem);
  if (!bundle || !bundle->Load(&problem)) {
    report_.Error(part.framework,
                  std::string("can't be loaded, so that ") + part.loss + ": " + WithoutFile(problem, part.framework));
    return;
  }
  std::string missing;
  for (const char* name : part.functions) {
    if (!bundle->FunctionForName(name)) missing += (missing.empty() ? "" : ", ") + std::string(name);
  }
  bundle->Unload();
  if (!missing.empty()) report_.Error(part.framework, "lacks functions that the plug-in needs: " + missing);
}

bool Session::StartPlugin() {
  host_ = std::make_unique<host::HostApplication>();
  const std::string problem = host_->Start(sandbox_.PluginBundle());
  if (problem.empty()) return true;
  report_.Error(sandbox_.PluginBundle(), WithoutFile(problem, sandbox_.PluginBundle()));
  return false;
}

// Only one line describes the problem: it begins with a path, or it is the plug-in's. What stops one reader of a
// document's metadata stops the next, so a line is reported once until a document is opened or saved.
void Session::TakeProblem(const std::string& line) {
  if (!toldProblems_.insert(line).second) return;
  const size_t end = line.find(": ");
  if (line.starts_with("/") && end != std::string::npos) {
    report_.Error(line.substr(0, end), line.substr(end + 2));
  } else {
    report_.Error(sandbox_.PluginBundle(), line);
  }
}

bool Session::Start(LibrarySummary* library) {
  CheckParts();
  const std::string problem = agent_.Start(library);
  if (problem.empty()) {
    for (const AgentProblem& broken : library->problems) report_.Error(broken.path, broken.message);
  } else {
    report_.Error(sandbox_.AgentExecutable(), WithoutFile(problem, sandbox_.AgentExecutable()));
    isAgentGone_ = true;
  }
  return StartPlugin();
}

Session::KnownDocument* Session::Find(const std::string& document) {
  const auto isMeant = [&](const KnownDocument& known) {
    return known.name == document || (!known.path.empty() && known.path == AbsolutePath(document));
  };
  const auto found = std::find_if(documents_.begin(), documents_.end(), isMeant);
  return found == documents_.end() ? nullptr : &*found;
}

Session::KnownDocument* Session::Front() {
  const int32_t id = host_->FrontDocument();
  const auto found =
      std::find_if(documents_.begin(), documents_.end(), [id](const KnownDocument& known) { return known.id == id; });
  return found == documents_.end() ? nullptr : &*found;
}

Session::KnownDocument* Session::Choose(const std::string& document, const char* operation) {
  CatchUp();
  KnownDocument* const chosen = document.empty() ? Front() : Find(document);
  if (!chosen) report_.Error(document.empty() ? operation : document, "no such document is open");
  return chosen;
}

host::DocumentInfo Session::InfoOf(int32_t id) const {
  for (const host::DocumentInfo& info : host_->Documents()) {
    if (info.id == id) return info;
  }
  return {};
}

bool Session::CanOpen(const std::string& document) {
  const bool wasLost = isLost_;
  CatchUp();
  if (wasLost) report_.Error(document, "is not opened, because the state folder is gone");
  return !isLost_;
}

bool Session::Open(const std::string& file) {
  if (!CanOpen(file)) return false;
  const ActiveFiles before = fonts_.Look();
  trace_.Mark();
  toldProblems_.clear();
  int32_t id = 0;
  std::string problem;
  {
    const BatchProgress progress(agent_, trace_);
    problem = host_->Open(file, &id);
  }
  if (!problem.empty()) {
    report_.Error(file, WithoutFile(problem, file));
    return false;
  }
  const host::DocumentInfo info = InfoOf(id);
  const auto isThis = [&](const KnownDocument& known) { return known.id == id; };
  auto known = std::find_if(documents_.begin(), documents_.end(), isThis);
  if (known == documents_.end()) known = documents_.insert(documents_.end(), KnownDocument());
  *known = {file, info.path, id, info.fontNames};
  if (!platform::IsValidUTF8(info.path)) {
    report_.Error(file,
                  "the plug-in cannot open a file whose path is not valid UTF-8, so it activates no fonts for it");
  }
  ReportOpened(*known, before);
  return true;
}

void Session::ReportOpened(const KnownDocument& document, const ActiveFiles& before) {
  const ActiveFiles after = fonts_.Look();
  OpenedReport opened;
  opened.file = document.name;
  opened.named = document.fontNames;
  std::vector<std::string> activated;
  for (const std::string& name : opened.named) {
    if (before.contains(name)) {
      opened.active.push_back(name);
    } else if (after.contains(name)) {
      activated.push_back(name);
    } else if (name != kInvisibleFont) {
      opened.missing.push_back(name);
    }
  }
  // Whole families, and other faces of a file, but not fonts that came back for other documents after a restart of the
  // agent.
  const auto isOthers = [&](const std::string& name) {
    return std::any_of(documents_.begin(), documents_.end(), [&](const KnownDocument& other) {
      return other.id != document.id && Contains(other.fontNames, name);
    });
  };
  for (const std::string& name : NamesOnlyIn(after, before)) {
    if (!Contains(activated, name) && !isOthers(name)) activated.push_back(name);
  }
  for (const std::string& name : activated) {
    opened.activated.push_back({name, after.at(name), WhyActivated(name, opened.named)});
  }
  if (opened.named.empty() && !document.path.empty()) {
    const ListedFonts listed = ListFonts(sandbox_.FontListerExecutable(), document.path);
    opened.readers = listed.names;
    if (!listed.problem.empty()) report_.Note(document.name, "its fonts can't all be listed: " + listed.problem);
  }
  report_.Opened(opened);
  // The agent may have been stopped, which nobody notices without a question.
  if (!opened.missing.empty() && !isAgentGone_ && !agent_.Answers()) CheckAgent();
}

std::string Session::WhyActivated(const std::string& name, const std::vector<std::string>& named) {
  const TraceRecorder::Reason reason = trace_.ReasonFor(name);
  if (reason.how.empty()) {
    return Contains(named, name) ? "activated by the agent" : "came with another face of its family or file";
  }
  std::string why = reason.how;
  const size_t candidates = agent_.CountCandidates(name);
  if (candidates > 1) why += " among " + std::to_string(candidates) + " files";
  if (reason.over.empty()) return why;
  if (reason.stage != reason.how) why += ": " + reason.stage;
  return why + ", over " + reason.over;
}

void Session::Make() {
  if (!CanOpen("make")) return;
  int32_t id = 0;
  const std::string problem = host_->Make(&id);
  if (!problem.empty()) {
    report_.Error("make", problem);
    return;
  }
  const std::string name = InfoOf(id).title;
  documents_.push_back({name, "", id, {}});
  report_.Note(name, "made");
}

void Session::Edit(const std::string& font) {
  const KnownDocument* document = Choose("", "edit");
  if (!document) return;
  const std::string problem = host_->Edit(document->id, font);
  if (problem.empty()) {
    report_.Note(document->name, font.empty() ? "changed" : "changed: text in " + font);
  } else {
    report_.Error(document->name, WithoutFile(problem, document->name));
  }
}

// Empty for a document without a file, and for one that cannot be read; the save reports that itself.
std::vector<std::string> Session::IdentifiedFonts(const KnownDocument& document) const {
  std::vector<std::string> names;
  std::string problem;
  if (!document.path.empty()) ReadSlugNames(document.path, &names, &problem);
  const auto isNamed = [&](const std::string& name) {
    return std::find(document.fontNames.begin(), document.fontNames.end(), name) != document.fontNames.end();
  };
  std::erase_if(names, [&](const std::string& name) { return !isNamed(name); });
  return names;
}

// The plug-in writes the identification of active fonts only.
void Session::WarnOfLosses(const KnownDocument& document) {
  if (!preferences_.GetSwitch("EnableGlyphsure")) return;
  std::vector<std::string> atRisk = document.identified;
  if (atRisk.empty()) return;
  const ActiveFiles active = fonts_.Look();
  std::erase_if(atRisk, [&](const std::string& name) { return active.contains(name); });
  if (!atRisk.empty()) report_.Saving(document.name, atRisk);
}

bool Session::SaveTo(KnownDocument& document, const std::string* file) {
  document.fontNames = InfoOf(document.id).fontNames;
  document.identified = IdentifiedFonts(document);
  WarnOfLosses(document);
  trace_.Mark();
  toldProblems_.clear();
  const std::string problem = file ? host_->SaveAs(document.id, *file) : host_->Save(document.id);
  if (!problem.empty()) {
    report_.Error(document.name, WithoutFile(problem, document.name));
    return false;
  }
  const host::DocumentInfo info = InfoOf(document.id);
  document.path = info.path;
  document.fontNames = info.fontNames;
  return true;
}

void Session::ReportSaved(const KnownDocument& document, const std::string& path) {
  std::vector<std::string> slug;
  std::string problem;
  if (!ReadSlugNames(path, &slug, &problem)) {
    if (!toldProblems_.contains(problem)) {
      report_.Error(document.name, "its XMP can't be read: " + WithoutFile(problem, path));
    }
    return;
  }
  std::vector<std::string> lost = document.identified;
  std::erase_if(lost, [&](const std::string& name) { return std::find(slug.begin(), slug.end(), name) != slug.end(); });
  report_.Saved(document.name, slug, lost);
  // A file without active fonts has nothing to identify, whether or not it could store it.
  const ActiveFiles active = fonts_.Look();
  const auto isActive = [&](const std::string& name) { return active.contains(name); };
  if (trace_.HasFailedToWriteSlug(document.path) && preferences_.GetSwitch("EnableGlyphsure") &&
      std::any_of(document.fontNames.begin(), document.fontNames.end(), isActive)) {
    report_.Error(document.name, "was saved, but the identification of its fonts could not be written into it");
  }
  if (trace_.HasFailedToLookUpFonts(document.path)) {
    report_.Error(document.name,
                  "was saved, but its fonts could not be looked up; its identification data is as before");
  }
}

void Session::Save(const std::string& document) {
  KnownDocument* chosen = Choose(document, "save");
  if (chosen && SaveTo(*chosen, nullptr)) ReportSaved(*chosen, chosen->path);
}

void Session::SaveAs(const std::string& file) {
  KnownDocument* document = Choose("", "save-as");
  if (!document || !SaveTo(*document, &file)) return;
  document->name = file;
  ReportSaved(*document, document->path);
}

void Session::SaveCopyInSandbox() {
  KnownDocument* document = Choose("", "save");
  if (!document) return;
  const std::string place = sandbox_.PlaceForCopy(document->name);
  if (!SaveTo(*document, &place)) return;
  ReportSaved(*document, place);
  report_.Note(document->name, "in the copy " + FromHere(place));
}

void Session::Close(const std::string& document) {
  const KnownDocument* chosen = Choose(document, "close");
  if (!chosen) return;
  const KnownDocument closed = *chosen;
  const ActiveFiles before = fonts_.Look();
  const std::string problem = host_->Close(closed.id);
  if (!problem.empty()) {
    report_.Error(closed.name, WithoutFile(problem, closed.name));
    return;
  }
  std::erase_if(documents_, [&](const KnownDocument& known) { return known.id == closed.id; });
  report_.Closed(closed.name, NamesOnlyIn(before, fonts_.Look()));
}

void Session::CloseAll() {
  while (!documents_.empty()) {
    const size_t count = documents_.size();
    const std::string name = documents_.front().name;
    Close(name);
    if (documents_.size() == count) return;  // already reported; the host keeps it
  }
}

void Session::DoIt(int32_t operation) {
  CatchUp();
  toldProblems_.clear();
  int32_t port = -1;
  const std::string problem = host_->DoIt(operation, &port);
  if (!problem.empty()) {
    report_.Error("do-it", problem);
  } else if (port == 0) {
    report_.Error("do-it", "the font panel has no port");
  } else if (port == host_sdk::kNoFontManagerPort) {
    report_.Error("do-it", "no font manager is connected, so the font panel would be empty");
  } else if (port > 0) {
    report_.Listing({"the font panel's port is " + std::to_string(port)});
  }
}

void Session::Wait(double seconds) {
  host_->Wait(seconds);
  CatchUp();
}

void Session::Follow() {
  const std::vector<host::DocumentInfo> open = host_->Documents();
  std::vector<KnownDocument> gone;
  for (KnownDocument& known : documents_) {
    const auto sameNumber = [&](const host::DocumentInfo& info) { return info.id == known.id; };
    const auto samePath = [&](const host::DocumentInfo& info) {
      return !known.path.empty() && info.path == known.path;
    };
    if (std::any_of(open.begin(), open.end(), sameNumber)) continue;
    const auto again = std::find_if(open.begin(), open.end(), samePath);
    if (again == open.end()) {
      gone.push_back(known);
      continue;
    }
    known.id = again->id;
    report_.Note(known.name, "closed and opened again, to be drawn with its fonts");
  }
  for (const KnownDocument& lost : gone) {
    std::erase_if(documents_, [&](const KnownDocument& known) { return known.id == lost.id; });
    report_.Error(lost.name, "was closed to be opened again, and could not be opened");
  }
  // Documents that a failed operation had opened.
  for (const host::DocumentInfo& info : open) {
    const auto isThis = [&](const KnownDocument& known) { return known.id == info.id; };
    if (std::any_of(documents_.begin(), documents_.end(), isThis)) continue;
    documents_.push_back({info.path.empty() ? info.title : info.path, info.path, info.id, info.fontNames});
  }
}

void Session::CatchUp() {
  CheckState();
  if (!isLost_) CheckAgent();
  Follow();
}

void Session::CheckState() {
  if (isLost_ || sandbox_.IsInPlace()) return;
  isLost_ = true;
  report_.Error(sandbox_.Folder(),
                "was removed or replaced while it was in use, so that no more fonts can be activated");
}

// A new agent removes the links that no client requests, and the plug-in connects to it at its next call. If the agent
// cannot be started now, try again before each operation: the user may fix the cause.
void Session::CheckAgent() {
  if (agent_.IsConnected()) return;
  LibrarySummary library;
  const std::string problem = agent_.Restart(&library);
  const std::string outcome = problem.empty() ? "was started again" : "could not be started again: " + problem;
  if (!isAgentGone_) {
    report_.Error(sandbox_.AgentExecutable(), "the agent ended by itself or does not answer, and " + outcome);
  } else if (problem.empty()) {
    report_.Note(sandbox_.AgentExecutable(), "the agent " + outcome);
  }
  isAgentGone_ = !problem.empty();
}

void Session::SetPreference(const std::string& key, const std::string& value) {
  const std::string problem = preferences_.Set(key, value);
  if (!problem.empty()) report_.Error(key, WithoutFile(problem, key));
}

void Session::Quit() {
  if (!host_) return;
  CheckState();
  if (!isLost_ && !isAgentGone_) CheckAgent();
  Follow();
  const ActiveFiles before = fonts_.Look();
  const std::vector<KnownDocument> open = documents_;
  host_->Quit();
  documents_.clear();
  host_.reset();
  const ActiveFiles after = fonts_.Look();
  std::vector<std::string> back = NamesOnlyIn(before, after);
  for (const KnownDocument& closed : open) {
    std::vector<std::string> own;
    for (const std::string& name : back) {
      if (Contains(closed.fontNames, name)) own.push_back(name);
    }
    std::erase_if(back, [&](const std::string& name) { return Contains(own, name); });
    report_.Closed(closed.name, own);
  }
  if (back.empty()) return;
  std::string names;
  for (const std::string& name : back) names += (names.empty() ? "" : ", ") + name;
  report_.Note("quit", "gave back " + names);
}

}  // namespace console
