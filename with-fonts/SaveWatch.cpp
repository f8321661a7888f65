#include "with-fonts/SaveWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <filesystem>

#include "with-fonts/OpenFiles.h"

namespace with_fonts {

void SaveWatch::Watch(const std::vector<std::string>& paths) {
  notify_ = platform::Descriptor(inotify_init1(IN_CLOEXEC | IN_NONBLOCK));
  for (const std::string& path : paths) {
    documents_[path] = platform::FileStamp::Of(path);
    // The folder, because programs replace files, and a watch stays with the old one.
    const std::string folder = std::filesystem::path(path).parent_path().string();
    inotify_add_watch(notify_.Get(), folder.c_str(), IN_CLOSE_WRITE | IN_MOVED_TO);
  }
}

void SaveWatch::TakeSaved() {
  // What the events say is in the files' stamps, too.
  for (std::array<char, 4096> events; read(notify_.Get(), events.data(), events.size()) > 0;) {
  }
  for (auto& [path, stamp] : documents_) {
    const platform::FileStamp now = platform::FileStamp::Of(path);
    if (now == stamp || now == platform::FileStamp() || UserOf(path) != 0) continue;
    take_(path);
    stamp = platform::FileStamp::Of(path);
  }
}

}  // namespace with_fonts
