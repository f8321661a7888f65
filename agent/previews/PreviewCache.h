// The folder of rendered previews, STATE/agent/previews. It may be deleted at any time: what is missing is rendered
// again. Not thread-safe.
#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <system_error>

namespace agent {

struct PreviewFiles {
  std::string path, path2x;  // PNG files
  std::string png;           // the content of the first
};

class PreviewCache {
 public:
  // Reads nothing yet. When the files take more than `mostBytes`, those that were not used for the longest time go.
  PreviewCache(std::string folder, uint64_t mostBytes) : folder_(std::move(folder)), mostBytes_(mostBytes) {}

  const std::string& Folder() const { return folder_; }
  // Keys are file names without an extension.
  std::optional<PreviewFiles> Find(const std::string& key);
  // On an error `files` has the bytes only.
  std::error_code Put(const std::string& key, const std::string& png, const std::string& png2x, PreviewFiles& files);

 private:
  struct Entry {
    std::string key;
    uint64_t bytes;
  };
  void Load();
  void Forget(const std::string& key);
  void MakeRoom();
  std::string PathOf(const std::string& key) const { return folder_ + "/" + key + ".png"; }
  std::string Path2xOf(const std::string& key) const { return folder_ + "/" + key + "@2x.png"; }

  const std::string folder_;
  const uint64_t mostBytes_;
  bool isLoaded_ = false;
  uint64_t bytes_ = 0;
  std::list<Entry> entries_;  // the least recently used first
  std::map<std::string, std::list<Entry>::iterator> byKey_;
};

}  // namespace agent
