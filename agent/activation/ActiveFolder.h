// The folder of links that activates font files for every program that uses fontconfig.
//
// The links are distributed over 16 folders by the last hexadecimal digit of the font ID, because every program
// re-reads a changed folder as a whole. A link is "ID.extension": created under a dot-name, which fontconfig ignores,
// then renamed. fontconfig compares the times of folders in whole seconds, so it would miss a change in the second in
// which a program loaded its fonts. Each changed folder is therefore touched again 1.5 s later.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "platform/RunLoop.h"

namespace agent {

enum class LinkKind {
  kSymbolic,       // for our own folder
  kHardPreferred,  // for the user's font folder, where sandboxed programs cannot see the target of a symbolic link
};

class ActiveFolder {
 public:
  static constexpr double kSecondTouchDelay = 1.5;

  ActiveFolder(std::string root, LinkKind kind, platform::RunLoop& loop);
  ~ActiveFolder();
  ActiveFolder(const ActiveFolder&) = delete;
  ActiveFolder& operator=(const ActiveFolder&) = delete;

  // Creates missing folders, reads the existing links and removes unfinished ones.
  std::error_code Prepare();

  struct LinkResult {
    std::error_code error;
    bool symbolic = false;
  };
  // While one exists, changed folders get no new time, so that many changes cost hardly more than their links. They get
  // it at its end; before, fontconfig may not see the changes.
  class Batch {
   public:
    explicit Batch(ActiveFolder& folder) : folder_(folder) { ++folder_.batches_; }
    ~Batch();
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;

   private:
    ActiveFolder& folder_;
  };
  // Creates or replaces the link from the ID to the file, an absolute path.
  LinkResult Link(uint32_t id, const std::string& file);
  std::error_code Unlink(uint32_t id);  // a missing link is not an error
  bool IsLinked(uint32_t id) const { return links_.contains(id); }
  std::vector<uint32_t> LinkedIDs() const;
  // Gives the folders that wait for their second touch the time of that touch. For the end of the process.
  void FinishTouches();

  const std::string& Root() const { return root_; }
  bool PrefersHardLinks() const { return kind_ == LinkKind::kHardPreferred; }
  // True if a path from fontconfig is one of these links. IDOfLink returns the ID in the name of such a link.
  bool Holds(const std::string& path) const;
  // Also true for links of other agents of the user, which are not fonts of the operating system either.
  bool IsLinkOfAnyAgent(const std::string& path) const;
  std::optional<uint32_t> IDOfLink(const std::string& path) const;

 private:
  static constexpr size_t kFolders = 16;
  std::string FolderOf(size_t id) const;
  void TakeStock(size_t folder);
  LinkResult MakeHidden(const std::string& hidden, const std::string& file) const;
  void Changed(uint32_t id);
  void Touch(size_t folder);

  std::string root_;
  std::string realRoot_;  // without symbolic links
  LinkKind kind_;
  platform::RunLoop& loop_;
  std::map<uint32_t, std::string> links_;  // ID to the link's name
  std::array<platform::RunLoopTimerRef, kFolders> secondTouches_;
  int batches_ = 0;
  std::bitset<kFolders> untouched_;  // changed in a batch
};

}  // namespace agent
