#include "agent/fonts/FontRecord.h"

#include "agent/fonts/ShownText.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

constexpr size_t kLongestDisplayName = 512;  // bytes

}  // namespace

std::string DisplayName(const FontFace& face) {
  const bool saysNothing = face.style.empty() || platform::EqualCaseless(face.style, "Regular");
  std::string name = face.family + (saysNothing ? "" : " " + face.style);
  if (name.size() > kLongestDisplayName) name.resize(kLongestDisplayName);
  // The cut may be within a character.
  while (!platform::IsValidUTF8(name)) name.pop_back();
  return name;
}

uint32_t LocationOf(const Font& font) {
  switch (font.workgroupID) {
    case kSystemFontsID: return kSystemLocation;
    case kWebFontsID: return kWebLocation;
    default: return kDesktopLocation;
  }
}

agent_protocol::Record MakeFontRecord(const Font& font, const Workgroup& workgroup,
                                      agent_protocol::AgentActivationState state) {
  const FontFace& face = font.face;
  agent_protocol::Record record = MakeWorkgroupRecord(workgroup);
  record.emplace("PostScriptName", face.postScriptName);
  record.emplace("FontKind", face.kind);
  record.emplace("Foundry", face.foundry);
  record.emplace("Version", face.version);
  record.emplace("KerningChecksum", std::to_string(face.kerningChecksum));
  record.emplace("Checksum", std::to_string(face.checksum));
  record.emplace("Glyphsure_1.2_Checksum", std::to_string(face.glyphsureChecksum));
  record.emplace("OutlineFileSize", std::to_string(font.fileSize));
  record.emplace("OutlineFileName", ShownPath(font.path.View().substr(font.path.View().rfind('/') + 1)));
  record.emplace("Family", face.family);
  record.emplace("AssignedFamilyID", std::to_string(font.familyID));
  record.emplace("AssignedFamilyName", face.family);
  record.emplace("Path", ShownPath(font.path));
  record.emplace("DatabaseID", std::to_string(font.id));
  record.emplace("ActivationStatus", std::to_string(state));
  record.emplace("IsVault", "0");  // the agent activates files where they are; it has no vault of copies
  record.emplace("DisplayName", DisplayName(face));
  record.emplace("FontFaceID", std::to_string(face.faceIndex));
  record.emplace("FontLocation", std::to_string(LocationOf(font)));
  record.emplace("IsMarquineFile", workgroup.type == kLibraryType ? "1" : "0");
  record.emplace("ScannedFoundry", face.foundry);
  record.emplace("IsSystem", workgroup.type == kSystemType ? "1" : "0");
  record.emplace("IsLocal", "1");  // no font is on a server
  record.emplace("Weight", std::to_string(face.traits.weight));
  record.emplace("Width", std::to_string(face.traits.width));
  record.emplace("IsItalic", face.traits.isItalic ? "1" : "0");
  if (!face.printerFont.empty()) record.emplace("PrinterFont", face.printerFont);
  return record;
}

agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup) {
  return {{"WorkgroupID", std::to_string(workgroup.id)},
          {"WorkgroupName", workgroup.name},
          {"WorkgroupType", std::to_string(workgroup.type)}};
}

}  // namespace agent
