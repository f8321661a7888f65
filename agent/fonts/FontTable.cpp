#include "agent/fonts/FontTable.h"

#include <algorithm>

#include "platform/TextEncoding.h"

namespace agent {

namespace {

template <class Index, class Key>
void Erase(Index& index, const Key& key, uint32_t id) {
  const auto [begin, end] = index.equal_range(key);
  const auto found = std::find_if(begin, end, [&](const auto& entry) { return entry.second == id; });
  if (found != end) index.erase(found);
}

void Sort(std::vector<const Font*>& fonts) {
  std::sort(fonts.begin(), fonts.end(), [](const Font* a, const Font* b) {
    return a->workgroupID != b->workgroupID ? IsSearchedBefore(a->workgroupID, b->workgroupID) : a->id < b->id;
  });
}

}  // namespace

void FontTable::Forget(const Font& font) {
  Erase(byPostScriptName_, font.face.postScriptName, font.id);
  Erase(byFamily_, platform::ToLowercase(font.face.family), font.id);
  Erase(byFamilyID_, font.familyID, font.id);
}

std::vector<Font> FontTable::ReplaceFile(const std::string& path, const std::vector<Font>& fonts) {
  std::vector<Font> gone;
  if (const auto known = files_.find(path); known != files_.end()) {
    for (const uint32_t id : known->second) {
      const auto found = fonts_.find(id);
      Forget(found->second);
      const bool stays = std::any_of(fonts.begin(), fonts.end(), [&](const Font& font) { return font.id == id; });
      if (!stays) gone.push_back(std::move(found->second));
      fonts_.erase(found);
    }
    files_.erase(known);
  }
  for (const Font& font : fonts) {
    // A moved file keeps its IDs, possibly while the old path is still in the table.
    if (const auto old = fonts_.find(font.id); old != fonts_.end()) {
      Forget(old->second);
      auto& ids = files_[old->second.path];
      std::erase(ids, font.id);
      if (ids.empty()) files_.erase(old->second.path);
      fonts_.erase(old);
    }
    byPostScriptName_.emplace(font.face.postScriptName, font.id);
    byFamily_.emplace(platform::ToLowercase(font.face.family), font.id);
    byFamilyID_.emplace(font.familyID, font.id);
    files_[path].push_back(font.id);
    fonts_.emplace(font.id, font);
  }
  return gone;
}

const Font* FontTable::Find(uint32_t id) const {
  const auto found = fonts_.find(id);
  return found == fonts_.end() ? nullptr : &found->second;
}

std::vector<const Font*> FontTable::Look(const Index& index, const std::string& key) const {
  std::vector<const Font*> fonts;
  const auto [begin, end] = index.equal_range(key);
  for (auto entry = begin; entry != end; ++entry) fonts.push_back(Find(entry->second));
  Sort(fonts);
  return fonts;
}

std::vector<const Font*> FontTable::WithPostScriptName(std::string_view name) const {
  return Look(byPostScriptName_, std::string(name));
}

std::vector<const Font*> FontTable::WithFamilyName(std::string_view name) const {
  return Look(byFamily_, platform::ToLowercase(name));
}

std::vector<const Font*> FontTable::WithFamilyID(uint32_t familyID) const {
  std::vector<const Font*> fonts;
  const auto [begin, end] = byFamilyID_.equal_range(familyID);
  for (auto entry = begin; entry != end; ++entry) fonts.push_back(Find(entry->second));
  Sort(fonts);
  return fonts;
}

std::vector<const Font*> FontTable::OfFile(const std::string& path) const {
  std::vector<const Font*> fonts;
  const auto found = files_.find(path);
  if (found == files_.end()) return fonts;
  for (const uint32_t id : found->second) fonts.push_back(Find(id));
  return fonts;
}

}  // namespace agent
