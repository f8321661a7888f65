// Calls for smart lists, smart sets, and what panels count.
#include "agent/fonts/FontRecord.h"
#include "agent/server/Calls.h"

namespace agent {

namespace {

constexpr size_t kLongestName = 1023;  // bytes; what a panel has room for

bool IsNameGood(const std::string& name) { return !name.empty() && name.size() <= kLongestName; }

Numbers IDsOf(const std::vector<const Font*>& fonts) {
  Numbers ids;
  for (const Font* font : fonts) ids.push_back(font->id);
  return ids;
}

calls::ListedFont Listed(const FontLibrary& library, const Font& font) {
  return {font.id, DisplayName(font.face), font.face.postScriptName, library.Active().IsActive(font), LocationOf(font),
          true};
}

calls::SmartListDefinition DefinitionOf(SmartList list) {
  return {list.id, std::move(list.name), std::move(list.query.workgroupIDs), std::move(list.query.setIDs),
          std::move(list.query.smartSetIDs)};
}

}  // namespace

Answer<calls::GetAllSmartLists> Serve(FontLibrary& library, ClientID, const calls::GetAllSmartLists::Arguments&) {
  calls::GetAllSmartLists::Result result;
  for (SmartList& list : library.Lists().All()) result.smartLists.push_back(DefinitionOf(std::move(list)));
  return result;
}

Answer<calls::GetSmartList> Serve(FontLibrary& library, ClientID, const calls::GetSmartList::Arguments& arguments) {
  auto list = library.Lists().Find(arguments.smartListID);
  if (!list) return kNotFound;
  return DefinitionOf(std::move(*list));
}

Answer<calls::GetPanelSmartListTree> Serve(FontLibrary& library, ClientID,
                                           const calls::GetPanelSmartListTree::Arguments& arguments) {
  const std::string text = library.Lists().TreeText(arguments.smartListID);
  if (text.empty()) return kNotFound;
  return calls::GetPanelSmartListTree::Result{text};
}

Answer<calls::QueryForSmartListFonts> Serve(FontLibrary& library, ClientID,
                                            const calls::QueryForSmartListFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  return calls::IDs{IDsOf(library.Lists().FontsOf({arguments.workgroupIDs, arguments.setIDs, arguments.smartSetIDs}))};
}

Answer<calls::GetSmartListFonts> Serve(FontLibrary& library, ClientID,
                                       const calls::GetSmartListFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const auto fonts = library.Lists().FontsOf(arguments.smartListID);
  if (!fonts) return kNotFound;
  calls::GetSmartListFonts::Result result;
  for (const Font* font : *fonts) result.fonts.push_back(Listed(library, *font));
  return result;
}

Answer<calls::GetGoogleFonts> Serve(FontLibrary& library, ClientID, const calls::GetGoogleFonts::Arguments&) {
  calls::GetGoogleFonts::Result result;
  for (const Font* font : library.Lists().FontsOf(SmartListQuery{{kWebFontsID}, {}, {}})) {
    result.fonts.push_back(Listed(library, *font));
  }
  return result;
}

Answer<calls::CreateSmartList> Serve(FontLibrary& library, ClientID,
                                     const calls::CreateSmartList::Arguments& arguments) {
  if (!IsNameGood(arguments.name)) return kInvalidParam;
  const uint32_t id = library.Smart().CreateSmartList(
      arguments.name, {arguments.workgroupIDs, arguments.setIDs, arguments.smartSetIDs});
  library.NoteListsChanged();
  return calls::CreateSmartList::Result{id};
}

// The lists that are always there can't be changed.
Answer<calls::RenameSmartList> Serve(FontLibrary& library, ClientID,
                                     const calls::RenameSmartList::Arguments& arguments) {
  if (!IsNameGood(arguments.name) || SmartLists::IsBuiltIn(arguments.smartListID)) return kInvalidParam;
  return Changed<calls::RenameSmartList>(library,
                                         library.Smart().RenameSmartList(arguments.smartListID, arguments.name));
}

Answer<calls::SetSmartListQuery> Serve(FontLibrary& library, ClientID,
                                       const calls::SetSmartListQuery::Arguments& arguments) {
  if (SmartLists::IsBuiltIn(arguments.smartListID)) return kInvalidParam;
  const SmartListQuery query{arguments.workgroupIDs, arguments.setIDs, arguments.smartSetIDs};
  return Changed<calls::SetSmartListQuery>(library, library.Smart().SetSmartListQuery(arguments.smartListID, query));
}

Answer<calls::DeleteSmartList> Serve(FontLibrary& library, ClientID,
                                     const calls::DeleteSmartList::Arguments& arguments) {
  if (SmartLists::IsBuiltIn(arguments.smartListID)) return kInvalidParam;
  return Changed<calls::DeleteSmartList>(library, library.Smart().DeleteSmartList(arguments.smartListID));
}

Answer<calls::GetSmartSets> Serve(FontLibrary& library, ClientID, const calls::GetSmartSets::Arguments&) {
  calls::GetSmartSets::Result result;
  for (SmartSet& set : library.Smart().SmartSets()) {
    result.smartSets.push_back({set.id, std::move(set.name), std::move(set.rule)});
  }
  return result;
}

// ID 0 creates a smart set.
Answer<calls::PutSmartSet> Serve(FontLibrary& library, ClientID, const calls::PutSmartSet::Arguments& arguments) {
  if (!IsNameGood(arguments.name)) return {kInvalidParam, {0, "the name is empty or too long"}};
  try {
    FontRule::Parse(arguments.rule);
  } catch (const RuleError& error) {
    return {kInvalidParam, {0, error.what()}};
  }
  SmartSet set{arguments.smartSetID, arguments.name, arguments.rule};
  if (set.id == 0) {
    set.id = library.Smart().CreateSmartSet(set.name, set.rule);
  } else if (!library.Smart().ChangeSmartSet(set)) {
    return kNotFound;
  }
  library.NoteListsChanged();
  return calls::PutSmartSet::Result{set.id, ""};
}

Answer<calls::DeleteSmartSet> Serve(FontLibrary& library, ClientID, const calls::DeleteSmartSet::Arguments& arguments) {
  return Changed<calls::DeleteSmartSet>(library, library.Smart().DeleteSmartSet(arguments.smartSetID));
}

Answer<calls::FindFonts> Serve(FontLibrary& library, ClientID, const calls::FindFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  try {
    return calls::FindFonts::Result{IDsOf(library.Lists().FontsOf(FontRule::Parse(arguments.rule))), ""};
  } catch (const RuleError& error) {
    return {kInvalidParam, {{}, error.what()}};
  }
}

Answer<calls::TrackFontPanelClick> Serve(FontLibrary& library, ClientID,
                                         const calls::TrackFontPanelClick::Arguments& arguments) {
  if (!library.Table().Find(arguments.fontID)) return kNotFound;
  library.Smart().CountClick(arguments.fontID);
  return calls::Nothing();
}

}  // namespace agent
