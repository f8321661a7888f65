#include "with-fonts/FontKeeper.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "platform/LocalSocket.h"
#include "platform/Presenter.h"
#include "with-fonts/Complain.h"

namespace with_fonts {

using Json = nlohmann::ordered_json;

namespace {

// The verbs of requests. A request is a message with its verb and one with its arguments; each has one answer.
constexpr const char* kOpen = "open";          // a path; a further message is the report. The answer is a DocumentFonts
constexpr const char* kPredict = "predict";    // the same, without a path
constexpr const char* kIdentify = "identify";  // as kOpen; the answer is a problem
constexpr const char* kClose = "close";        // a path; the answer is empty
constexpr const char* kKeep = "keep";          // a file; the answer is a problem
constexpr const char* kHoldFor = "hold-for";   // numbers of processes; the answer is a problem
constexpr const char* kGone = "the process that holds the fonts has ended; its fonts were given back";
constexpr int kBetweenTicks = 1000;  // milliseconds

constexpr int kEnds[] = {SIGTERM, SIGHUP};

std::string Dump(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

// Boxes of the plug-in's logic. The one about a lost agent is not shown: this process starts the agent again.
platform::ValueRef ShowBox(void*, platform::ValueRef box) {
  const platform::Dictionary shown(platform::Value::Retain(box));
  if (shown.GetString("Key").View() == "FontManagerNotFoundMessage") return nullptr;
  Complain(shown.GetString("Header").Text() + " " + shown.GetString("Message").Text());
  return nullptr;
}

// The process's side.
class Server {
 public:
  Server(int socket, const FontSource& source) : socket_(socket), holder_(source) {}

  void Run() {
    constexpr platform::Presenter kBoxes{.runBox = ShowBox};
    platform::SetPresenter(&kBoxes);
    const std::string problem = holder_.Connect();
    bool goesOn = !platform::SendMessage(socket_, problem) && problem.empty();
    while (goesOn) {
      pollfd request{socket_, POLLIN, 0};
      const int ready = poll(&request, 1, kBetweenTicks);
      Complain(holder_.Tick());
      if (ready > 0) goesOn = ServeOne();
    }
    AwaitEnd();
  }

 private:
  bool ServeOne() {
    std::string verb, argument;
    if (platform::ReceiveMessage(socket_, verb) || platform::ReceiveMessage(socket_, argument)) {
      Complain(holder_.CloseAll());
      return false;
    }
    return !platform::SendMessage(socket_, Answer(verb, argument)) && processes_.empty();
  }

  std::string Answer(const std::string& verb, const std::string& argument) {
    if (verb == kOpen || verb == kPredict || verb == kIdentify) {
      std::string text;
      if (platform::ReceiveMessage(socket_, text)) return "";
      const docfonts::Report report = docfonts::FromJson(Json::parse(text));
      if (verb == kIdentify) return FontHolder::Identify(argument, report);
      return Dump(ToJson(verb == kOpen ? holder_.Open(argument, report) : FontHolder::Predict(report)));
    }
    if (verb == kClose) holder_.Close(argument);
    if (verb == kKeep) return holder_.Keep(argument);
    if (verb == kHoldFor) return HoldFor(Json::parse(argument).get<std::vector<pid_t>>());
    return "";
  }

  std::string HoldFor(const std::vector<pid_t>& processes) {
    for (const pid_t process : processes) {
      platform::Descriptor ended(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
      if (ended) processes_.push_back(std::move(ended));
    }
    if (processes_.empty()) return "the processes have ended";
    for (const int signal : kEnds) std::signal(signal, SIG_DFL);
    // From now on the process must outlive the one that started it, its terminal and who reads its output.
    prctl(PR_SET_PDEATHSIG, 0);
    if (setsid() < 0 || chdir("/") != 0 || !std::freopen("/dev/null", "r+", stdin) ||
        dup2(STDIN_FILENO, STDOUT_FILENO) < 0 || dup2(STDIN_FILENO, STDERR_FILENO) < 0) {
      processes_.clear();
      return "the fonts can't be held in the background";
    }
    return "";
  }

  void AwaitEnd() {
    if (processes_.empty()) return;
    while (!processes_.empty()) {
      std::vector<pollfd> ends;
      for (const auto& process : processes_) ends.push_back({process.Get(), POLLIN, 0});
      poll(ends.data(), ends.size(), kBetweenTicks);
      holder_.Tick();
      for (size_t i = ends.size(); i-- > 0;) {
        if (ends[i].revents != 0) processes_.erase(processes_.begin() + static_cast<ptrdiff_t>(i));
      }
    }
    holder_.CloseAll();
  }

  const int socket_;
  FontHolder holder_;
  std::vector<platform::Descriptor> processes_;  // for which the fonts are held
};

}  // namespace

std::string FontKeeper::Start(const FontSource& source, PrivateFonts& privateFonts) {
  const std::error_code error = process_.Start([&](int socket) {
    // Ctrl-C is for the program that is run.
    std::signal(SIGINT, SIG_IGN);
    std::signal(SIGQUIT, SIG_IGN);
    // Whoever ends all processes of a session ends the program, too, which may still need the fonts while it saves. A
    // handler, unlike a signal that is ignored, does not pass to the programs that this process starts.
    for (const int signal : kEnds) std::signal(signal, [](int) {});
    std::signal(SIGPIPE, SIG_IGN);
    Server(socket, source).Run();
    privateFonts.Remove();
  });
  if (error) return "no process can be started: " + error.message();
  std::string problem;
  if (platform::ReceiveMessage(process_.Socket(), problem)) return kGone;
  return problem;
}

void FontKeeper::Forget() {
  process_.Await();
  isThere_ = true;
}

void FontKeeper::End() {
  if (process_.IsStarted() && process_.Await() != 0) Complain(kGone);
}

bool FontKeeper::Ask(std::initializer_list<std::string_view> messages, std::string& answer) {
  for (const std::string_view message : messages) {
    isThere_ = isThere_ && !platform::SendMessage(process_.Socket(), message);
  }
  isThere_ = isThere_ && !platform::ReceiveMessage(process_.Socket(), answer);
  return isThere_;
}

DocumentFonts FontKeeper::AskAbout(const docfonts::Report& report, std::string_view verb, std::string_view path) {
  std::string answer;
  DocumentFonts fonts{"", {}, {kGone}};
  if (Ask({verb, path, Dump(ToJson(report))}, answer)) fonts = FromJson(Json::parse(answer));
  fonts.document = report.file;  // which need not be UTF-8
  return fonts;
}

DocumentFonts FontKeeper::Open(const std::string& path, const docfonts::Report& report) {
  return AskAbout(report, kOpen, path);
}

DocumentFonts FontKeeper::Predict(const docfonts::Report& report) { return AskAbout(report, kPredict, ""); }

bool FontKeeper::Close(const std::string& path) {
  std::string answer;
  return Ask({kClose, path}, answer);
}

std::string FontKeeper::Identify(const std::string& path, const docfonts::Report& report) {
  std::string problem;
  return Ask({kIdentify, path, Dump(ToJson(report))}, problem) ? problem : kGone;
}

std::string FontKeeper::Keep(const std::string& recordFile) {
  std::string problem;
  return Ask({kKeep, recordFile}, problem) ? problem : kGone;
}

std::string FontKeeper::HoldFor(const std::vector<pid_t>& processes) {
  std::string problem;
  if (!Ask({kHoldFor, Json(processes).dump()}, problem)) return kGone;
  if (problem.empty()) process_.Leave();
  return problem;
}

}  // namespace with_fonts
