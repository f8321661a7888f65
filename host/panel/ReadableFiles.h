// The files outside the page that pages may read: the font lists that messages of the plug-in named, and the drawn
// names of fonts. Thread-safe.
#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <string>

namespace panel {

class ReadableFiles {
 public:
  // `previewFolder`: the folder of the drawn names, an absolute path. Files directly in it may be read.
  explicit ReadableFiles(std::string previewFolder) : previewFolder_(std::move(previewFolder)) {}

  // Looks at a message from the plug-in. If it names the file of a font list, pages may read that file from now on.
  // Only the last hundred files count; a page reads a list once, at once.
  void Learn(const std::string& message);

  struct Content {
    std::string bytes;
    const char* type = nullptr;  // the media type
  };
  // Reads a regular file at this absolute path, without following a link at its end. Nothing for other files, files
  // that are gone, and files above 64 MiB.
  std::optional<Content> Read(const std::string& path) const;

 private:
  bool IsNamed(const std::string& path) const;

  const std::string previewFolder_;
  mutable std::mutex mutex_;
  std::deque<std::string> lists_;
};

}  // namespace panel
