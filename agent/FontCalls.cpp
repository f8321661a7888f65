#include <map>
#include <set>

#include "agent/Calls.h"
#include "agent/FontRecord.h"
#include "agent/ShownText.h"

namespace agent {

namespace {

using Fonts = std::vector<const Font*>;

// 0 among the workgroups means all, and so does an empty list.
void KeepWorkgroups(Fonts& fonts, const std::vector<uint32_t>& workgroupIDs) {
  const std::set<uint32_t> wanted(workgroupIDs.begin(), workgroupIDs.end());
  if (wanted.empty() || wanted.contains(0)) return;
  std::erase_if(fonts, [&](const Font* font) { return !wanted.contains(font->workgroupID); });
}

Reply IDsOf(Fonts fonts, const Arguments& arguments) {
  KeepWorkgroups(fonts, arguments.Numbers("workgroupIDs"));
  Json ids = Json::array();
  for (const Font* font : fonts) ids.push_back(font->id);
  return {kSuccess, {{"fontIDs", ids}}};
}

Json RecordOf(FontLibrary& library, const Font& font) { return MakeFontRecord(font, library.Active().StateOf(font)); }

// The list of workgroups can't choose here, since a font stands in one workgroup; callers pass pseudo numbers in it.
Reply GetFontInfoByID(FontLibrary& library, const Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const Font* font = library.Table().Find(arguments.Number("fontID"));
  if (!font) return {kNotFound};
  return {kSuccess, {{"record", RecordOf(library, *font)}}};
}

// Whether a should stand for its PostScript name in the family of the asked font rather than b.
bool IsBetterMember(FontLibrary& library, const Font& a, const Font& b, uint32_t askedID, const std::string& kind) {
  const auto rank = [&](const Font& font) {
    if (font.id == askedID) return 3;
    if (library.Active().IsActive(font)) return 2;
    return font.face.kind == kind ? 1 : 0;
  };
  return rank(a) > rank(b);
}

// The family for activation: of several files with one PostScript name only one could be activated, so each name comes
// once: the asked font itself, else the active one, else the one of the asked font's kind, else the first.
Reply FindFontsInSameFamily(FontLibrary& library, const Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const uint32_t askedID = arguments.Number("fontID");
  const Font* asked = library.Table().Find(askedID);
  Fonts family = library.Table().WithFamilyID(arguments.Number("familyID"));
  KeepWorkgroups(family, arguments.Numbers("workgroupIDs"));
  const std::string kind = asked ? asked->face.kind : "";
  Fonts members;
  std::map<std::string, size_t> places;
  for (const Font* font : family) {
    const auto [place, isNew] = places.emplace(font->face.postScriptName, members.size());
    if (isNew) {
      members.push_back(font);
    } else if (IsBetterMember(library, *font, *members[place->second], askedID, kind)) {
      members[place->second] = font;
    }
  }
  Json records = Json::array();
  for (const Font* font : members) records.push_back(RecordOf(library, *font));
  return {kSuccess, {{"records", records}}};
}

Reply GetFontIsActivated(FontLibrary& library, const Arguments& arguments) {
  library.FreshenSystemFonts(false);
  Json flags = Json::array();
  for (const uint32_t id : arguments.Numbers("fontIDs")) {
    const Font* font = library.Table().Find(id);
    flags.push_back(font && library.Active().IsActive(*font) ? 1 : 0);
  }
  return {kSuccess, {{"flags", flags}}};
}

Reply GetScanReport(const FontLibrary& library) {
  const ScanReport& report = library.Scans().Report();
  Json problems = Json::array();
  for (const ScanProblem& problem : report.problems) {
    problems.push_back({{"path", ShownPath(problem.path)}, {"message", problem.message}});
  }
  return {kSuccess, {{"files", report.files}, {"faces", report.faces}, {"problems", problems}}};
}

}  // namespace

void AddFontCalls(Dispatcher& dispatcher, FontLibrary& library) {
  dispatcher.Add("GetFontsByPostscriptName", Needs::kFonts, [&](ClientID, const Arguments& arguments) {
    library.FreshenSystemFonts(false);
    return IDsOf(library.Table().WithPostScriptName(arguments.Text("name")), arguments);
  });
  dispatcher.Add("GetFontsByFamilyName", Needs::kFonts, [&](ClientID, const Arguments& arguments) {
    library.FreshenSystemFonts(false);
    return IDsOf(library.Table().WithFamilyName(arguments.Text("name")), arguments);
  });
  const auto add = [&](const char* call, auto function) {
    dispatcher.Add(call, Needs::kFonts,
                   [&library, function](ClientID, const Arguments& arguments) { return function(library, arguments); });
  };
  add("GetFontInfoByID", GetFontInfoByID);
  add("FindFontsInSameFamilyForActivation", FindFontsInSameFamily);
  add("GetFontIsActivated", GetFontIsActivated);
  dispatcher.Add("GetScanReport", Needs::kFonts, [&](ClientID, const Arguments&) { return GetScanReport(library); });
  dispatcher.Add("Rescan", Needs::kFonts, [&](ClientID, const Arguments&) {
    library.Rescan();
    return Reply();
  });
}

}  // namespace agent
