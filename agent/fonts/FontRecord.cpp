#include "agent/fonts/FontRecord.h"

#include "agent/fonts/ShownText.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

constexpr size_t kLongestDisplayName = 512;  // bytes

}  // namespace

std::string DisplayName(const FontFace& face) {
  const bool isPlain = face.style.empty() || platform::EqualCaseless(face.style, "Regular");
  std::string name = face.family + (isPlain ? "" : " " + face.style);
  if (name.size() > kLongestDisplayName) name.resize(kLongestDisplayName);
  while (!platform::IsValidUTF8(name)) name.pop_back();  // cut off within a character
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
  agent_protocol::Record record = {
      {"PostScriptName", face.postScriptName},
      {"FontKind", face.kind},
      {"Foundry", face.foundry},
      {"Version", face.version},
      {"KerningChecksum", std::to_string(face.kerningChecksum)},
      {"Checksum", std::to_string(face.checksum)},
      {"Glyphsure_1.2_Checksum", std::to_string(face.glyphsureChecksum)},
      {"OutlineFileSize", std::to_string(font.fileSize)},
      {"OutlineFileName", ShownPath(font.path.View().substr(font.path.View().rfind('/') + 1))},
      {"Family", face.family},
      {"AssignedFamilyID", std::to_string(font.familyID)},
      {"AssignedFamilyName", face.family},
      {"Path", ShownPath(font.path)},
      {"DatabaseID", std::to_string(font.id)},
      {"ActivationStatus", std::to_string(state)},
      {"IsVault", "0"},
      {"DisplayName", DisplayName(face)},
      {"FontFaceID", std::to_string(face.faceIndex)},
      {"FontLocation", std::to_string(LocationOf(font))},
      {"IsMarquineFile", workgroup.type == kLibraryType ? "1" : "0"},
      {"ScannedFoundry", face.foundry},
      {"IsSystem", workgroup.type == kSystemType ? "1" : "0"},
      {"IsLocal", "1"},
      {"Weight", std::to_string(face.traits.weight)},
      {"Width", std::to_string(face.traits.width)},
      {"IsItalic", face.traits.isItalic ? "1" : "0"},
  };
  if (!face.printerFont.empty()) record["PrinterFont"] = face.printerFont;
  record.merge(MakeWorkgroupRecord(workgroup));
  return record;
}

agent_protocol::Record MakeWorkgroupRecord(const Workgroup& workgroup) {
  return {{"WorkgroupID", std::to_string(workgroup.id)},
          {"WorkgroupName", workgroup.name},
          {"WorkgroupType", std::to_string(workgroup.type)}};
}

}  // namespace agent
