#include "host/Document.h"

#include <algorithm>
#include <filesystem>

namespace host {

std::vector<std::string> Document::FontNames() const {
  std::vector<std::string> names = content.fontNames;
  for (const std::string& name : addedFonts) {
    if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  }
  return names;
}

std::string Document::Title() const {
  return path.empty() ? "Untitled-" + std::to_string(untitledNumber) : path.substr(path.rfind('/') + 1);
}

Document& DocumentList::Add(Document document) {
  // Allocate first, so that a failure changes nothing.
  documents_.reserve(documents_.size() + 1);
  order_.reserve(order_.size() + 1);
  auto added = std::make_unique<Document>(std::move(document));
  added->id = ++lastID_;
  if (added->path.empty()) added->untitledNumber = ++lastUntitled_;
  documents_.push_back(std::move(added));
  order_.push_back(lastID_);
  return *documents_.back();
}

void DocumentList::Remove(int32_t id) {
  std::erase(order_, id);
  std::erase_if(documents_, [id](const auto& document) { return document->id == id; });
}

void DocumentList::BringToFront(int32_t id) {
  if (std::erase(order_, id) != 0) order_.push_back(id);
}

Document* DocumentList::Find(int32_t id) const {
  const auto found =
      std::find_if(documents_.begin(), documents_.end(), [id](const auto& document) { return document->id == id; });
  return found == documents_.end() ? nullptr : found->get();
}

Document* DocumentList::FindByFile(const std::string& path) const {
  for (const auto& document : documents_) {
    if (document->path.empty()) continue;
    std::error_code error;  // set if a file is gone; then only equal paths match
    if (document->path == path || std::filesystem::equivalent(document->path, path, error)) return document.get();
  }
  return nullptr;
}

Document* DocumentList::Front() const { return order_.empty() ? nullptr : Find(order_.back()); }

}  // namespace host
