// A helper program that does something with fonts, one request at a time, because a broken font can make it loop or
// crash. It is killed and started again when it takes too long. Never waits for it; not thread-safe.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/ChildProgram.h"
#include "platform/FrameReader.h"
#include "platform/RunLoop.h"

namespace agent {

class Worker {
 public:
  struct Job {
    std::string program;         // an absolute path
    const char* done = "";       // what it does with a font, for lines for people: "drawn"
    double patience = 0;         // seconds for a request; the program should end by itself before
    uint32_t longestAnswer = 0;  // bytes of each message
    // Says whether the messages so far are the whole answer. Throws std::exception for what is no answer.
    std::function<bool(const std::vector<std::string>& messages)> isWhole;
  };
  struct Answer {
    std::string problem;  // a line for people: the worker ended over this request. Otherwise empty.
    std::vector<std::string> messages;
  };
  using Done = std::function<void(Answer)>;

  Worker(Job job, platform::RunLoop& loop) : job_(std::move(job)), child_(job_.program), loop_(loop) {}
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  bool IsBusy() const { return static_cast<bool>(done_); }
  // Starts the program if it does not run, and sends the messages, which must fit the socket's buffer together. `done`
  // is called from the loop, or at once if that fails. Call only if not busy.
  void Ask(const std::vector<std::string>& request, Done done);

 private:
  bool Start(std::string* problem);
  bool Send(const std::vector<std::string>& request);
  std::string Explain(int status) const;
  void OnReadable();
  void OnClosed();
  void TakeMessages();
  void EndWith(const std::string& problem);
  void Finish(const std::string& problem);
  void StopWatching();

  const Job job_;
  platform::ChildProgram child_;
  platform::RunLoop& loop_;
  platform::FrameReader reader_{0};
  std::vector<std::string> messages_;  // of the answer, as far as it has arrived
  platform::RunLoopTimerRef deadline_;
  bool isWatched_ = false;
  Done done_;  // empty if not busy
};

}  // namespace agent
