#include "agent/previews/PreviewCache.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "platform/Files.h"

namespace agent {

namespace {

constexpr std::string_view kExtension = ".png", kExtension2x = "@2x.png";

uint64_t SizeOf(const std::string& path) {
  std::error_code error;
  const uint64_t size = std::filesystem::file_size(path, error);
  return error ? 0 : size;
}

// The last chunk of every PNG file. After a power failure a file may be cut off or empty.
bool IsWholePNG(std::string_view bytes) { return bytes.ends_with(std::string_view("IEND\xAE\x42\x60\x82")); }

}  // namespace

// Takes over what earlier runs left. The times of the files give the order.
void PreviewCache::Load() {
  isLoaded_ = true;
  struct Found {
    std::filesystem::file_time_type time;
    Entry entry;
  };
  std::vector<Found> found;
  std::error_code error;
  for (std::filesystem::directory_iterator file(folder_, error), end; !error && file != end; file.increment(error)) {
    const std::string name = file->path().filename().string();
    std::error_code ignored;
    if (name.ends_with(kExtension2x)) {
      const std::string key = name.substr(0, name.size() - kExtension2x.size());
      if (SizeOf(PathOf(key)) > 0) continue;
    } else if (name.ends_with(kExtension)) {
      const std::string key = name.substr(0, name.size() - kExtension.size());
      found.push_back({file->last_write_time(ignored), {key, SizeOf(PathOf(key)) + SizeOf(Path2xOf(key))}});
      continue;
    }
    std::filesystem::remove(file->path(), ignored);  // half of a pair, or a file that a killed agent was writing
  }
  std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) { return a.time < b.time; });
  for (Found& file : found) {
    bytes_ += file.entry.bytes;
    byKey_[file.entry.key] = entries_.insert(entries_.end(), file.entry);
  }
}

void PreviewCache::Forget(const std::string& key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return;
  bytes_ -= found->second->bytes;
  entries_.erase(found->second);
  byKey_.erase(found);
}

std::optional<PreviewFiles> PreviewCache::Find(const std::string& key) {
  if (!isLoaded_) Load();
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return std::nullopt;
  PreviewFiles files{PathOf(key), Path2xOf(key), ""};
  if (platform::ReadFile(files.path, files.png) || !IsWholePNG(files.png) || SizeOf(files.path2x) == 0) {
    Forget(key);
    return std::nullopt;
  }
  entries_.splice(entries_.end(), entries_, found->second);
  std::error_code ignored;  // the time only gives the order after a restart
  std::filesystem::last_write_time(files.path, std::filesystem::file_time_type::clock::now(), ignored);
  return files;
}

std::error_code PreviewCache::Put(const std::string& key, const std::string& png, const std::string& png2x,
                                  PreviewFiles& files) {
  if (!isLoaded_) Load();
  files = {"", "", png};
  std::error_code error;
  // Only this folder: without the one above it, the state folder is gone and must not come back.
  std::filesystem::create_directory(folder_, error);
  if (!error) error = platform::ReplaceFileUnsynced(Path2xOf(key), png2x);
  if (!error) error = platform::ReplaceFileUnsynced(PathOf(key), png);
  if (error) return error;
  Forget(key);
  byKey_[key] = entries_.insert(entries_.end(), {key, png.size() + png2x.size()});
  bytes_ += png.size() + png2x.size();
  files = {PathOf(key), Path2xOf(key), png};
  MakeRoom();
  return {};
}

void PreviewCache::MakeRoom() {
  std::error_code ignored;  // a file that is gone is what is wanted
  while (bytes_ > mostBytes_ && entries_.size() > 1) {
    const std::string key = entries_.front().key;
    std::filesystem::remove(PathOf(key), ignored);
    std::filesystem::remove(Path2xOf(key), ignored);
    Forget(key);
  }
}

}  // namespace agent
