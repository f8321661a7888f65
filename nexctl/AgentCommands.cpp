// The agent itself: its state, and what it tells.
#include <poll.h>
#include <sys/signalfd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>

#include "agent/client/AgentFolders.h"
#include "frameworks/VelorantPluginInterface/include/PluginInterface.h"
#include "nexctl/Commands.h"
#include "nexctl/Fonts.h"
#include "platform/Files.h"

namespace nexctl {

namespace {

const char* EventName(uint32_t kind) {
  switch (kind) {
#define EVENT_NAME(number, name, payload) \
  case number: return #name;
    AGENT_EVENTS(EVENT_NAME)
#undef EVENT_NAME
    default: return "?";
  }
}

// Without the bytes of pictures.
void PrintEvent(const Output& output, const Json& event) {
  const uint32_t kind = event.value("notify", 0u);
  if (output.IsJson()) {
    OrderedJson object = {{"event", EventName(kind)}};
    if (event.contains("fontID")) object["fontID"] = event["fontID"];
    if (event.contains("payload") && kind != PluginInterface::kPreviewPNGsRendered)
      object["payload"] = event["payload"];
    output.Object(object);
    return;
  }
  std::string line = EventName(kind);
  if (event.contains("fontID")) line += " " + event["fontID"].dump();
  const Json payload = event.value("payload", Json::object());
  if (payload.contains("stepIndex") && payload.contains("numSteps")) {
    line += " " + payload["stepIndex"].dump() + "/" + payload["numSteps"].dump() + " " + payload.value("text", "");
  }
  output.Line(line);
}

}  // namespace

int ShowStatus(const Call& call) {
  Session session(call.options.state);
  const auto status = session.Ask<calls::GetStatus>();
  std::vector<std::string> folders;
  for (const auto& workgroup : session.Ask<calls::GetWorkgroups>().workgroups) {
    folders.insert(folders.end(), workgroup.folders.begin(), workgroup.folders.end());
  }
  const std::string scan =
      status.isScanning ? std::to_string(status.step) + " of " + std::to_string(status.steps) : "done";
  if (call.output.IsJson()) {
    call.output.Object({{"state", session.StateFolder()},
                        {"scan", scan},
                        {"fonts", status.fonts},
                        {"folders", folders},
                        {"activeFolder", status.activeFolder},
                        {"desktop", status.isDesktop}});
    return 0;
  }
  call.output.Line("state folder   " + session.StateFolder());
  call.output.Line("scan           " + scan);
  call.output.Line("fonts          " + std::to_string(status.fonts));
  for (const std::string& folder : folders) call.output.Line("folder         " + folder);
  call.output.Line("active fonts   " + status.activeFolder +
                   (status.isDesktop ? ", for all programs" : ", for the host's sandbox"));
  return 0;
}

int CheckLibrary(const Call& call) {
  Session session(call.options.state);
  std::vector<std::vector<std::string>> rows;
  for (const auto& problem : session.Ask<calls::GetScanReport>().problems)
    rows.push_back({problem.path, problem.message});
  for (const auto& problem : session.Ask<calls::GetWebFontsStatus>().problems)
    rows.push_back({problem.path, problem.message});
  call.output.Table({"path", "problem"}, rows);
  return rows.empty() ? 0 : 1;
}

int Watch(const Call& call) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  const platform::Descriptor interrupted(signalfd(-1, &signals, SFD_CLOEXEC));
  Session session(call.options.state, [&call](const Json& event) {
    PrintEvent(call.output, event);
    std::fflush(stdout);
  });
  constexpr int kLookAgain = 500;  // milliseconds
  pollfd waited{interrupted.Get(), POLLIN, 0};
  while (poll(&waited, 1, kLookAgain) == 0) {
    if (session.IsLost()) throw Failure("the font manager has ended");
  }
  return 0;
}

int ShowLog(const Call& call) {
  // Also of an agent that does not start.
  const std::string path = agent_client::SessionFolderOf(StateFolderNamed(call.options.state)) + "/agent/agent.log";
  std::string text;
  if (const std::error_code error = platform::ReadFile(path, text))
    throw Failure(path + ": " + platform::DescribeError(error));
  for (size_t at = 0; at < text.size();) {
    const size_t end = std::min(text.find('\n', at), text.size());
    call.output.Line(text.substr(at, end - at));
    at = end + 1;
  }
  return 0;
}

}  // namespace nexctl
