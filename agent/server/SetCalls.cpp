// Calls for sets of fonts and copies of their files.
#include <algorithm>
#include <set>

#include "agent/fonts/FontExport.h"
#include "agent/server/Calls.h"
#include "platform/Files.h"

namespace agent {

namespace {

constexpr size_t kLongestSetName = 1024;  // bytes

bool AreAllKnown(const FontLibrary& library, const Numbers& fontIDs) {
  return std::all_of(fontIDs.begin(), fontIDs.end(), [&](uint32_t id) { return library.Table().Find(id) != nullptr; });
}

bool IsNameGood(const std::string& name) { return !name.empty() && name.size() <= kLongestSetName; }

Numbers WithoutRepeats(const Numbers& ids) {
  Numbers once;
  std::set<uint32_t> taken;
  for (const uint32_t id : ids) {
    if (taken.insert(id).second) once.push_back(id);
  }
  return once;
}

}  // namespace

Answer<calls::CreateTopLevelSet> Serve(FontLibrary& library, ClientID,
                                       const calls::CreateTopLevelSet::Arguments& arguments) {
  const Workgroup* workgroup = FindWorkgroup(library.Groups(), arguments.workgroupID);
  if (!IsNameGood(arguments.name) || !workgroup || workgroup->type == kSystemType) return kInvalidParam;
  if (!AreAllKnown(library, arguments.fontIDs)) return kNotFound;
  const uint32_t id = library.User().CreateSet(arguments.name, arguments.workgroupID, arguments.fontIDs);
  library.NoteListsChanged();
  return calls::CreateTopLevelSet::Result{id};
}

Answer<calls::AddFontsToSets> Serve(FontLibrary& library, ClientID, const calls::AddFontsToSets::Arguments& arguments) {
  const Numbers setIDs = WithoutRepeats(arguments.setIDs);
  const Numbers fontIDs = WithoutRepeats(arguments.fontIDs);
  if (setIDs.size() * fontIDs.size() > kMostNumbers) return kInvalidParam;
  if (!AreAllKnown(library, fontIDs)) return kNotFound;
  if (!library.User().AddToSets(setIDs, fontIDs)) return kNotFound;
  library.NoteListsChanged();
  return calls::Nothing();
}

Answer<calls::RenameSet> Serve(FontLibrary& library, ClientID, const calls::RenameSet::Arguments& arguments) {
  if (!IsNameGood(arguments.name)) return kInvalidParam;
  return Changed<calls::RenameSet>(library, library.User().RenameSet(arguments.setID, arguments.name));
}

Answer<calls::DeleteSet> Serve(FontLibrary& library, ClientID, const calls::DeleteSet::Arguments& arguments) {
  return Changed<calls::DeleteSet>(library, library.User().DeleteSet(arguments.setID));
}

Answer<calls::RemoveFontsFromSet> Serve(FontLibrary& library, ClientID,
                                        const calls::RemoveFontsFromSet::Arguments& arguments) {
  return Changed<calls::RemoveFontsFromSet>(library, library.User().RemoveFromSet(arguments.setID, arguments.fontIDs));
}

Answer<calls::GetSets> Serve(FontLibrary& library, ClientID, const calls::GetSets::Arguments&) {
  calls::GetSets::Result result;
  for (FontSet& set : library.User().Sets()) {
    result.sets.push_back({set.id, std::move(set.name), set.workgroupID, std::move(set.fontIDs)});
  }
  return result;
}

Answer<calls::CanExportFonts> Serve(FontLibrary& library, ClientID, const calls::CanExportFonts::Arguments& arguments) {
  const bool canExport = std::ranges::all_of(arguments.fontIDs, [&](uint32_t id) {
    const Font* font = library.Table().Find(id);
    return font && library.Rights().IsHeld(kExportFonts, font->workgroupID);
  });
  return calls::Value{canExport ? 1u : 0u};
}

// Continues after a font that cannot or may not be copied, and then fails.
Answer<calls::ExportFonts> Serve(FontLibrary& library, ClientID, const calls::ExportFonts::Arguments& arguments) {
  if (!arguments.folder.starts_with("/")) return kInvalidParam;
  if (platform::MakeFolder(arguments.folder)) return kCouldNotCopyFile;
  calls::ExportFonts::Result result;
  ResultCode failure = kCouldNotCopyFile;
  std::set<std::string> taken;  // the faces of a collection share their file
  for (const uint32_t id : arguments.fontIDs) {
    const Font* font = library.Table().Find(id);
    if (font && !taken.insert(font->path).second) continue;
    if (font && !library.Rights().IsHeld(kExportFonts, font->workgroupID)) {
      failure = kNotGrantedExport;
      result.failed.push_back(id);
      continue;
    }
    std::string copy;
    if (font && !ExportFile(font->path, arguments.folder, &copy)) {
      result.copies.push_back(copy);
    } else {
      result.failed.push_back(id);
    }
  }
  return {result.failed.empty() ? kSuccess : failure, std::move(result)};
}

}  // namespace agent
