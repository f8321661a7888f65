#include "agent/server/Agent.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "agent/activation/DesktopFolders.h"
#include "agent/include/AgentProtocol.h"
#include "agent/server/Calls.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "platform/Files.h"

namespace agent {

namespace {

// Time in which a client that reconnects, or a first client on its way, finds the agent running.
constexpr double kLinger = 1.0;                   // seconds
constexpr double kPatienceForFirstClient = 60.0;  // seconds
constexpr int kFlushMilliseconds = 200;
constexpr uint64_t kMostUnpackedBytes = uint64_t{2} << 30;

std::string ProgramBesideThis(const std::string& name) {
  std::error_code error;
  return (std::filesystem::read_symlink("/proc/self/exe", error).parent_path() / name).string();
}

}  // namespace

Agent::Agent(const Configuration& configuration, const InstanceLock& lock, platform::RunLoop& loop)
    : configuration_(configuration),
      lock_(lock),
      loop_(loop),
      server_(loop,
              {[this](ClientID client, std::string_view message) {
                 CheckPlace();
                 dispatcher_.OnMessage(client, message);
               },
               [this](ClientID client) { OnGone(client); }, [this](const std::string& line) { log_.Write(line); }}),
      dispatcher_({[this](ClientID client, const std::string& message) { server_.Send(client, message); },
                   [this](ClientID client) {
                     log_.Write("a client sent what is no request; its connection is closed");
                     server_.Drop(client);
                   },
                   [this](const std::string& line) { log_.Write(line); }}),
      previews_(configuration.DataFolder() + "/previews", ProgramBesideThis("preview-worker"), loop,
                MakePreviewEvents()),
      webFonts_(configuration.UnpackedFolder(), ProgramBesideThis("font-unpacker"), kMostUnpackedBytes, loop,
                MakeWebFontEvents()) {}

Agent::~Agent() {
  if (placeWatch_) loop_.UnwatchDescriptor(placeWatch_.Get());
}

std::error_code Agent::Start(platform::Descriptor passed) {
  // On a disk that cannot be written the databases are in memory, and where no log can be made either, it goes to
  // standard error only.
  const std::string data = configuration_.DataFolder(), logs = configuration_.LogFolder();
  const std::error_code unwritable = platform::MakeFolder(data, 0700);
  if (const std::error_code error = log_.Open(logs + "/agent.log")) {
    log_.Write(logs + ": " + platform::DescribeError(error));
  }
  if (unwritable) log_.Write(data + ": " + platform::DescribeError(unwritable));
  WatchPlace();
  ClearDesktop();
  try {
    library_ = std::make_unique<FontLibrary>(configuration_, loop_, MakeLibraryEvents());
  } catch (const StoreError& error) {
    log_.Write(std::string(error.what()) + "; no fonts are served until that is repaired");
    dispatcher_.SetCodeForUnknownCalls(kInvalidVault);
  }
  AddSessionCalls();
  if (library_) AddFontCalls();
  const std::error_code error = passed
                                    ? server_.Serve(std::move(passed))
                                    : server_.Listen(configuration_.RuntimeFolder(), agent_protocol::kAgentSocketName);
  if (error) return error;
  FollowWebFolder();
  if (library_) library_->Start();
  if (configuration_.exitWithLastClient) EndAfter(kPatienceForFirstClient);
  return {};
}

// If the folder cannot be watched, the next request notices the loss.
void Agent::WatchPlace() {
  placeWatch_ = platform::Descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!placeWatch_) return;
  inotify_add_watch(placeWatch_.Get(), configuration_.stateFolder.c_str(), IN_MOVE_SELF | IN_DELETE_SELF);
  inotify_add_watch(placeWatch_.Get(), configuration_.RuntimeFolder().c_str(),
                    IN_MOVE_SELF | IN_DELETE | IN_MOVED_FROM);
  loop_.WatchDescriptor(placeWatch_.Get(), [this] {
    std::array<char, 4096> events;
    while (read(placeWatch_.Get(), events.data(), events.size()) > 0) {
    }
    CheckPlace();
  });
}

// Without its folder the agent can neither store nor activate anything, and another agent may start in its place. So it
// reports that, ends, and creates nothing.
void Agent::CheckPlace() {
  if (isLost_ || lock_.Look() == InstanceLock::Place::kKept) return;
  isLost_ = true;
  log_.Write(configuration_.stateFolder + ": was removed or replaced while the agent was running; the agent ends");
  dispatcher_.RefuseAll(kInvalidVault);
  EndAfter(kLinger);  // until then clients get the reason
}

