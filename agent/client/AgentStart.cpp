#include "agent/client/AgentStart.h"

#include <cstdio>

#include "agent/client/AgentFolders.h"
#include "agent/client/AgentProcess.h"
#include "agent/include/AgentCalls.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/Waiting.h"

namespace agent_client {

namespace {

constexpr std::chrono::seconds kPatience(20);

// Returns null if no agent answers.
std::unique_ptr<AgentConnection> Connect(const std::string& runtimeFolder) {
  platform::Descriptor socket = ReachAgent(runtimeFolder);
  if (!socket) return nullptr;
  auto connection = std::make_unique<AgentConnection>(
      std::move(socket), [](const Json&) {}, [] {}, kPatience);
  const auto code = connection->Call<agent_protocol::calls::Hello>({}).code;
  return code == agent_protocol::kSuccess ? std::move(connection) : nullptr;
}

// The last line that the agent has written to the file.
std::string LastWords(const std::string& errorsFile) {
  std::string text;
  if (platform::ReadFile(errorsFile, text) || text.empty()) return "";
  if (text.back() == '\n') text.pop_back();
  return ": " + text.substr(text.rfind('\n') + 1);
}

}  // namespace

std::unique_ptr<AgentConnection> StartAgent(const std::string& stateFolder, const std::string& program,
                                            std::string* problem) {
  const std::string runtimeFolder = RuntimeFolderOf(stateFolder);
  const std::string errors = SessionFolderOf(stateFolder) + "/logs/agent.err";
  std::unique_ptr<AgentConnection> connection;
  bool canLaunch = true;
  platform::WaitUntil(kPatience, [&] {
    connection = Connect(runtimeFolder);
    if (connection) return AnnouncedAgentProcess() != 0;
    if (IsAgentProcessRunning(runtimeFolder)) return false;
    std::remove(errors.c_str());  // those of the previous agent
    canLaunch = platform::LaunchDetached(program, stateFolder, errors, problem);
    return !canLaunch;
  });
  if (connection || !canLaunch) return connection;
  const bool isThere = IsAgentProcessRunning(runtimeFolder);
  *problem = program + (isThere ? ": the font manager does not answer" : ": the font manager does not start") +
             LastWords(errors);
  return nullptr;
}

}  // namespace agent_client
