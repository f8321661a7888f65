#include "agent/previews/PreviewWorker.h"

#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "agent/include/CallEncoding.h"
#include "platform/ChildLimits.h"
#include "platform/LocalSocket.h"

namespace agent {

namespace {

constexpr double kPatience = 2.0 * platform::kChildPatience * kRenderSeconds;  // the worker should end by itself before

std::string Explain(int status) {
  if (WIFSIGNALED(status))
    return "a font is broken: " + std::string(strsignal(WTERMSIG(status))) + " while its name was drawn";
  if (WEXITSTATUS(status) == platform::kChildOutOfMemory) return "a font needs too much memory";
  return "the preview worker ended with status " + std::to_string(WEXITSTATUS(status));
}

}  // namespace

PreviewWorker::~PreviewWorker() {
  if (deadline_) deadline_->Invalidate();
  StopWatching();
}

bool PreviewWorker::Start(std::string* problem) {
  StopWatching();
  if (!child_.Start(problem)) return false;
  reader_ = platform::FrameReader(kLongestAnswer);
  loop_.WatchDescriptor(child_.Socket(), [this] { OnReadable(); });
  isWatched_ = true;
  return true;
}

void PreviewWorker::StopWatching() {
  if (isWatched_) loop_.UnwatchDescriptor(child_.Socket());
  isWatched_ = false;
}

void PreviewWorker::Render(const RenderRequest& request, const std::string& path, Done done) {
  done_ = std::move(done);
  messages_.clear();
  std::string problem;
  if (!child_.IsRunning() && !Start(&problem)) return Finish({problem, true, false, "", ""});
  // Both fit the socket's buffer, so this does not wait.
  if (platform::SendMessage(child_.Socket(), agent_protocol::ToText(agent_protocol::ToJson(request))) ||
      platform::SendMessage(child_.Socket(), path)) {
    return OnClosed();
  }
  deadline_ = platform::RunLoopTimer::After(
      kPatience, 0, [this](platform::RunLoopTimer&) { EndWith("a font took too long to be drawn"); });
  loop_.AddTimer(deadline_, platform::RunLoopMode::kCommon);
}

void PreviewWorker::OnReadable() {
  std::array<char, 65536> buffer;
  const ssize_t got = recv(child_.Socket(), buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (got <= 0) return OnClosed();
  reader_.Add(std::string_view(buffer.data(), static_cast<size_t>(got)));
  TakeMessages();
}

void PreviewWorker::OnClosed() {
  StopWatching();
  int status = 0;
  const std::string problem = child_.Reap(status) ? Explain(status) : "the preview worker ended";
  if (done_) Finish({problem, true, false, "", ""});
}

void PreviewWorker::TakeMessages() {
  std::string message;
  platform::FrameReader::Result result;
  while ((result = reader_.Next(message)) == platform::FrameReader::Result::kMessage) messages_.push_back(message);
  if (result == platform::FrameReader::Result::kTooLong) return EndWith("the preview worker answered nonsense");
  if (messages_.empty()) return;
  if (!done_) return EndWith("the preview worker speaks without being asked");
  RenderedName rendered;
  try {
    const auto answer = agent_protocol::FromJson<RenderAnswer>(agent_protocol::Json::parse(messages_[0]), "answer");
    rendered.problem = answer.problem;
    rendered.couldOpen = answer.couldOpen;
  } catch (const std::exception&) {  // the worker may be in the hands of a font
    return EndWith("the preview worker answered nonsense");
  }
  if (!rendered.problem.empty()) return Finish(std::move(rendered));
  if (messages_.size() < 3) return;
  rendered.png = std::move(messages_[1]);
  rendered.png2x = std::move(messages_[2]);
  Finish(std::move(rendered));
}

void PreviewWorker::EndWith(const std::string& problem) {
  StopWatching();
  child_.Kill();
  if (done_) Finish({problem, true, false, "", ""});
}

void PreviewWorker::Finish(RenderedName result) {
  if (deadline_) loop_.RemoveTimer(deadline_);
  deadline_ = nullptr;
  std::exchange(done_, nullptr)(std::move(result));
}

}  // namespace agent
