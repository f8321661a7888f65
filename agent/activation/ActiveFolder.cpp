#include "agent/activation/ActiveFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <memory>

#include "platform/Files.h"
#include "platform/LastError.h"

namespace agent {

namespace {

// Keeps extensions such as ".ttf", which some programs look at. Drops unusual ones.
std::string ExtensionOf(const std::string& file) {
  constexpr size_t kLongest = 7;
  const size_t dot = file.rfind('.');
  if (dot == std::string::npos || dot < file.rfind('/') + 2 || file.size() - dot > kLongest + 1) return "";
  const std::string extension = file.substr(dot);
  const bool plain = std::all_of(extension.begin() + 1, extension.end(),
                                 [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
  return plain && extension.size() > 1 ? extension : "";
}

// Returns the ID in a link's name; nothing for a name that is not ours.
std::optional<uint32_t> IDOfName(std::string_view name) {
  uint32_t id = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
  if (error != std::errc() || id == 0) return std::nullopt;
  if (end != name.data() + name.size() && *end != '.') return std::nullopt;
  return id;
}

// The same for a path. Ask this before a folder is compared, which takes calls of the system: few fonts of a desktop have
// such a name, and each change of the active fonts asks for all of them.
std::optional<uint32_t> IDOfPath(std::string_view path) { return IDOfName(path.substr(path.rfind('/') + 1)); }

// Sets the exact time: the file system's own time stamps are coarse, and two changes could get the same.
void SetTimeOf(const std::string& folder, double secondsFromNow) {
  timespec times[2];
  clock_gettime(CLOCK_REALTIME, &times[1]);
  const auto extra = static_cast<long long>(secondsFromNow * 1e9) + times[1].tv_nsec;
  times[1].tv_sec += static_cast<time_t>(extra / 1000000000);
  times[1].tv_nsec = static_cast<long>(extra % 1000000000);
  times[0] = {0, UTIME_OMIT};
  utimensat(AT_FDCWD, folder.c_str(), times, 0);
}

}  // namespace

ActiveFolder::ActiveFolder(std::string root, LinkKind kind, platform::RunLoop& loop)
    : root_(std::move(root)), kind_(kind), loop_(loop) {}

ActiveFolder::~ActiveFolder() {
  for (const auto& timer : secondTouches_) {
    if (timer) loop_.RemoveTimer(timer);
  }
}

std::string ActiveFolder::FolderOf(size_t id) const { return root_ + "/" + "0123456789abcdef"[id % kFolders]; }

std::error_code ActiveFolder::Prepare() {
  links_.clear();
  for (uint32_t folder = 0; folder < kFolders; ++folder) {
    if (const std::error_code error = platform::MakeFolder(FolderOf(folder))) return error;
    TakeStock(folder);
  }
  std::error_code error;
  realRoot_ = std::filesystem::canonical(root_, error).string();
  return error;
}

void ActiveFolder::TakeStock(size_t folder) {
  std::error_code error;
  const std::string path = FolderOf(static_cast<uint32_t>(folder));
  for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
    const std::string name = entry.path().filename().string();
    if (name.starts_with(".")) {
      // Left by a process that was killed between creating and renaming.
      if (IDOfName(std::string_view(name).substr(1))) unlink(entry.path().c_str());
    } else if (const auto id = IDOfName(name); id && *id % kFolders == folder) {
      links_[*id] = name;
    }
  }
}

// Makes the link under its hidden name.
ActiveFolder::LinkResult ActiveFolder::MakeHidden(const std::string& hidden, const std::string& file) const {
  // Follow a symbolic link in the library, so that the link is to the font file itself.
  if (kind_ == LinkKind::kHardPreferred &&
      linkat(AT_FDCWD, file.c_str(), AT_FDCWD, hidden.c_str(), AT_SYMLINK_FOLLOW) == 0) {
    return {};
  }
  const bool isMade = symlink(file.c_str(), hidden.c_str()) == 0;
  return {isMade ? std::error_code() : platform::LastError(), true};
}

ActiveFolder::LinkResult ActiveFolder::Link(uint32_t id, const std::string& file) {
  const std::string name = std::to_string(id) + ExtensionOf(file);
  const std::string hidden = FolderOf(id) + "/." + name;
  if (const std::error_code error = Unlink(id)) return {error};
  LinkResult result = MakeHidden(hidden, file);
  if (result.error == std::errc::file_exists) {
    // Left by a failure.
    unlink(hidden.c_str());
    result = MakeHidden(hidden, file);
  }
  if (result.error) return result;
  if (rename(hidden.c_str(), (FolderOf(id) + "/" + name).c_str()) != 0) {
    result.error = platform::LastError();
    unlink(hidden.c_str());
    return result;
  }
  links_[id] = name;
  Changed(id);
  return result;
}

std::error_code ActiveFolder::Unlink(uint32_t id) {
  const auto found = links_.find(id);
  if (found == links_.end()) return {};
  if (unlink((FolderOf(id) + "/" + found->second).c_str()) != 0 && errno != ENOENT) return platform::LastError();
  links_.erase(found);
  Changed(id);
  return {};
}

std::vector<uint32_t> ActiveFolder::LinkedIDs() const {
  std::vector<uint32_t> ids;
  for (const auto& [id, name] : links_) ids.push_back(id);
  return ids;
}

void ActiveFolder::Changed(uint32_t id) {
  untouched_.set(id % kFolders);
  if (batches_ == 0) Touch(id % kFolders);
}

ActiveFolder::Batch::~Batch() {
  if (--folder_.batches_ > 0) return;
  for (size_t folder = 0; folder < kFolders; ++folder) {
    if (folder_.untouched_[folder]) folder_.Touch(folder);
  }
}

void ActiveFolder::Touch(size_t number) {
  untouched_.reset(number);
  const std::string folder = FolderOf(number);
  SetTimeOf(folder, 0);
  platform::RunLoopTimerRef& timer = secondTouches_[number];
  if (timer) loop_.RemoveTimer(timer);
  timer =
      platform::RunLoopTimer::After(kSecondTouchDelay, 0, [folder](platform::RunLoopTimer&) { SetTimeOf(folder, 0); });
  loop_.AddTimer(timer, platform::RunLoopMode::kCommon);
}

void ActiveFolder::FinishTouches() {
  for (uint32_t folder = 0; folder < kFolders; ++folder) {
    if (secondTouches_[folder] && secondTouches_[folder]->IsValid()) SetTimeOf(FolderOf(folder), kSecondTouchDelay);
  }
}

bool ActiveFolder::Holds(const std::string& path) const {
  if (!IDOfPath(path)) return false;
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  if (folder.parent_path() == root_) return true;
  std::error_code error;
  return std::filesystem::canonical(folder.parent_path(), error).string() == realRoot_ && !error;
}

bool ActiveFolder::IsLinkOfAnyAgent(const std::string& path) const {
  if (Holds(path)) return true;
  if (kind_ != LinkKind::kHardPreferred || !IDOfPath(path)) return false;
  std::error_code error;
  const std::filesystem::path root = std::filesystem::path(path).parent_path().parent_path();
  return std::filesystem::canonical(root, error).parent_path() == std::filesystem::path(realRoot_).parent_path() &&
         !error;
}

std::optional<uint32_t> ActiveFolder::IDOfLink(const std::string& path) const {
  return Holds(path) ? IDOfPath(path) : std::nullopt;
}

}  // namespace agent
