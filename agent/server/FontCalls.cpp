// Calls that look up fonts.
#include <map>
#include <set>

#include <algorithm>

#include "agent/fonts/FontRecord.h"
#include "agent/fonts/ShownText.h"
#include "agent/server/Calls.h"

namespace agent {

namespace {

using Fonts = std::vector<const Font*>;

// A 0 among the workgroups means all, and so does an empty list.
void KeepWorkgroups(Fonts& fonts, const Numbers& workgroupIDs) {
  const std::set<uint32_t> wanted(workgroupIDs.begin(), workgroupIDs.end());
  if (wanted.empty() || wanted.contains(0)) return;
  std::erase_if(fonts, [&](const Font* font) { return !wanted.contains(font->workgroupID); });
}

calls::IDs IDsOf(Fonts fonts, const Numbers& workgroupIDs) {
  KeepWorkgroups(fonts, workgroupIDs);
  calls::IDs result;
  for (const Font* font : fonts) result.fontIDs.push_back(font->id);
  return result;
}

Record RecordOf(FontLibrary& library, const Font& font) {
  const Workgroup* workgroup = FindWorkgroup(library.Groups(), font.workgroupID);
  // A font is listed until the scan that follows the deletion of its workgroup.
  const Workgroup deleted{font.workgroupID, "", kLibraryType, {}};
  return MakeFontRecord(font, workgroup ? *workgroup : deleted, library.Active().StateOf(font));
}

// True if font a represents its PostScript name in the family better than b.
bool IsBetterMember(FontLibrary& library, const Font& a, const Font& b, uint32_t askedID, const std::string& kind) {
  const auto rank = [&](const Font& font) {
    if (font.id == askedID) return 3;
    if (library.Active().IsActive(font)) return 2;
    return font.face.kind == kind ? 1 : 0;
  };
  return rank(a) > rank(b);
}

calls::DescribeFonts::Font Describe(const FontLibrary& library, const Font& font) {
  const FontFace& face = font.face;
  calls::DescribeFonts::Font out;
  out.fontID = font.id;
  out.displayName = DisplayName(face);
  out.family = face.family;
  out.style = face.style;
  out.postscriptName = face.postScriptName;
  out.kind = face.kind;
  out.foundry = face.foundry;
  out.version = face.version;
  out.path = ShownPath(font.path);
  out.faceIndex = static_cast<uint32_t>(face.faceIndex);
  out.fileSize = static_cast<uint32_t>(std::min<uint64_t>(font.fileSize, UINT32_MAX));
  out.weight = face.traits.weight;
  out.width = face.traits.width;
  out.design = platform::WordOf(face.traits.design);
  out.italic = face.traits.isItalic;
  out.monospaced = face.traits.isMonospaced;
  out.variable = face.traits.isVariable;
  out.coloured = face.traits.isColoured;
  out.scripts = ScriptCodes(face.coverage.Unpacked());
  out.languages = LanguageCodes(face.coverage.Unpacked());
  out.added = static_cast<uint32_t>(font.added);
  out.state = static_cast<uint32_t>(library.Active().StateOf(font));
  out.checksum = face.glyphsureChecksum;
  out.workgroupID = font.workgroupID;
  return out;
}

}  // namespace

Answer<calls::GetFontsByPostscriptName> Serve(FontLibrary& library, ClientID,
                                              const calls::GetFontsByPostscriptName::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  return IDsOf(library.Table().WithPostScriptName(arguments.name), arguments.workgroupIDs);
}

Answer<calls::LookUpFonts> Serve(FontLibrary& library, ClientID, const calls::LookUpFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  calls::LookUpFonts::Result result;
  size_t recordsLeft = calls::LookUpFonts::kMostRecords;
  for (const std::string& name : arguments.names) {
    Fonts fonts = arguments.byFamily ? library.Table().WithFamilyName(name) : library.Table().WithPostScriptName(name);
    KeepWorkgroups(fonts, arguments.workgroupIDs);
    calls::LookUpFonts::Found found;
    for (const Font* font : fonts) {
      found.fontIDs.push_back(font->id);
      if (found.records.size() == arguments.recordsOfEach || recordsLeft == 0) continue;
      found.records.push_back(RecordOf(library, *font));
      found.flags.push_back(library.Active().IsActive(*font) ? 1 : 0);
      --recordsLeft;
    }
    result.found.push_back(std::move(found));
  }
  return result;
}

Answer<calls::GetFontInfoByID> Serve(FontLibrary& library, ClientID,
                                     const calls::GetFontInfoByID::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const Font* font = library.Table().Find(arguments.fontID);
  if (!font) return kNotFound;
  return calls::GetFontInfoByID::Result{RecordOf(library, *font)};
}

// Returns the members of a family that can be active together. Of several files with one PostScript name only one can
// be active, so each name occurs once: the requested font itself, else the active one, else one of the requested font's
// kind, else the first.
Answer<calls::FindFontsInSameFamilyForActivation> Serve(
    FontLibrary& library, ClientID, const calls::FindFontsInSameFamilyForActivation::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  const Font* asked = library.Table().Find(arguments.fontID);
  Fonts family = library.Table().WithFamilyID(arguments.familyID);
  KeepWorkgroups(family, arguments.workgroupIDs);
  const std::string kind = asked ? asked->face.kind : "";
  Fonts members;
  std::map<std::string, size_t> places;
  for (const Font* font : family) {
    const auto [place, isNew] = places.emplace(font->face.postScriptName, members.size());
    if (isNew) {
      members.push_back(font);
    } else if (IsBetterMember(library, *font, *members[place->second], arguments.fontID, kind)) {
      members[place->second] = font;
    }
  }
  calls::FindFontsInSameFamilyForActivation::Result result;
  for (const Font* font : members) result.records.push_back(RecordOf(library, *font));
  return result;
}

Answer<calls::GetFontIsActivated> Serve(FontLibrary& library, ClientID,
                                        const calls::GetFontIsActivated::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  calls::Flags result;
  for (const uint32_t id : arguments.fontIDs) {
    const Font* font = library.Table().Find(id);
    result.flags.push_back(font && library.Active().IsActive(*font) ? 1 : 0);
  }
  return result;
}

Answer<calls::GetScanReport> Serve(FontLibrary& library, ClientID, const calls::GetScanReport::Arguments&) {
  const ScanReport& report = library.Scans().Report();
  calls::GetScanReport::Result result;
  result.files = static_cast<uint32_t>(report.files);
  result.faces = static_cast<uint32_t>(report.faces);
  for (const ScanProblem& problem : report.problems) {
    result.problems.push_back({ShownPath(problem.path), problem.message});
  }
  return result;
}

Answer<calls::Rescan> Serve(FontLibrary& library, ClientID, const calls::Rescan::Arguments&) {
  library.Rescan();
  return calls::Nothing();
}

Answer<calls::GetFontKinds> Serve(FontLibrary& library, ClientID, const calls::GetFontKinds::Arguments&) {
  library.FreshenSystemFonts(false);
  std::map<std::string, Numbers> kinds;
  library.Table().ForEach([&](const Font& font) { kinds[font.face.kind].push_back(font.id); });
  calls::GetFontKinds::Result result;
  for (auto& [kind, fontIDs] : kinds) {
    std::ranges::sort(fontIDs);
    result.kinds.push_back({kind, std::move(fontIDs)});
  }
  return result;
}

Answer<calls::DescribeFonts> Serve(FontLibrary& library, ClientID, const calls::DescribeFonts::Arguments& arguments) {
  library.FreshenSystemFonts(false);
  calls::DescribeFonts::Result result;
  const auto clicks = library.Smart().Clicks();
  for (const uint32_t id : arguments.fontIDs) {
    const Font* font = library.Table().Find(id);
    if (!font) continue;
    result.fonts.push_back(Describe(library, *font));
    if (const auto counted = clicks.find(id); counted != clicks.end()) result.fonts.back().clicks = counted->second;
  }
  return result;
}

}  // namespace agent
