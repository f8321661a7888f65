#include "host/panel/ReadableFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <nlohmann/json.hpp>

#include "platform/Descriptor.h"

namespace panel {

namespace {

constexpr size_t kMostLists = 100;
constexpr off_t kLargestFile = 64 << 20;
constexpr int kFontList = 41;
constexpr std::string_view kFileScheme = "file://";

std::optional<std::string> ReadWhole(const std::string& path) {
  // Without waiting for a pipe.
  const platform::Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK));
  struct stat info {};
  if (!file || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > kLargestFile) {
    return std::nullopt;
  }
  std::string bytes(static_cast<size_t>(info.st_size), '\0');
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t got = read(file.Get(), bytes.data() + done, bytes.size() - done);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return std::nullopt;
    done += static_cast<size_t>(got);
  }
  return bytes;
}

}  // namespace

// A message is a JSON object in parentheses.
void ReadableFiles::Learn(const std::string& message) {
  if (!message.starts_with('(') || !message.ends_with(')') || message.find("\"filename\"") == message.npos) return;
  const auto json = nlohmann::json::parse(message.begin() + 1, message.end() - 1, nullptr, false);
  if (!json.is_object() || json.value("messageID", nlohmann::json()) != kFontList) return;
  const auto name = json.find("filename");
  if (name == json.end() || !name->is_string()) return;
  const auto url = name->get<std::string>();
  if (!url.starts_with(kFileScheme)) return;
  const std::lock_guard lock(mutex_);
  lists_.push_back(url.substr(kFileScheme.size()));
  if (lists_.size() > kMostLists) lists_.pop_front();
}

bool ReadableFiles::IsNamed(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  return std::ranges::find(lists_, path) != lists_.end();
}

std::optional<ReadableFiles::Content> ReadableFiles::Read(const std::string& path) const {
  const bool isPreview = path.ends_with(".png") && path.substr(0, path.rfind('/')) == previewFolder_;
  if (!isPreview && !IsNamed(path)) return std::nullopt;
  std::optional<std::string> bytes = ReadWhole(path);
  if (!bytes) return std::nullopt;
  return Content{std::move(*bytes), isPreview ? "image/png" : "text/plain; charset=utf-8"};
}

}  // namespace panel
