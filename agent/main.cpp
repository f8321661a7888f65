// Nexcore, the font manager agent: `Nexcore STATE-FOLDER`.
#include <sys/signalfd.h>

#include <csignal>
#include <cstdio>
#include <string>

#include "agent/include/AgentProtocol.h"
#include "agent/server/Agent.h"
#include "agent/store/Configuration.h"
#include "agent/store/InstanceLock.h"
#include "platform/Files.h"
#include "platform/Folders.h"
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
  places.runtime = configuration.RuntimeFolder();
  if (!configuration.desktop) places.fontConfigFile = configuration.stateFolder + "/fonts.conf";
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

int Run(const agent::Configuration& configuration) {
  agent::InstanceLock lock;
  std::error_code error;
  switch (lock.Take(configuration.RuntimeFolder(), agent_protocol::kAgentSocketName, error)) {
    case agent::InstanceLock::Result::kServed: return 0;
    case agent::InstanceLock::Result::kFailed:
      return Fail(configuration.RuntimeFolder() + ": " + platform::DescribeError(error), 1);
    case agent::InstanceLock::Result::kTaken: break;
  }
  // Announce it before opening the databases, which can take long: the process that started the agent looks for it at
  // once.
  std::string problem;
  const auto announcement =
      platform::AnnounceApplication(agent_protocol::kAgentName, agent_protocol::kAgentIdentifier, &problem);
  // Clients also find the agent by its process and its socket, so a full disk is no reason to end.
  if (!announcement) Fail(problem, 1);
  platform::RunLoop& loop = platform::RunLoop::Main();
  const platform::Descriptor signals = CatchEndSignals();
  loop.WatchDescriptor(signals.Get(), [&loop] { loop.Stop(); });
  agent::Agent agent(configuration, lock, loop);
  if ((error = agent.Start())) return Fail(configuration.stateFolder + ": " + platform::DescribeError(error), 1);
  loop.RunFor(kForEver);
  agent.Finish();
  return agent.IsLost() ? 1 : 0;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return Fail("usage: Nexcore STATE-FOLDER", kBadArgument);
  std::string error;
  const auto configuration = agent::ReadConfiguration(arguments[1], error);
  if (!configuration) return Fail(error, kBadArgument);
  SetPlaces(*configuration);
  return Run(*configuration);
}
