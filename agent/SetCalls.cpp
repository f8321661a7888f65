#include <algorithm>
#include <set>

#include "agent/Calls.h"
#include "agent/FontExport.h"
#include "platform/Files.h"

namespace agent {

namespace {

constexpr size_t kLongestSetName = 1024;  // in bytes

bool AreAllKnown(const FontLibrary& library, const std::vector<uint32_t>& fontIDs) {
  return std::all_of(fontIDs.begin(), fontIDs.end(), [&](uint32_t id) { return library.Table().Find(id) != nullptr; });
}

std::vector<uint32_t> WithoutRepeats(const std::vector<uint32_t>& ids) {
  std::vector<uint32_t> once;
  std::set<uint32_t> taken;
  for (const uint32_t id : ids) {
    if (taken.insert(id).second) once.push_back(id);
  }
  return once;
}

Reply CreateTopLevelSet(FontLibrary& library, const Arguments& arguments) {
  const std::vector<uint32_t> fontIDs = arguments.Numbers("fontIDs");
  const std::string name = arguments.Text("name");
  const uint32_t workgroupID = arguments.Number("workgroupID");
  if (name.empty() || name.size() > kLongestSetName || workgroupID != kFontLibrary.id) return {kInvalidParam};
  if (!AreAllKnown(library, fontIDs)) return {kNotFound};
  return {kSuccess, {{"setID", library.User().CreateSet(name, workgroupID, fontIDs)}}};
}

Reply AddFontsToSets(FontLibrary& library, const Arguments& arguments) {
  const std::vector<uint32_t> setIDs = WithoutRepeats(arguments.Numbers("setIDs"));
  const std::vector<uint32_t> fontIDs = WithoutRepeats(arguments.Numbers("fontIDs"));
  if (setIDs.size() * fontIDs.size() > agent_protocol::kMostNumbers) return {kInvalidParam};
  if (!AreAllKnown(library, fontIDs)) return {kNotFound};
  return {library.User().AddToSets(setIDs, fontIDs) ? kSuccess : kNotFound};
}

Reply GetSets(FontLibrary& library, const Arguments&) {
  Json sets = Json::array();
  for (const FontSet& set : library.User().Sets()) {
    sets.push_back({{"setID", set.id}, {"name", set.name}, {"workgroupID", set.workgroupID}, {"fontIDs", set.fontIDs}});
  }
  return {kSuccess, {{"sets", sets}}};
}

Reply CanExportFonts(FontLibrary& library, const Arguments& arguments) {
  return {kSuccess, {{"value", AreAllKnown(library, arguments.Numbers("fontIDs")) ? 1 : 0}}};
}

// Goes on after a font that can't be copied, and then fails as a whole.
Reply ExportFonts(FontLibrary& library, const Arguments& arguments) {
  const std::string folder = arguments.Text("folder");
  const std::vector<uint32_t> fontIDs = arguments.Numbers("fontIDs");
  if (!folder.starts_with("/")) return {kInvalidParam};
  if (platform::MakeFolder(folder)) return {kCouldNotCopyFile};
  Json copies = Json::array();
  Json failed = Json::array();
  std::set<std::string> taken;  // the faces of a collection share their file
  for (const uint32_t id : fontIDs) {
    const Font* font = library.Table().Find(id);
    if (font && !taken.insert(font->path).second) continue;
    std::string copy;
    if (font && !ExportFile(font->path, folder, &copy)) {
      copies.push_back(copy);
    } else {
      failed.push_back(id);
    }
  }
  return {failed.empty() ? kSuccess : kCouldNotCopyFile, {{"copies", copies}, {"failed", failed}}};
}

}  // namespace

void AddSetCalls(Dispatcher& dispatcher, FontLibrary& library) {
  const auto add = [&](const char* call, auto function) {
    dispatcher.Add(call, Needs::kFonts,
                   [&library, function](ClientID, const Arguments& arguments) { return function(library, arguments); });
  };
  add("CreateTopLevelSet", CreateTopLevelSet);
  add("AddFontsToSets", AddFontsToSets);
  add("GetSets", GetSets);
  add("CanExportFonts", CanExportFonts);
  add("ExportFonts", ExportFonts);
}

}  // namespace agent
