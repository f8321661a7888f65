#include "host/console/PanelSession.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "host/console/Sandbox.h"
#include "host/console/Session.h"
#include "platform/Files.h"
#include "platform/Process.h"

namespace console {

namespace {

// The host's own event to the page: "running" or "gone".
constexpr const char* kAgentState = "com.velorant.AgentState";
// The plug-in switches itself off for good if it finds no agent. It looks every six seconds, so the host is nearly
// always the first to notice.
constexpr double kSecondsBetweenLooks = 0.01;
constexpr double kSecondsAfterFailure = 5;

bool HasDesktop() {
  for (const char* name : {"WAYLAND_DISPLAY", "DISPLAY"}) {
    const char* value = std::getenv(name);
    if (value && *value) return true;
  }
  return false;
}

// Returns the path of the program, as a shell finds it; empty if there is none.
std::string FindProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  for (std::string_view rest = path ? path : ""; !rest.empty();) {
    const size_t end = std::min(rest.find(':'), rest.size());
    std::string program = std::string(rest.substr(0, end)) + "/" + name;
    if (platform::IsExecutableFile(program)) return program;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return "";
}

}  // namespace

PanelSession::PanelSession(const Sandbox& sandbox, Session& session)
    : sandbox_(sandbox),
      session_(session),
      log_(open(sandbox.PanelLog().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600)),
      fonts_(session, sandbox.InterfaceFramework()),
      server_({.pageFolder = sandbox.PanelPageFolder(),
               .previewFolder = sandbox.PreviewFolder(),
               .onEvent = [this](const std::string& type, const std::string& data) { Take(type, data); },
               .log = [this](const std::string& line) { Log(line); }}),
      events_(sandbox.EventsFramework(),
              [this](const std::string& type, const std::string& data) { server_.Send(type, data); }) {
  if (HasDesktop()) OpenInBrowser();
}

PanelSession::~PanelSession() { std::remove(sandbox_.PanelRedirect().c_str()); }

// An event of the page: a request to the host itself, or one for the plug-in.
void PanelSession::Take(const std::string& type, const std::string& data) {
  if (type != panel::kPageToHost) return events_.Dispatch(type, data);
  const std::string answer = panel::AnswerHostRequest(fonts_, data);
  if (answer.empty()) return Log("refused a request to the host: it has no number");
  server_.Send(panel::kHostToPage, answer);
}

// Every user of the machine can read the arguments of a process, so the address is in a private file.
void PanelSession::OpenInBrowser() const {
  const std::string opener = FindProgram("xdg-open"), file = sandbox_.PanelRedirect(), address = server_.Address();
  const std::string page =
      "<!DOCTYPE html><meta charset=\"utf-8\"><title>Fonts</title><meta http-equiv=\"refresh\" "
      "content=\"0; url=" +
      address + "\"><a href=\"" + address + "\">Fonts</a>\n";
  std::string problem;
  if (opener.empty()) {
    problem = "xdg-open is not installed";
  } else if (const std::error_code error = platform::ReplaceFile(file, page)) {
    problem = file + ": " + platform::DescribeError(error);
  } else {
    platform::LaunchDetached(opener, file, "", &problem);
  }
  if (!problem.empty()) Log("the browser could not be opened: " + problem);
}

void PanelSession::Log(const std::string& line) const {
  // Ignored: a full disk must not end the panel.
  [[maybe_unused]] const ssize_t written = write(log_.Get(), (line + "\n").c_str(), line.size() + 1);
}

void PanelSession::TellAgentState(bool isRunning) {
  if (isAgentGone_ != isRunning) return;
  isAgentGone_ = !isRunning;
  server_.Send(kAgentState, isRunning ? "running" : "gone");
}

bool PanelSession::LookAfterAgent() {
  if (session_.HasAgent()) {
    TellAgentState(true);
    return true;
  }
  TellAgentState(false);
  session_.CatchUp();
  TellAgentState(session_.HasAgent());
  return !isAgentGone_;
}

PanelSession::AgentWatch::AgentWatch(PanelSession* panel) {
  if (!panel) return;
  timer_ = platform::RunLoopTimer::After(0, kSecondsBetweenLooks, [panel](platform::RunLoopTimer& timer) {
    if (!panel->LookAfterAgent()) timer.FireAfter(kSecondsAfterFailure);
  });
  platform::RunLoop::Main().AddTimer(timer_, platform::RunLoopMode::kDefault);
}

PanelSession::AgentWatch::~AgentWatch() {
  if (!timer_) return;
  timer_->Invalidate();
  platform::RunLoop::Main().RemoveTimer(timer_);
}

}  // namespace console
