// Any bytes as a font file, as the agent reads it: gives faces with identification, or a line that says what is wrong.
// Reading again gives the same, and each face has a record.
#include <climits>

#include "Check.h"
#include "Input.h"
#include "agent/fonts/FontFile.h"
#include "agent/fonts/FontRecord.h"
#include "platform/PropertyList.h"
#include "platform/TextEncoding.h"

namespace {

using namespace agent;

void CheckFace(const FontFace& face) {
  CHECK(!face.postScriptName.empty() && !face.family.empty() && !face.kind.empty() && !face.foundry.empty());
  for (const std::string_view text :
       {face.postScriptName.View(), face.family.View(), face.style.View(), face.foundry.View(), face.version.View()}) {
    CHECK(platform::IsValidUTF8(text));
  }
  CHECK(face.checksum != 0 && face.glyphsureChecksum != 0 && face.kerningChecksum <= 0xFFFFF);
  Font font;
  font.path = "/fonts/font.ttf";
  font.face = face;
  platform::Dictionary record = platform::Dictionary::Create();
  for (const auto& [key, text] :
       MakeFontRecord(font, {kFontLibraryID, kFontLibraryName, kLibraryType, {}}, agent_protocol::kInactive)) {
    CHECK(platform::IsValidUTF8(text));  // otherwise the record could not be sent
    record.Set(key, text);
  }
  CHECK(record.GetString("PostScriptName").View() == face.postScriptName);
  CHECK(!platform::CreateXMLPropertyList(record).empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const FontFileReader sReader;
  const std::string_view bytes = BytesOf(data, size);
  const FontFileContent content = sReader.Parse(bytes, "font.ttf");
  CHECK((content.verdict == FontVerdict::kFont) == !content.faces.empty());
  CHECK(content.verdict != FontVerdict::kNotAFont);
  CHECK(content.verdict == FontVerdict::kFont || !content.problem.empty());
  CHECK(content.problem.find('\n') == std::string::npos);
  for (const FontFace& face : content.faces) CheckFace(face);
  CHECK(sReader.Parse(bytes, "font.ttf").faces == content.faces);
  return 0;
}
