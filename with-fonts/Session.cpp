#include "with-fonts/Session.h"

#include <signal.h>
#include <sys/signalfd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "agent/client/AgentFolders.h"
#include "agent/client/AgentProcess.h"
#include "agent/client/StateFolder.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/FontConfiguration.h"
#include "with-fonts/Complain.h"
#include "with-fonts/KeptFonts.h"
#include "with-fonts/OpenFiles.h"
#include "with-fonts/ProgramPath.h"
#include "with-fonts/ProgramRun.h"
#include "with-fonts/SaveWatch.h"
#include "with-fonts/Watcher.h"

namespace with_fonts {

namespace fs = std::filesystem;

namespace {

std::string Absolute(const std::string& path) {
  std::error_code error;
  std::string whole = fs::absolute(path, error).lexically_normal().string();
  while (whole.size() > 1 && whole.back() == '/') whole.pop_back();
  return whole;
}

// Blocks the signals that end a run without a program, so that they can be waited for. Returns them.
sigset_t BlockEnds() {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signal);
  sigprocmask(SIG_BLOCK, &set, nullptr);
  return set;
}

}  // namespace

// Takes the user's home before the places name another one.
std::string Session::SetUp() {
  const std::string home = platform::GetPlaces().home;
  const fs::path app = fs::path(platform::Bundle::Main()->Folder()).parent_path();
  source_.stateFolder = Absolute(options_.state.empty() ? platform::UserStateFolder() : options_.state);
  source_.agentProgram = app / "agent" / agent_protocol::kAgentName;
  auto setup = agent_client::DesktopSetup(source_.stateFolder, source_.agentProgram, home);
  for (const std::string& folder : options_.library) setup.library.push_back(Absolute(folder));
  agent_client::StoredSetup stored;
  if (std::string problem = agent_client::SetUpStateFolder(setup, &stored); !problem.empty()) return problem;
  source_.activeFolder = agent_client::ActiveFolderOf(source_.stateFolder, stored.isDesktop, home);
  platform::Places places = agent_client::PlacesOf(source_.stateFolder, stored.isDesktop);
  // The preferences of the host are about its own documents.
  places.preferencesFile = source_.stateFolder + "/with-fonts.plist";
  platform::SetPlaces(places);
  if (stored.isChanged) {
    if (std::string problem = agent_client::EndAgent(); !problem.empty()) return problem;
  }
  std::string problem = stored.isDesktop ? "" : ShowFontsToProgram();
  return problem.empty() && options_.isPrivate ? ShowPrivateFonts() : problem;
}

void Session::UseConfiguration(const std::string& file) {
  platform::Places places = platform::GetPlaces();
  places.fontConfigFile = file;
  platform::SetPlaces(places);
  variables_ = {"FONTCONFIG_FILE=" + file};
}

// The desktop does not see the fonts of this state folder, so the program gets a configuration that adds them.
std::string Session::ShowFontsToProgram() {
  const std::string text = platform::FontConfigurationText(
      {.includes = {platform::UserFontConfigurationFile()}, .folders = {source_.activeFolder}});
  const std::string agentsFile = platform::GetPlaces().fontConfigFile, file = source_.stateFolder + "/with-fonts.conf";
  std::string problem = agent_client::ReplaceIfOther(file, text);
  // The agent's file says what is active without it. The host writes its own.
  if (problem.empty() && !platform::FileExists(agentsFile)) problem = agent_client::ReplaceIfOther(agentsFile, text);
  if (problem.empty()) UseConfiguration(file);
  return problem;
}

std::string Session::ShowPrivateFonts() {
  std::string problem = privateFonts_.Create(source_.stateFolder);
  if (!problem.empty()) {
    privateFonts_.Remove();
    return problem;
  }
  source_.linksFolder = privateFonts_.LinksFolder();
  UseConfiguration(privateFonts_.ConfigurationFile());
  return problem;
}

void Session::Write(const DocumentFonts& fonts) {
  isComplete_ = isComplete_ && fonts.IsComplete();
  // The standard output belongs to the program.
  FILE* out = options_.RunsProgram() ? stderr : stdout;
  if (options_.json) {
    const std::string text = ToJson(fonts).dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    std::fprintf(out, "%s\n", text.c_str());
  } else {
    for (const std::string& problem : fonts.problems) Complain(fonts.document + ": " + problem);
    const bool isOnlyProblem = fonts.fonts.empty() && !fonts.problems.empty();
    if (!options_.quiet && !isOnlyProblem) std::fputs(ToLine(fonts).c_str(), out);
  }
  std::fflush(out);
}

std::string Session::ServeDocuments() {
  source_.isForSandbox = options_.RunsProgram() && IsSandboxed(options_.words);
  if (source_.isForSandbox && options_.isPrivate) {
    return "--private can't reach a program in a sandbox; no font is activated";
  }
  std::string problem = SetUp();
  if (problem.empty()) problem = keeper_.Start(source_, privateFonts_);
  if (!problem.empty()) return problem;
  for (const Document& document : documents_) {
    Write(options_.dryRun ? keeper_.Predict(document.report) : keeper_.Open(document.path, document.report));
  }
  return options_.keep && !options_.dryRun ? keeper_.Keep(KeptFontsFile(source_.stateFolder)) : "";
}

