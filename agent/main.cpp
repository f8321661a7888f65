// Nexcore, the font manager agent: `Nexcore STATE-FOLDER`.
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <systemd/sd-daemon.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "agent/client/AgentFolders.h"
#include "agent/client/StateFolder.h"
#include "agent/include/AgentProtocol.h"
#include "agent/server/Agent.h"
#include "agent/store/Configuration.h"
#include "agent/store/InstanceLock.h"
#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/LocalSocket.h"
#include "platform/Process.h"
#include "platform/RunLoop.h"

namespace {

constexpr int kBadArgument = 2;
constexpr double kForEver = 1e9;  // seconds; the loop ends when it is stopped

int Fail(const std::string& line, int status) {
  std::fprintf(stderr, "%s: %s\n", agent_protocol::kAgentName, line.c_str());
  return status;
}

void SetPlaces(const agent::Configuration& configuration) {
  platform::Places places = platform::GetPlaces();
  const platform::Places ofState = agent_client::PlacesOf(configuration.stateFolder, configuration.desktop);
  places.runtime = ofState.runtime;
  places.fontConfigFile = ofState.fontConfigFile;
  platform::SetPlaces(places);
}

// Receives the signals that request an orderly end through a descriptor.
platform::Descriptor CatchEndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return platform::Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

// Takes the socket that a service manager passes to the agent that it starts for a client. Returns false, with a line
// in `problem`, if it passes another one.
bool TakePassedSocket(const agent::Configuration& configuration, platform::Descriptor& passed, std::string& problem) {
  // The helper programs of the agent inherit its environment, so what it says about the socket is removed.
  const int count = sd_listen_fds(1);
  if (count == 0) return true;
  const std::string path = configuration.RuntimeFolder() + "/" + agent_protocol::kAgentSocketName;
  if (count == 1 && sd_is_socket_unix(SD_LISTEN_FDS_START, SOCK_STREAM, 1, path.c_str(), 0) > 0) {
    passed = platform::Descriptor(SD_LISTEN_FDS_START);
    return true;
  }
  problem = path + ": the service manager passes another socket";
  return false;
}

// True if a service manager listens for an agent that nobody serves: it holds the socket, and starts an agent for the
// connection that this function makes.
bool IsServiceManagerListening(const agent::Configuration& configuration) {
  std::error_code error;
  return static_cast<bool>(
      platform::ConnectLocal(configuration.RuntimeFolder(), agent_protocol::kAgentSocketName, error));
}

int Run(const agent::Configuration& configuration) {
  platform::Descriptor passed;
  std::string problem;
  if (!TakePassedSocket(configuration, passed, problem)) return Fail(problem, 1);
  agent::InstanceLock lock;
  std::error_code error;
  using Socket = agent::InstanceLock::Socket;
  const std::string runtimeFolder = configuration.RuntimeFolder();
  switch (
      lock.Take(runtimeFolder, agent_protocol::kAgentSocketName, error, passed ? Socket::kPassed : Socket::kOfHolder)) {
    case agent::InstanceLock::Result::kServed: return 0;
    case agent::InstanceLock::Result::kFailed: return Fail(runtimeFolder + ": " + platform::DescribeError(error), 1);
    case agent::InstanceLock::Result::kTaken: break;
  }
  // Another program has found just now that the folder cannot be written, and its agent may serve the substitute.
  if (configuration.RuntimeFolder() != runtimeFolder) return Fail(runtimeFolder + ": is replaced; try again", 1);
  if (!passed && IsServiceManagerListening(configuration)) return 0;
  // Announce it before opening the databases, which can take long: the process that started the agent looks for it at
  // once.
  const auto announcement =
      platform::AnnounceApplication(agent_protocol::kAgentName, agent_protocol::kAgentIdentifier, &problem);
  // Clients also find the agent by its process and its socket, so a full disk is no reason to end.
  if (!announcement) Fail(problem, 1);
  platform::RunLoop& loop = platform::RunLoop::Main();
  const platform::Descriptor signals = CatchEndSignals();
  loop.WatchDescriptor(signals.Get(), [&loop] { loop.Stop(); });
  agent::Agent agent(configuration, lock, loop);
  if ((error = agent.Start(std::move(passed))))
    return Fail(configuration.stateFolder + ": " + platform::DescribeError(error), 1);
  loop.RunFor(kForEver);
  agent.Finish();
  return agent.IsLost() ? 1 : 0;
}

// A service manager, or a program that only asks, may start the agent of a user who has none yet. On a disk that cannot
// be written the agent has that user's configuration in memory. Returns nothing, with one line in `error`, on failure.
std::optional<agent::Configuration> ReadOrSetUp(const std::string& stateFolder, std::string& error) {
  const bool isNew = !platform::FileExists(stateFolder + "/" + agent_protocol::kConfigurationName);
  if (!isNew || stateFolder != platform::UserStateFolder()) return agent::ReadConfiguration(stateFolder, error);
  std::error_code none;
  const std::string self = std::filesystem::read_symlink("/proc/self/exe", none).string();
  const auto setup = agent_client::DesktopSetup(stateFolder, self, platform::GetPlaces().home);
  agent_client::StoredSetup stored;
  error = agent_client::SetUpStateFolder(setup, &stored);
  if (error.empty()) return agent::ReadConfiguration(stateFolder, error);
  Fail(error, 1);
  agent::Configuration configuration;
  configuration.stateFolder = stateFolder;
  configuration.library = setup.newLibrary;
  configuration.desktop = setup.newDesktop;
  configuration.exitWithLastClient = true;
  return configuration;
}

}  // namespace

int main(int count, char** arguments) {
  platform::ReserveStandardStreams();
  if (count != 2) return Fail("usage: Nexcore STATE-FOLDER", kBadArgument);
  std::string error;
  const auto configuration = ReadOrSetUp(arguments[1], error);
  if (!configuration) return Fail(error, kBadArgument);
  // A service manager that passes a socket has made the folder.
  if (sd_listen_fds(0) == 0) {
    const std::error_code unusable = agent_client::MakeSessionFolder(configuration->stateFolder);
    if (unusable) return Fail(configuration->stateFolder + "/run: " + platform::DescribeError(unusable), 1);
  }
  SetPlaces(*configuration);
  return Run(*configuration);
}
