#include "frameworks/VelorantPluginInterface/AgentRestart.h"

#include <dlfcn.h>

#include <chrono>
#include <deque>
#include <filesystem>
#include <mutex>

#include "agent/client/AgentFolders.h"
#include "agent/client/AgentProcess.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Process.h"
#include "platform/Trace.h"

namespace plugin_interface {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// An agent that ends at each question is not started for ever.
constexpr size_t kMostRestarts = 3;
constexpr auto kPeriod = std::chrono::minutes(1);

struct Restarts {
  std::mutex mutex;  // guards what follows
  std::deque<Clock::time_point> times;
};

// Leaked on purpose: a thread may still call when the process ends.
Restarts& Recent() {
  static auto* restarts = new Restarts;
  return *restarts;
}

bool MayRestart() {
  Restarts& recent = Recent();
  const std::lock_guard lock(recent.mutex);
  const Clock::time_point now = Clock::now();
  while (!recent.times.empty() && now - recent.times.front() > kPeriod) recent.times.pop_front();
  if (recent.times.size() >= kMostRestarts) return false;
  recent.times.push_back(now);
  return true;
}

// The agent is beside the bundle of this library.
fs::path AgentBesideBundle() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&AgentBesideBundle), &info) == 0 || !info.dli_fname) return {};
  return fs::path(info.dli_fname).parent_path().parent_path() / agent_protocol::kAgentName;
}

// Only traces a failure: callers get the code of an agent that is gone, and their program tells its user.
void Restart(const std::string& runtimeFolder) {
  const fs::path agent = AgentBesideBundle();
  std::string error;
  if (!platform::LaunchDetached(agent, agent_client::StateFolderAt(runtimeFolder), "", &error)) {
    platform::TraceLine(0, agent.string() + ": " + error);
  }
}

}  // namespace

void ForgetRestarts() {
  Restarts& recent = Recent();
  const std::lock_guard lock(recent.mutex);
  recent.times.clear();
}

std::shared_ptr<Facade> ReturnToAgent() {
  std::shared_ptr<Facade> facade = CurrentFacade();
  facade->AwaitLastWords();  // it may have announced its end
  if (!ExpectsAgent() || IsAgentSilent()) return nullptr;
  // Another thread or program may have started it.
  if (facade->Connect() == kSuccess) return facade;
  if (!MayRestart()) return nullptr;
  Restart(facade->RuntimeFolder());
  DiscardFacade(false);  // a new one waits for the agent
  facade = CurrentFacade();
  return facade->Connect() == kSuccess ? facade : nullptr;
}

}  // namespace plugin_interface
