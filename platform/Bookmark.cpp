#include "platform/Bookmark.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/PropertyList.h"

namespace platform {

namespace {

constexpr const char* kPathKey = "Path";
constexpr const char* kFileKey = "File";

// The identity of a file: stays the same when the file is renamed and is not reused for another file. An inode number
// is reused, the time of birth is not. Nothing if there is no such file.
std::optional<std::string> IdentityOf(const std::string& path) {
  struct statx info;
  if (statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_INO | STATX_BTIME, &info) != 0) return std::nullopt;
  const unsigned long long device = makedev(info.stx_dev_major, info.stx_dev_minor);
  std::string identity = std::to_string(device) + " " + std::to_string(info.stx_ino);
  if (info.stx_mask & STATX_BTIME) {
    identity += " " + std::to_string(info.stx_btime.tv_sec) + " " + std::to_string(info.stx_btime.tv_nsec);
  }
  return identity;
}

Data DataOf(std::string_view bytes) { return Data::From(std::as_bytes(std::span(bytes))); }

std::string_view TextOf(const Data& data) {
  return {reinterpret_cast<const char*>(data.Bytes().data()), data.Bytes().size()};
}

std::string FindInFolder(const std::filesystem::path& folder, std::string_view identity) {
  std::error_code error;
  for (std::filesystem::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
    if (IdentityOf(each->path()) == identity) return each->path();
  }
  return "";
}

}  // namespace

Data CreateBookmark(const std::string& path) {
  std::error_code error;
  const std::string absolute = std::filesystem::absolute(path, error).string();
  const auto identity = error ? std::nullopt : IdentityOf(absolute);
  if (!identity) return Data();
  Dictionary bookmark = Dictionary::Create();
  bookmark.Set(kPathKey, DataOf(absolute));  // a path need not be UTF-8
  bookmark.Set(kFileKey, *identity);
  return DataOf(CreateXMLPropertyList(bookmark));
}

std::string ResolveBookmark(const Data& bookmark) {
  const Dictionary read(ParseXMLPropertyList(TextOf(bookmark)).value);
  std::string path(TextOf(Data(read.Get(kPathKey))));
  if (path.empty() || path.front() != '/') return "";
  // Test the path first: programs often replace a document's file when they save.
  if (IdentityOf(path)) return path;
  return FindInFolder(std::filesystem::path(path).parent_path(), read.GetString(kFileKey).View());
}

}  // namespace platform
