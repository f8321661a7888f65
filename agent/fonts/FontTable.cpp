#include "agent/fonts/FontTable.h"

#include <algorithm>

#include "platform/TextEncoding.h"

namespace agent {

namespace {

void Sort(std::vector<const Font*>& fonts) {
  std::sort(fonts.begin(), fonts.end(), [](const Font* a, const Font* b) {
    return a->workgroupID != b->workgroupID ? IsSearchedBefore(a->workgroupID, b->workgroupID) : a->id < b->id;
  });
}

}  // namespace

std::vector<uint32_t> FontTable::RowsWith(const Column& column, uint32_t key) const {
  std::vector<uint32_t> rows;
  const auto keyOf = [&](uint32_t row) { return column.keyOf(rows_[row]); };
  column.index.ForEach(key, keyOf, [&](uint32_t row) { rows.push_back(row); });
  return rows;
}

std::vector<const Font*> FontTable::FontsWith(const Column& column, uint32_t key) const {
  std::vector<const Font*> fonts;
  for (const uint32_t row : RowsWith(column, key)) fonts.push_back(&rows_[row].font);
  Sort(fonts);
  return fonts;
}

SharedText FontTable::Lowercase(SharedText family) {
  if (family == lastFamily_) return lastLowercase_;
  lastFamily_ = family;
  return lastLowercase_ = platform::ToLowercase(family.View());
}

void FontTable::Add(const Font& font) {
  ++revision_;
  const uint32_t row = rows_.Add({font, Lowercase(font.face.family)});
  for (Column* column : {&byID_, &byPostScriptName_, &byFamily_, &byFamilyID_, &byPath_}) {
    column->index.Insert(row, [&](uint32_t other) { return column->keyOf(rows_[other]); });
  }
}

void FontTable::Remove(uint32_t row) {
  ++revision_;
  for (Column* column : {&byID_, &byPostScriptName_, &byFamily_, &byFamilyID_, &byPath_}) {
    column->index.Erase(row, column->keyOf(rows_[row]));
  }
  rows_.Remove(row);
}

std::vector<Font> FontTable::ReplaceFile(const std::string& path, const std::vector<Font>& fonts) {
  std::vector<Font> gone;
  const std::optional<SharedText> known = SharedText::Find(path);
  const std::vector<uint32_t> old = known ? RowsWith(byPath_, known->Number()) : std::vector<uint32_t>();
  for (const uint32_t row : old) {
    const Font font = rows_[row].font;
    const bool stays = std::any_of(fonts.begin(), fonts.end(), [&](const Font& other) { return other.id == font.id; });
    if (!stays) gone.push_back(font);
    Remove(row);
  }
  for (const Font& font : fonts) {
    // A moved file keeps its IDs, possibly while the old path is still in the table.
    for (const uint32_t row : RowsWith(byID_, font.id)) Remove(row);
    Add(font);
  }
  return gone;
}

void FontTable::SetWorkgroupOfFile(const std::string& path, uint32_t workgroupID) {
  const std::optional<SharedText> known = SharedText::Find(path);
  if (!known) return;
  ++revision_;
  for (const uint32_t row : RowsWith(byPath_, known->Number())) rows_[row].font.workgroupID = workgroupID;
}

void FontTable::SetSystemActiveFiles(const std::vector<std::string>& paths) {
  systemActive_.clear();
  for (const std::string& path : paths) systemActive_.insert(SharedText(path).Number());
}

const Font* FontTable::Find(uint32_t id) const {
  const std::vector<uint32_t> rows = RowsWith(byID_, id);
  return rows.empty() || id == 0 ? nullptr : &rows_[rows.front()].font;
}

std::vector<const Font*> FontTable::WithPostScriptName(std::string_view name) const {
  const std::optional<SharedText> known = SharedText::Find(name);
  return known ? FontsWith(byPostScriptName_, known->Number()) : std::vector<const Font*>();
}

std::vector<const Font*> FontTable::WithFamilyName(std::string_view name) const {
  const std::optional<SharedText> known = SharedText::Find(platform::ToLowercase(name));
  return known ? FontsWith(byFamily_, known->Number()) : std::vector<const Font*>();
}

std::vector<const Font*> FontTable::WithFamilyID(uint32_t familyID) const { return FontsWith(byFamilyID_, familyID); }

std::vector<const Font*> FontTable::OfFile(std::string_view path) const {
  const std::optional<SharedText> known = SharedText::Find(path);
  if (!known) return {};
  std::vector<const Font*> fonts = FontsWith(byPath_, known->Number());
  std::ranges::sort(fonts, {}, [](const Font* font) { return font->face.faceIndex; });
  return fonts;
}

}  // namespace agent
