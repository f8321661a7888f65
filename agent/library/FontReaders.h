// Reads font files on threads of its own. The results come in the order of the questions, so that a library gets the
// same numbers on every machine.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "agent/fonts/FontFile.h"

namespace agent {

// Call its functions on one thread.
class FontReaders {
 public:
  // `wake` is called on a thread of this object, once for each TakeOldest that had nothing to take, when there is
  // something. It must not throw. The threads start with the first question, one per processor and at most
  // kMostThreads.
  explicit FontReaders(std::function<void()> wake);
  ~FontReaders();  // waits for the files that are being read
  FontReaders(const FontReaders&) = delete;
  FontReaders& operator=(const FontReaders&) = delete;

  void Ask(const std::string& path);
  // The answer to the oldest question; nothing if it is not there yet.
  std::optional<FontFileContent> TakeOldest();

  static constexpr unsigned kMostThreads = 4;  // a file can need its size in memory

 private:
  struct Question {
    std::string path;
    std::optional<FontFileContent> answer;
  };

  void StartThreads();
  void Work();

  const std::function<void()> wake_;
  std::mutex mutex_;  // guards all below
  std::condition_variable asked_;
  std::deque<std::shared_ptr<Question>> questions_;  // the oldest first
  std::deque<std::shared_ptr<Question>> unread_;     // those that no thread has taken
  bool isAwaited_ = false;
  bool isEnding_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace agent
