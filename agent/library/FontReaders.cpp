#include "agent/library/FontReaders.h"

#include <algorithm>
#include <new>
#include <system_error>

namespace agent {

namespace {

FontFileContent Read(const FontFileReader& reader, const std::string& path) {
  try {
    return reader.Read(path);
  } catch (const std::bad_alloc&) {
    return {FontVerdict::kBroken, {}, "there is not enough memory to read it"};
  }
}

}  // namespace

FontReaders::FontReaders(std::function<void()> wake) : wake_(std::move(wake)) {}

FontReaders::~FontReaders() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  asked_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

// One thread is enough; that there can be no more only costs time.
void FontReaders::StartThreads() {
  const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads);
  while (threads_.size() < count) {
    try {
      threads_.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {
      if (threads_.empty()) throw;
      return;
    }
  }
}

void FontReaders::Ask(const std::string& path) {
  if (threads_.empty()) StartThreads();
  auto question = std::make_shared<Question>();
  question->path = path;
  {
    const std::lock_guard lock(mutex_);
    questions_.push_back(question);
    unread_.push_back(std::move(question));
  }
  asked_.notify_one();
}

std::optional<FontFileContent> FontReaders::TakeOldest() {
  const std::lock_guard lock(mutex_);
  if (questions_.empty()) return std::nullopt;
  isAwaited_ = !questions_.front()->answer;
  if (isAwaited_) return std::nullopt;
  std::optional<FontFileContent> answer = std::move(questions_.front()->answer);
  questions_.pop_front();
  return answer;
}

void FontReaders::Work() {
  const FontFileReader reader;
  std::unique_lock lock(mutex_);
  for (;;) {
    asked_.wait(lock, [this] { return isEnding_ || !unread_.empty(); });
    if (isEnding_) return;
    const std::shared_ptr<Question> question = std::move(unread_.front());
    unread_.pop_front();
    lock.unlock();
    FontFileContent content = Read(reader, question->path);
    lock.lock();
    question->answer = std::move(content);
    if (!isAwaited_ || !questions_.front()->answer) continue;
    isAwaited_ = false;
    lock.unlock();
    wake_();
    lock.lock();
  }
}

}  // namespace agent
