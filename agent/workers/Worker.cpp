#include "agent/workers/Worker.h"

#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "platform/ChildLimits.h"
#include "platform/LocalSocket.h"

namespace agent {

Worker::~Worker() {
  if (deadline_) deadline_->Invalidate();
  StopWatching();
}

std::string Worker::Explain(int status) const {
  if (WIFSIGNALED(status)) {
    return "a font is broken: " + std::string(strsignal(WTERMSIG(status))) + " while it was " + job_.done;
  }
  if (WEXITSTATUS(status) == platform::kChildOutOfMemory) return "a font needs too much memory";
  return "the worker ended with status " + std::to_string(WEXITSTATUS(status));
}

bool Worker::Start(std::string* problem) {
  StopWatching();
  if (!child_.Start(problem)) return false;
  reader_ = platform::FrameReader(job_.longestAnswer);
  loop_.WatchDescriptor(child_.Socket(), [this] { OnReadable(); });
  isWatched_ = true;
  return true;
}

void Worker::StopWatching() {
  if (isWatched_) loop_.UnwatchDescriptor(child_.Socket());
  isWatched_ = false;
}

bool Worker::Send(const std::vector<std::string>& request) {
  for (const std::string& message : request) {
    if (platform::SendMessage(child_.Socket(), message)) return false;
  }
  return true;
}

void Worker::Ask(const std::vector<std::string>& request, Done done) {
  done_ = std::move(done);
  messages_.clear();
  std::string problem;
  if (!child_.IsRunning() && !Start(&problem)) return Finish(problem);
  if (!Send(request)) return OnClosed();
  deadline_ = platform::RunLoopTimer::After(job_.patience, 0, [this](platform::RunLoopTimer&) {
    EndWith(std::string("a font took too long to be ") + job_.done);
  });
  loop_.AddTimer(deadline_, platform::RunLoopMode::kCommon);
}

void Worker::OnReadable() {
  std::array<char, 65536> buffer;
  const ssize_t got = recv(child_.Socket(), buffer.data(), buffer.size(), MSG_DONTWAIT);
  if (got < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (got <= 0) return OnClosed();
  reader_.Add(std::string_view(buffer.data(), static_cast<size_t>(got)));
  TakeMessages();
}

void Worker::OnClosed() {
  StopWatching();
  int status = 0;
  const std::string problem = child_.Reap(status) ? Explain(status) : "the worker ended";
  if (done_) Finish(problem);
}

void Worker::TakeMessages() {
  std::string message;
  platform::FrameReader::Result result;
  while ((result = reader_.Next(message)) == platform::FrameReader::Result::kMessage) messages_.push_back(message);
  if (result == platform::FrameReader::Result::kTooLong) return EndWith("the worker answered nonsense");
  if (messages_.empty()) return;
  if (!done_) return EndWith("the worker speaks without being asked");
  bool isWhole = false;
  try {
    isWhole = job_.isWhole(messages_);
  } catch (const std::exception&) {  // the worker may be in the hands of a font
    return EndWith("the worker answered nonsense");
  }
  if (isWhole) Finish("");
}

void Worker::EndWith(const std::string& problem) {
  StopWatching();
  child_.Kill();
  if (done_) Finish(problem);
}

void Worker::Finish(const std::string& problem) {
  if (deadline_) loop_.RemoveTimer(deadline_);
  deadline_ = nullptr;
  Answer answer{problem, {}};
  if (problem.empty()) answer.messages = std::move(messages_);
  messages_.clear();
  std::exchange(done_, nullptr)(std::move(answer));
}

}  // namespace agent
