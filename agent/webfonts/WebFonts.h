// Keeps a folder of plain font files in step with a folder of packed ones (WOFF, WOFF2), which programs of the desktop
// can't use. Works in the background, one file at a time, through the program font-unpacker. Not thread-safe.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "agent/library/FolderWalk.h"
#include "agent/library/Scanner.h"
#include "agent/workers/Worker.h"
#include "platform/RunLoop.h"

namespace agent {

struct WebFontEvents {
  std::function<void(const ScanProgress& progress)> progress;  // occasionally, while files are unpacked
  // The folders agree again. `hasChanged`: a scan would find other files than before.
  std::function<void(bool hasChanged, bool hadProgress)> finished;
  std::function<void(const std::string& line)> report;  // a line for people
};

class WebFonts {
 public:
  // `cache` is the folder of plain files, which may be deleted at any time; `worker` is the program. When the files
  // need more than `mostBytes`, the rest stays packed and is reported.
  WebFonts(std::string cache, std::string worker, uint64_t mostBytes, platform::RunLoop& loop, WebFontEvents events);
  ~WebFonts();
  WebFonts(const WebFonts&) = delete;
  WebFonts& operator=(const WebFonts&) = delete;

  // The folder of packed files; an empty text stops the work. Call Update afterwards.
  void SetFolder(const std::string& folder);
  // Compares the folders and unpacks what is missing, or does so again if it is at work. `finished` follows, unless
  // there is no folder.
  void Update();

  bool IsBusy() const { return phase_ != Phase::kIdle; }
  const ScanProgress& Progress() const { return progress_; }
  // Of the last comparison: files that can't be unpacked.
  const std::vector<ScanProblem>& Problems() const { return problems_; }

 private:
  enum class Phase { kIdle, kWalking, kUnpacking };
  struct Packed {
    std::string path;
    std::string name;  // of its plain files, without "-FACE.ttf"
    uint64_t size = 0;
  };
  void PostStep();
  void Step();
  void Compare();
  void Unpack(const Packed& file);
  void OnUnpacked(const Packed& file, const Worker::Answer& answer);
  bool Store(const Packed& file, const std::vector<std::string>& messages);
  void NoteProblem(const Packed& file, const std::string& problem);
  void Tell();
  void Finish();

  const std::string cache_;
  const uint64_t mostBytes_;
  platform::RunLoop& loop_;
  WebFontEvents events_;
  Worker worker_;
  std::string folder_;
  Phase phase_ = Phase::kIdle;
  bool isAgain_ = false;
  std::unique_ptr<FolderWalk> walk_;
  std::vector<Packed> waiting_;                  // to be unpacked, the next one last
  std::map<std::string, std::string> unusable_;  // names of files that can't be unpacked, and why
  std::vector<ScanProblem> problems_;
  uint64_t bytes_ = 0;  // in the cache
  ScanProgress progress_;
  double lastProgress_ = 0;
  bool hadProgress_ = false;
  bool hasChanged_ = false;
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);  // posted steps check whether this object still exists
};

}  // namespace agent
