#include "agent/previews/Previews.h"

#include <zlib.h>

#include <algorithm>
#include <cstdio>

#include "platform/Files.h"

namespace agent {

namespace {

constexpr uint64_t kMostCacheBytes = 128u << 20;
// Previews are sent together, but the first ones not late.
constexpr size_t kMostTogether = 32;
constexpr double kLongestTogether = 0.05;  // seconds
constexpr size_t kMostFromCacheInAStep = 64;

}  // namespace

bool PreviewSize::IsGood() const {
  return textSize >= kSmallestTextSize && textSize <= kLargestTextSize && width > 0 && width <= kLargestWidth &&
         height >= kSmallestHeight && height <= kLargestHeight;
}

std::string Previews::Wish::Key() const {
  const uLong nameSum = crc32(0, reinterpret_cast<const Bytef*>(font.name.data()), static_cast<uInt>(font.name.size()));
  char key[96];
  std::snprintf(key, sizeof key, "%u-%08x-%08x-%u-%ux%u", font.id, font.checksum, static_cast<unsigned>(nameSum),
                size.textSize, size.width, size.height);
  return key;
}

Previews::Previews(std::string cacheFolder, std::string worker, platform::RunLoop& loop, PreviewEvents events)
    : loop_(loop),
      events_(std::move(events)),
      cache_(std::move(cacheFolder), kMostCacheBytes),
      worker_(std::move(worker), loop) {}

Previews::~Previews() {
  if (timer_) loop_.RemoveTimer(timer_);
}

void Previews::Render(uint32_t client, const std::vector<PreviewFont>& fonts, const PreviewSize& size, bool isUrgent) {
  // From the back, so that the first one ends in front.
  for (auto font = fonts.rbegin(); font != fonts.rend(); ++font) Queue({*font, size, client}, isUrgent);
  PostStep();
}

void Previews::Queue(Wish wish, bool isUrgent) {
  std::deque<Wish>& queue = isUrgent ? urgent_ : others_;
  queue.push_front(std::move(wish));
  if (queue.size() <= kMostQueued) return;
  Add(queue.back(), {});
  queue.pop_back();
}

void Previews::OnGone(uint32_t client) {
  for (std::deque<Wish>* queue : {&urgent_, &others_}) {
    std::erase_if(*queue, [client](const Wish& wish) { return wish.client == client; });
  }
  ready_.erase(client);
}

void Previews::PostStep() {
  if (isPosted_) return;
  isPosted_ = true;
  loop_.Post([this, alive = std::weak_ptr<int>(alive_)] {
    if (!alive.expired()) Step();
  });
}

// Sends what is ready, and goes on, a moment later.
void Previews::StepLater() {
  if (timer_) return;
  timer_ = platform::RunLoopTimer::After(kLongestTogether, 0, [this](platform::RunLoopTimer&) {
    timer_ = nullptr;
    Flush();
    PostStep();
  });
  loop_.AddTimer(timer_, platform::RunLoopMode::kCommon);
}

void Previews::Step() {
  isPosted_ = false;
  bool mustWait = false;
  for (size_t i = 0; i < kMostFromCacheInAStep && !worker_.IsBusy(); ++i) {
    std::deque<Wish>& queue = urgent_.empty() ? others_ : urgent_;
    if (queue.empty()) break;
    mustWait = !events_.canTake(queue.front().client);
    if (mustWait) break;
    const Wish wish = std::move(queue.front());
    queue.pop_front();
    Take(wish);
  }
  const bool isIdle = urgent_.empty() && others_.empty() && !worker_.IsBusy();
  if (isIdle || readyCount_ >= kMostTogether) Flush();
  if (mustWait) {
    StepLater();
  } else if (!isIdle && !worker_.IsBusy()) {
    PostStep();
  }
}

void Previews::Take(const Wish& wish) {
  if (auto files = cache_.Find(wish.Key())) return Add(wish, std::move(*files));
  Ask(wish, false);
}

void Previews::Ask(const Wish& wish, bool inFallback) {
  RenderRequest request{wish.font.faceIndex, wish.font.name,   wish.size.textSize,
                        wish.size.width,     wish.size.height, inFallback};
  worker_.Render(request, wish.font.path,
                 [this, wish, inFallback](RenderedName name) { OnRendered(wish, std::move(name), inFallback); });
}

void Previews::OnRendered(const Wish& wish, RenderedName name, bool inFallback) {
  if (!name.problem.empty()) {
    if (reported_.insert(wish.font.id).second) events_.report(wish.font.path + ": " + name.problem);
    // The font ended the worker; its name can still be drawn in another one.
    if (name.hasEnded && !inFallback) return Ask(wish, true);
    Add(wish, {});
    return PostStep();
  }
  // A picture without the font itself may be due to a moment's failure, so it is not kept.
  if (!name.couldOpen) {
    Add(wish, {"", "", std::move(name.png)});
    return PostStep();
  }
  PreviewFiles files;
  const std::error_code error = cache_.Put(wish.Key(), name.png, name.png2x, files);
  if (error && !saidCacheFails_) {
    events_.report(cache_.Folder() + ": " + platform::DescribeError(error) + "; previews are not kept");
  }
  saidCacheFails_ = static_cast<bool>(error);
  Add(wish, std::move(files));
  PostStep();
}

void Previews::Add(const Wish& wish, PreviewFiles files) {
  ready_[wish.client].push_back({wish.font.id, std::move(files)});
  ++readyCount_;
  StepLater();
}

void Previews::Flush() {
  const auto ready = std::move(ready_);
  ready_.clear();
  readyCount_ = 0;
  for (const auto& [client, previews] : ready) events_.rendered(client, previews);
}

}  // namespace agent