void Agent::ClearDesktop() {
  const std::string folder = configuration_.ActiveFolderPath();
  if (configuration_.desktop) {
    const std::error_code error = ClaimDesktopFolder(folder, configuration_.stateFolder);
    if (error) log_.Write(folder + ": " + platform::DescribeError(error));
  }
  RemoveLinksOfDeadAgents(configuration_, loop_, [this](const std::string& line) { log_.Write(line); });
}

LibraryEvents Agent::MakeLibraryEvents() {
  LibraryEvents events;
  events.activated = [this](uint32_t id) { NotifyFont(PluginInterface::kFontActivated, id); };
  events.deactivated = [this](uint32_t id) { NotifyFont(PluginInterface::kFontDeactivated, id); };
  events.missing = [this](uint32_t id) { NotifyFont(PluginInterface::kFontMissing, id); };
  events.scanProgress = [this](const ScanProgress& progress) {
    NotifyProgress(PluginInterface::kBulkReplicationProgress, progress);
  };
  events.scanFinished = [this](bool hadProgress) {
    if (hadProgress) Notify({{"notify", PluginInterface::kBulkReplicationStopped}});
    dispatcher_.Release();
    webFonts_.Update();
  };
  events.fontsChanged = [this] { Notify({{"notify", PluginInterface::kPanelDataChanged}}); };
  events.designRefused = [this](uint32_t client, uint32_t fontID) {
    const auto found = clients_.find(client);
    if (found == clients_.end() || !found->second.activatesDesigns || !found->second.wantsNotifications) return;
    server_.Send(client, ToText({{"notify", PluginInterface::kDesignActivationNonCompliant}, {"fontID", fontID}}));
  };
  events.listsChanged = [this] { Notify({{"notify", PluginInterface::kSmartListsChanged}}); };
  events.report = [this](const std::string& line) { log_.Write(line); };
  return events;
}

void Agent::AddSessionCalls() {
#define ADD_CALL(name)                                                                                             \
  dispatcher_.Add<calls::name>(Needs::kNothing, [this](ClientID client, const calls::name::Arguments& arguments) { \
    return Serve(client, arguments);                                                                               \
  });
  AGENT_SESSION_CALLS(ADD_CALL)
#undef ADD_CALL
}

void Agent::AddFontCalls() {
#define ADD_CALL(name)                                                                                           \
  dispatcher_.Add<calls::name>(Needs::kFonts, [this](ClientID client, const calls::name::Arguments& arguments) { \
    return agent::Serve(*library_, client, arguments);                                                           \
  });
  AGENT_FONT_CALLS(ADD_CALL)
#undef ADD_CALL
#define ADD_CALL(name)                                                                                           \
  dispatcher_.Add<calls::name>(Needs::kFonts, [this](ClientID client, const calls::name::Arguments& arguments) { \
    return Serve(client, arguments);                                                                             \
  });
  AGENT_PREVIEW_CALLS(ADD_CALL)
#undef ADD_CALL
}

void Agent::KeepRunning() {
  if (endTimer_) loop_.RemoveTimer(endTimer_);
  endTimer_ = nullptr;
}

void Agent::Notify(const Json& notification) {
  const std::string text = ToText(notification);
  for (const auto& [id, client] : clients_) {
    if (client.wantsNotifications) server_.Send(id, text);
  }
}

void Agent::NotifyFont(uint32_t kind, uint32_t fontID) { Notify({{"notify", kind}, {"fontID", fontID}}); }

void Agent::NotifyProgress(uint32_t kind, const ScanProgress& progress) {
  Notify({{"notify", kind},
          {"payload", {{"stepIndex", progress.step}, {"numSteps", progress.steps}, {"text", progress.text}}}});
}

void Agent::OnGone(ClientID client) {
  dispatcher_.OnGone(client);
  const bool wasClient = clients_.erase(client) > 0;
  previews_.OnGone(client);
  if (library_) library_->Active().ReleaseClient(client);
  if (wasClient && clients_.empty() && configuration_.exitWithLastClient && !isLost_) EndAfter(kLinger);
}

void Agent::EndAfter(double seconds) {
  KeepRunning();
  endTimer_ = platform::RunLoopTimer::After(seconds, 0, [this](platform::RunLoopTimer&) { loop_.Stop(); });
  loop_.AddTimer(endTimer_, platform::RunLoopMode::kCommon);
}

void Agent::Finish() {
  server_.StopListening();
  Notify({{"notify", PluginInterface::kAgentShutdown}});
  // A new agent may already own the links here.
  if (library_ && lock_.Look() != InstanceLock::Place::kReplaced) library_->Finish();
  server_.Flush(kFlushMilliseconds);
}

}  // namespace agent
