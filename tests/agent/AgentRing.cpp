#include "agent/AgentRing.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Bundle.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Process.h"
#include "support/DebianFonts.h"

namespace agent_ring {

namespace fs = std::filesystem;

namespace {

Recorder* registered = nullptr;

template <class Function>
Function Resolve(platform::Bundle& bundle, const char* name) {
  void* function = bundle.FunctionForName(name);
  EXPECT_NE(function, nullptr) << name;
  return reinterpret_cast<Function>(function);
}

// Waits for the end of a process that is not a child.
bool AwaitEnd(int process, int signal) {
  const platform::Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
  if (!handle || kill(process, signal) != 0) return false;
  pollfd polled{handle.Get(), POLLIN, 0};
  return poll(&polled, 1, kMostMilliseconds) == 1;
}

}  // namespace

const Library& Library::Get() {
  static platform::BundleRef bundle;
  static const Library library = [] {
    Library resolved;
    std::string error;
    bundle = platform::Bundle::Create(APP_DIR "/agent/VelorantPluginInterface.framework", &error);
    EXPECT_TRUE(bundle && bundle->Load(&error)) << error;
    if (!bundle) return resolved;
#define RESOLVE(name, result, parameters) resolved.name = Resolve<result(*) parameters>(*bundle, #name);
    PLUGIN_INTERFACE_FUNCTIONS(RESOLVE)
#undef RESOLVE
    return resolved;
  }();
  return library;
}

PluginInterface::TModuleErrorCode Recorder::Callback(PluginInterface::ECallbackKind kind, void* data) {
  const bool isOfFont = kind == PluginInterface::kFontActivated || kind == PluginInterface::kFontDeactivated ||
                        kind == PluginInterface::kFontMissing;
  const uint32_t fontID = isOfFont ? *static_cast<uint32_t*>(data) : 0;
  // A callback may call the library, on the library's own thread.
  int32_t online = 0;
  const Library& vpi = Library::Get();
  vpi.GetIsOnline(vpi.GetPluginFacadeInstance(), &online);
  const std::lock_guard lock(registered->mutex_);
  registered->events_.push_back({kind, fontID});
  registered->came_.notify_all();
  return 0x15000000;
}

bool Recorder::Await(uint32_t kind, uint32_t fontID) {
  std::unique_lock lock(mutex_);
  return came_.wait_for(lock, std::chrono::milliseconds(kMostMilliseconds), [&] {
    for (const Event& event : events_) {
      if (event.kind == kind && event.fontID == fontID) return true;
    }
    return false;
  });
}

size_t Recorder::Count() const {
  const std::lock_guard lock(mutex_);
  return events_.size();
}

RawClient::RawClient(const std::string& runtimeFolder) {
  std::error_code error;
  socket_ = platform::ConnectLocal(runtimeFolder, agent_protocol::kAgentSocketName, error);
  EXPECT_FALSE(error) << error.message();
}

Json RawClient::Ask(const std::string& call, const Json& arguments) {
  const Json request = {{"id", ++lastID_}, {"call", call}, {"arguments", arguments}};
  EXPECT_FALSE(platform::SendMessage(socket_.Get(), request.dump()));
  std::string text;
  while (!platform::ReceiveMessage(socket_.Get(), text)) {
    Json message = Json::parse(text);
    if (message.contains("id") && message["id"] == lastID_) return message;
    notifications.push_back(std::move(message));
  }
  ADD_FAILURE() << "no reply to " << call;
  return Json::object();
}

Json RawClient::Next() {
  if (!notifications.empty()) {
    Json first = std::move(notifications.front());
    notifications.erase(notifications.begin());
    return first;
  }
  pollfd waited{socket_.Get(), POLLIN, 0};
  std::string text;
  if (poll(&waited, 1, kMostMilliseconds) != 1 || platform::ReceiveMessage(socket_.Get(), text)) {
    ADD_FAILURE() << "no notification comes";
    return nullptr;
  }
  return Json::parse(text);
}

void RawClient::SendBytes(const std::string& bytes) const {
  EXPECT_EQ(send(socket_.Get(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
}

bool RawClient::IsEnded() const {
  constexpr int kMostMilliseconds = 60'000;
  std::string text;
  for (;;) {
    pollfd waited{socket_.Get(), POLLIN, 0};
    if (poll(&waited, 1, kMostMilliseconds) != 1) return false;
    if (platform::ReceiveMessage(socket_.Get(), text)) return true;
  }
}

int RawClient::AgentProcess() const {
  ucred peer{};
  socklen_t size = sizeof peer;
  EXPECT_EQ(getsockopt(socket_.Get(), SOL_SOCKET, SO_PEERCRED, &peer, &size), 0);
  return peer.pid;
}

AgentRing::AgentRing() {
  platform::Places places;
  places.runtime = state_ / "run";
  places.fontConfigFile = state_.WriteFontsConf({state_ / "active"});
  places.logs = state_ / "logs";
  platform::SetPlaces(places);
  registered = &recorder_;
  WriteConfiguration();
}

AgentRing::~AgentRing() {
  vpi_.UnregisterForNotifications(0, &Recorder::Callback);
  int32_t ignored = 0;
  vpi_.GetIsOnline(Handle(),
                   &ignored);  // waits for an agent that was launched but never called, so that it can be ended
  vpi_.CleanUpOnShutdown(Handle());
  std::error_code none;
  if (platform::ConnectLocal(Runtime(), agent_protocol::kAgentSocketName, none)) End(SIGTERM);
  platform::SetPlaces({});
}

std::string AgentRing::Runtime() const { return agent_client::RuntimeFolderOf(state_.Path()); }

void AgentRing::FillLibrary() {
  using namespace debian_fonts;
  fonts_.Write("LiberationSerif-Bold.ttf", Bytes(kLiberation + "LiberationSerif-Bold.ttf"));
  fonts_.Write("LiberationMono-Bold.ttf", Bytes(kLiberation + "LiberationMono-Bold.ttf"));
  for (const char* file : {"NimbusSans-Regular.otf", "NimbusSans-Bold.otf"}) {
    fonts_.Write(file, Bytes(kOpenType + file));
  }
  fonts_.Write("NimbusSans-Bold.t1", Bytes(kType1 + "NimbusSans-Bold.t1"));
  fonts_.Write("broken.otf", "no font");
}

void AgentRing::WriteConfiguration(const Json& more) {
  Json configuration = {{"library", {fonts_.Path()}}};
  configuration.update(more);
  state_.Write(agent_protocol::kConfigurationName, configuration.dump());
}

void AgentRing::Launch() const {
  std::string error;
  ASSERT_TRUE(platform::LaunchDetached(APP_DIR "/agent/Nexcore", state_.Path(), state_ / "output.txt", &error))
      << error;
}

void AgentRing::LaunchAndAwaitAnnouncement() const {
  const std::string folder = state_ / "run/applications";
  ASSERT_FALSE(platform::MakeFolder(state_ / "run", 0700) || platform::MakeFolder(folder, 0700));
  const platform::Descriptor watch(inotify_init1(IN_CLOEXEC));
  ASSERT_GE(inotify_add_watch(watch.Get(), folder.c_str(), IN_MOVED_TO), 0);
  Launch();
  pollfd polled{watch.Get(), POLLIN, 0};
  ASSERT_EQ(poll(&polled, 1, kMostMilliseconds), 1);
}

void AgentRing::AwaitListening() const {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kMostMilliseconds);
  std::error_code error;
  while (!platform::ConnectLocal(Runtime(), agent_protocol::kAgentSocketName, error)) {
    ASSERT_LT(std::chrono::steady_clock::now(), end) << error.message();
  }
}

void AgentRing::End(int signal) const {
  const int process = RawClient(Runtime()).AgentProcess();
  ASSERT_TRUE(AwaitEnd(process, signal)) << process;
}

std::vector<uint32_t> AgentRing::FontsNamed(const char* name) const {
  constexpr uint32_t kCapacity = 1024;
  std::vector<uint32_t> ids(kCapacity);
  uint32_t count = 0;
  const uint32_t all = 0;
  EXPECT_EQ(vpi_.GetFontsByPostscriptName(Handle(), name, &all, 1, ids.data(), kCapacity, &count), 0u) << name;
  ids.resize(count);
  return ids;
}

uint32_t AgentRing::FontNamed(const char* name) const {
  const std::vector<uint32_t> ids = FontsNamed(name);
  return ids.size() == 1 ? ids.front() : 0;
}

size_t AgentRing::Activate(const std::vector<uint32_t>& ids, uint32_t kind) const {
  const auto count = static_cast<uint32_t>(ids.size());
  std::vector<uint32_t> failed(count), refused(count);
  uint32_t failedCount = 99, refusedCount = 99;
  EXPECT_EQ(vpi_.ActivateFonts(Handle(), count, ids.data(), 0, kind, 1, 1, count, count, failed.data(), refused.data(),
                               &failedCount, &refusedCount),
            0u);
  return count - failedCount - refusedCount;
}

bool AgentRing::IsActive(uint32_t id) const {
  uint32_t flag = 99;
  EXPECT_EQ(vpi_.GetFontIsActivated(Handle(), 1, &id, &flag), 0u);
  return flag == 1;
}

std::string AgentRing::StateOf(uint32_t id) const {
  platform::Dictionary request = platform::Dictionary::Create();
  request.Set("DatabaseID", std::to_string(id));
  PluginInterface::FontRecordFields fields;
  platform::ValueRef record = nullptr;
  EXPECT_EQ(vpi_.GetFontInfoByID(Handle(), nullptr, 0, request.Ref(), &fields, &record), 0u);
  return platform::Dictionary(platform::Value::Adopt(record)).GetString("ActivationStatus").Text();
}

std::vector<std::string> AgentRing::Links() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(agent_client::ActiveFolderOf(state_.Path(), false, ""))) {
    if (!entry.is_directory()) names.push_back(entry.path().filename());
  }
  return names;
}

}  // namespace agent_ring
