// The folder of links that makes font files active for every program: fontconfig reads it.
//
// Links are spread over 16 folders by the last hexadecimal digit of the font ID, because every program re-reads the
// whole folder that changed. A link is "ID.extension": made under a dot-name, which fontconfig ignores, then renamed.
// fontconfig compares the times of folders in whole seconds, so a change made in the second in which a program loaded
// its fonts would go unseen: each changed folder is touched once more, 1.5 s later.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/RunLoop.h"

namespace agent {

enum class LinkKind {
  kSymbolic,       // for a folder of our own
  kHardPreferred,  // for the user's font folder: sandboxed programs see it, but not what a symbolic link points to
};

class ActiveFolder {
 public:
  static constexpr double kSecondTouchDelay = 1.5;

  ActiveFolder(std::string root, LinkKind kind, platform::RunLoop& loop);
  ~ActiveFolder();
  ActiveFolder(const ActiveFolder&) = delete;
  ActiveFolder& operator=(const ActiveFolder&) = delete;

  // Makes what is missing, takes stock of the links that are there and removes half-made ones.
  std::error_code Prepare();

  struct LinkResult {
    std::error_code error;
    bool symbolic = false;
  };
  // Makes or replaces the link of the ID to the file, an absolute path.
  LinkResult Link(uint32_t id, const std::string& file);
  std::error_code Unlink(uint32_t id);  // no link is no error
  bool IsLinked(uint32_t id) const { return links_.contains(id); }
  std::vector<uint32_t> LinkedIDs() const;
  // Dates the folders that wait for their second touch as if they had been touched; for the end of the process.
  void FinishTouches();

  const std::string& Root() const { return root_; }
  bool PrefersHardLinks() const { return kind_ == LinkKind::kHardPreferred; }
  // Whether a path that fontconfig reports is one of these links, and the ID that such a link is named by.
  bool Holds(const std::string& path) const;
  // Also true for a link of another agent of the user, which is no font of the operating system either.
  bool IsLinkOfAnyAgent(const std::string& path) const;
  std::optional<uint32_t> IDOfLink(const std::string& path) const;

 private:
  static constexpr size_t kFolders = 16;
  std::string FolderOf(uint32_t id) const;
  void TakeStock(size_t folder);
  void Changed(uint32_t id);

  std::string root_;
  std::string realRoot_;  // without symbolic links
  LinkKind kind_;
  platform::RunLoop& loop_;
  std::map<uint32_t, std::string> links_;  // ID to the link's name
  std::array<platform::RunLoopTimerRef, kFolders> secondTouches_;
};

}  // namespace agent
