// Notices which files below some folders are opened. Symbolic links are not followed.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/Descriptor.h"

namespace with_fonts {

class FolderWatch {
 public:
  // Takes lines about what can't be watched, each once.
  using Complaint = std::function<void(const std::string& line)>;

  explicit FolderWatch(Complaint complain) : complain_(std::move(complain)) {}

  // Watches the folder with all below it, also those that are made later. An absolute path.
  void Add(const std::string& folder);
  size_t Count() const { return folders_.size(); }  // with all below them
  // False as soon as none of the folders exists any more in its place.
  bool IsWatching() const { return !roots_.empty(); }
  // Readable when there is something to read.
  int Descriptor() const { return notify_.Get(); }
  // Returns the paths of files that were opened since the last call, each once, in the order of their latest opening.
  std::vector<std::string> ReadOpened();

 private:
  void ForgetBelow(const std::string& folder);
  void NoticeFolder(int watch, uint32_t events, const std::string& path);
  void AddBelow(const std::string& folder);
  bool AddOne(const std::string& folder, bool isRoot = false);
  void Complain(const std::string& line);

  const Complaint complain_;
  platform::Descriptor notify_;
  std::map<int, std::string> folders_;  // by watch
  std::map<int, std::string> roots_;
  std::vector<std::string> complaints_;
};

}  // namespace with_fonts
