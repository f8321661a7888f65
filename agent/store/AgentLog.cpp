#include "agent/store/AgentLog.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "agent/fonts/ShownText.h"
#include "agent/include/AgentProtocol.h"
#include "platform/Clock.h"
#include "platform/LastError.h"

namespace agent {

std::error_code AgentLog::Open(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) == 0 && static_cast<size_t>(info.st_size) > kLongestFile) {
    std::rename(path.c_str(), (path + ".old").c_str());
  }
  file_ = platform::Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  return file_ ? std::error_code() : platform::LastError();
}

void AgentLog::Write(const std::string& text) const {
  const std::string line = WithoutControls(text, "\uFFFD");
  std::fprintf(stderr, "%s: %s\n", agent_protocol::kAgentName, line.c_str());
  if (!file_) return;
  const std::time_t now = static_cast<std::time_t>(platform::Clock::WholeSeconds());
  std::tm parts{};
  char time[32];
  std::strftime(time, sizeof time, "%Y-%m-%d %H:%M:%S ", localtime_r(&now, &parts));
  const std::string whole = time + line + "\n";
  // Ignored: a full disk must not end the agent, and the line is on standard error.
  [[maybe_unused]] const ssize_t written = write(file_.Get(), whole.data(), whole.size());
}

}  // namespace agent