void Session::Identify(const std::string& path) {
  for (const Document& saved : ReadDocuments({path}, true)) {
    std::vector<std::string> problems = saved.report.problems;
    if (problems.empty()) problems = {keeper_.Identify(path, saved.report)};
    for (const std::string& problem : problems) {
      if (!problem.empty()) Complain(path + ": " + problem);
    }
  }
}

// While the program runs. Links of its own stay when the keeper is killed, and so do kept fonts.
void Session::BringKeeperBack() {
  constexpr int kMostRestarts = 10;
  if (options_.isPrivate || options_.keep || !keeper_.HasEnded() || ++restarts_ > kMostRestarts) return;
  keeper_.Forget();
  std::string problem = keeper_.Start(source_, privateFonts_);
  for (const Document& document : documents_) {
    if (problem.empty()) keeper_.Open(document.path, document.report);
  }
  Complain(problem);
}

void Session::PassFontsOn(const RunningInstances& instances) {
  if (documents_.empty() || options_.keep || !keeper_.IsStarted()) return;
  const std::vector<pid_t> processes = instances.Find();
  if (processes.empty()) return;
  const std::string problem = keeper_.HoldFor(processes);
  if (!problem.empty()) return Complain(problem);
  if (options_.quiet || options_.json) return;
  std::string numbers;
  for (const pid_t process : processes) numbers += " " + std::to_string(process);
  std::fprintf(stderr, "with-fonts: the fonts stay until the program that has the documents ends: process%s\n",
               numbers.c_str());
}

int Session::RunIt() {
  std::vector<std::string> paths;
  for (const Document& document : documents_) paths.push_back(document.path);
  const RunningInstances instances(options_.words, paths);
  AdoptOrphans();
  SaveWatch saves([this](const std::string& path) { Identify(path); });
  if (options_.identify) saves.Watch(paths);
  const ProgramEnd end = RunProgram(
      options_.words, variables_, [this] { BringKeeperBack(); }, saves.Descriptor(), [&saves] { saves.TakeSaved(); });
  saves.TakeSaved();
  if (!end.problem.empty()) {
    Complain(end.problem);
    return end.status;
  }
  PassFontsOn(instances);
  keeper_.End();
  if (end.signal != 0) EndBySignal(end.signal);
  return end.signal != 0 ? 128 + end.signal : end.status;
}

int Session::AwaitInterrupt() {
  if (!options_.keep && keeper_.IsStarted()) {
    const sigset_t ends = BlockEnds();
    int received = 0;
    sigwait(&ends, &received);
  }
  keeper_.End();
  return isComplete_ ? kAllFound : kNotAllFound;
}

std::string Session::WatchFolders() {
  std::string problem = SetUp();
  if (problem.empty()) problem = keeper_.Start(source_, privateFonts_);
  if (!problem.empty()) return problem;
  const sigset_t ends = BlockEnds();
  const platform::Descriptor stop(signalfd(-1, &ends, SFD_CLOEXEC));
  {
    Watcher watcher(
        keeper_, [this](const DocumentFonts& fonts) { Write(fonts); }, Complain);
    for (const std::string& folder : options_.words) watcher.Add(Absolute(folder));
    const size_t count = watcher.CountFolders();
    const bool isSaid = count > 0 && !options_.quiet && !options_.json;
    if (isSaid) std::printf("watching %zu folder%s\n", count, count == 1 ? "" : "s");
    std::fflush(stdout);
    isComplete_ = watcher.Run(stop.Get());  // a missing font is no failure of the watch
  }
  // After the watcher: its reader, a later process, has inherited the end of the socket that the keeper waits for.
  keeper_.End();
  return "";
}

std::string Session::Release() {
  std::string problem = SetUp();
  size_t count = 0;
  if (problem.empty()) problem = ReleaseKeptFonts(source_.stateFolder, source_.agentProgram, &count);
  if (problem.empty() && !options_.quiet) std::printf("%zu font%s given back\n", count, count == 1 ? "" : "s");
  return problem;
}

int Session::Run() {
  std::string problem;
  if (options_.release) {
    problem = Release();
  } else if (options_.watch) {
    problem = WatchFolders();
  } else {
    std::vector<std::string> arguments = options_.words;
    if (options_.RunsProgram()) arguments.erase(arguments.begin());
    documents_ = ReadDocuments(arguments, !options_.RunsProgram());
    if (!documents_.empty()) problem = ServeDocuments();
  }
  Complain(problem);
  isComplete_ = isComplete_ && problem.empty();
  // The program runs with the fonts that could be had.
  if (options_.RunsProgram()) return RunIt();
  if (options_.noRun && !options_.dryRun) return AwaitInterrupt();
  return isComplete_ ? kAllFound : kNotAllFound;
}

}  // namespace with_fonts
