#include "agent/client/AgentProcess.h"

#include <signal.h>

#include <sys/stat.h>
#include <unistd.h>
#include <chrono>

#include <cctype>
#include <filesystem>

#include "agent/client/AgentFolders.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Files.h"
#include "platform/Process.h"
#include "platform/Waiting.h"

namespace agent_client {

namespace {

namespace fs = std::filesystem;

bool IsNumber(const std::string& text) {
  for (const char c : text) {
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
  }
  return !text.empty();
}

// An agent's only argument is its state folder. A relative one starts at the agent's working folder.
bool ServesFolder(const fs::path& process, const fs::path& runtimeFolder) {
  std::string commandLine;
  if (platform::ReadFile((process / "cmdline").string(), commandLine)) return false;
  const size_t programEnd = commandLine.find('\0');
  if (programEnd == std::string::npos) return false;
  const std::string argument = commandLine.c_str() + programEnd + 1;
  if (argument.empty()) return false;
  std::error_code error;
  const fs::path state = process / "cwd" / argument;
  for (const fs::path& folder : {state / "run", fs::path(RuntimeFolderOf(state.string()))}) {
    if (fs::weakly_canonical(folder, error) == runtimeFolder && !error) return true;
  }
  return false;
}

bool IsOwnAgent(const fs::path& process) {
  struct stat info;
  if (stat(process.c_str(), &info) != 0 || info.st_uid != geteuid()) return false;
  std::error_code error;
  const fs::path executable = fs::read_symlink(process / "exe", error);
  return !error && executable.filename() == agent_protocol::kAgentName;
}

}  // namespace

int AnnouncedAgentProcess() {
  for (const platform::RunningApplication& application : platform::RunningApplications()) {
    if (application.identifier == agent_protocol::kAgentIdentifier) return application.processID;
  }
  return 0;
}

bool IsAgentProcessRunning(const std::string& runtimeFolder) {
  if (AnnouncedAgentProcess() != 0) return true;
  // A just launched agent has not announced itself yet.
  std::error_code error;
  const fs::path folder = fs::weakly_canonical(runtimeFolder, error);
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error)) {
    if (IsNumber(entry.path().filename().string()) && IsOwnAgent(entry.path()) && ServesFolder(entry.path(), folder)) {
      return true;
    }
  }
  return false;
}

std::string EndAgent() {
  constexpr std::chrono::seconds kPatience(10);
  const int process = AnnouncedAgentProcess();
  if (process == 0) return "";
  kill(process, SIGTERM);
  if (platform::WaitUntil(kPatience, [process] { return AnnouncedAgentProcess() != process; })) return "";
  return "the font manager, process " + std::to_string(process) + ", has read another configuration and does not end";
}

}  // namespace agent_client
