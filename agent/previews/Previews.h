// Draws the names of fonts for clients, in the background: the visible ones first, from the cache if they are there.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "agent/previews/PreviewCache.h"
#include "agent/previews/PreviewWorker.h"
#include "platform/RunLoop.h"

namespace agent {

// A font whose name is to be drawn. The checksum tells versions of the file at one path apart.
struct PreviewFont {
  uint32_t id = 0;
  std::string path;
  uint32_t faceIndex = 0;
  uint32_t checksum = 0;
  std::string name;
};

struct PreviewSize {
  uint32_t textSize = 0, width = 0, height = 0;  // in pixels, see RenderRequest
  bool IsGood() const;                           // within the limits of RenderMessages.h
};

struct Preview {
  uint32_t fontID = 0;
  PreviewFiles files;  // without paths if the cache can't be written
};

struct PreviewEvents {
  // Some of the previews that a client asked for. A font that can't be drawn at all comes without files.
  std::function<void(uint32_t client, const std::vector<Preview>&)> rendered;
  // False while the client has not read what it was sent. Its previews wait.
  std::function<bool(uint32_t client)> canTake;
  std::function<void(const std::string& line)> report;  // a line for people
};

class Previews {
 public:
  // `worker` is the program.
  Previews(std::string cacheFolder, std::string worker, platform::RunLoop& loop, PreviewEvents events);
  ~Previews();
  Previews(const Previews&) = delete;
  Previews& operator=(const Previews&) = delete;

  const std::string& Folder() const { return cache_.Folder(); }
  // The fonts come before those that were asked for earlier with the same or less urgency. At most kMostQueued wait in
  // each of the two queues; beyond that the oldest ones are not drawn, and come without files.
  void Render(uint32_t client, const std::vector<PreviewFont>& fonts, const PreviewSize& size, bool isUrgent);
  void OnGone(uint32_t client);

  static constexpr size_t kMostQueued = 10000;

 private:
  struct Wish {
    PreviewFont font;
    PreviewSize size;
    uint32_t client = 0;
    std::string Key() const;
  };
  void Queue(Wish wish, bool isUrgent);
  void PostStep();
  void StepLater();
  void Step();
  void Take(const Wish& wish);
  void OnRendered(const Wish& wish, RenderedName name, bool inFallback);
  void Ask(const Wish& wish, bool inFallback);
  void Add(const Wish& wish, PreviewFiles files);
  void Flush();

  platform::RunLoop& loop_;
  PreviewEvents events_;
  PreviewCache cache_;
  PreviewWorker worker_;
  std::deque<Wish> urgent_, others_;
  std::map<uint32_t, std::vector<Preview>> ready_;  // by client
  size_t readyCount_ = 0;
  platform::RunLoopTimerRef timer_;  // null if nothing is due
  std::set<uint32_t> reported_;      // fonts whose problem is in the log
  bool isPosted_ = false;
  bool saidCacheFails_ = false;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // posted steps check whether this object still exists
};

}  // namespace agent
