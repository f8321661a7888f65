#include "agent/fonts/FaceReader.h"

#include FT_MULTIPLE_MASTERS_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H
#include FT_TRUETYPE_TABLES_H
#include FT_TYPE1_TABLES_H

#include <algorithm>
#include <cstdio>
#include <memory>
#include <new>

#include "agent/fonts/Checksums.h"
#include "agent/fonts/ShownText.h"
#include "platform/BigEndian.h"
#include "platform/TextEncoding.h"

namespace agent {

namespace {

struct FaceFree {
  void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using Face = std::unique_ptr<FT_FaceRec_, FaceFree>;

Face OpenFace(const FreeTypeLibrary& library, std::string_view bytes, int index, std::string& problem) {
  FT_Face face = nullptr;
  const FT_Error error = FT_New_Memory_Face(library.Get(), reinterpret_cast<const FT_Byte*>(bytes.data()),
                                            static_cast<FT_Long>(bytes.size()), index, &face);
  if (error) {
    const char* text = FT_Error_String(error);
    problem = text ? text : "FreeType error " + std::to_string(error);
    return nullptr;
  }
  return Face(face);
}

std::string DecodeName(const FT_SfntName& name) {
  const std::string_view bytes(reinterpret_cast<const char*>(name.string), name.string_len);
  const std::string text = name.platform_id == TT_PLATFORM_MACINTOSH
                               ? platform::DecodeText(bytes, platform::TextEncoding::kMacRoman).value_or("")
                               : DecodeUTF16(bytes);
  return platform::TrimWhitespace(WithoutControls(text));
}

// Ranks a record of the name table by how well it suits an English user; 0 if it is not used.
int Preference(const FT_SfntName& name) {
  constexpr FT_UShort kEnglishUS = 0x0409;
  if (name.platform_id == TT_PLATFORM_MICROSOFT && name.encoding_id <= TT_MS_ID_UNICODE_CS) {
    return name.language_id == kEnglishUS ? 4 : 1;
  }
  if (name.platform_id == TT_PLATFORM_MACINTOSH && name.encoding_id == TT_MAC_ID_ROMAN) {
    return name.language_id == TT_MAC_LANGID_ENGLISH ? 3 : 0;
  }
  return name.platform_id == TT_PLATFORM_APPLE_UNICODE ? 2 : 0;
}

std::string SfntName(FT_Face face, FT_UShort id) {
  std::string best;
  int bestPreference = 0;
  for (FT_UInt i = 0; i < FT_Get_Sfnt_Name_Count(face); ++i) {
    FT_SfntName name;
    if (FT_Get_Sfnt_Name(face, i, &name) != 0 || name.name_id != id || Preference(name) <= bestPreference) continue;
    std::string text = DecodeName(name);
    if (text.empty()) continue;
    best = std::move(text);
    bestPreference = Preference(name);
  }
  return best;
}

std::string WithoutVersionWord(const std::string& text) {
  constexpr std::string_view kWord = "version ";
  std::string_view version = text;
  if (platform::EqualCaseless(version.substr(0, kWord.size()), kWord)) version.remove_prefix(kWord.size());
  return platform::TrimWhitespace(version.substr(0, version.find(';')));
}

// Makers that only the notice of their Type 1 and CFF fonts names.
std::string MakerInNotice(FT_Face face) {
  static constexpr std::string_view kMakers[] = {"Adobe",    "URW",      "Bitstream", "Monotype",
                                                 "Linotype", "ParaType", "Bigelow",   "International Typeface"};
  PS_FontInfoRec info{};
  if (FT_Get_PS_Font_Info(face, &info) != 0 || !info.notice) return "";
  const std::string_view notice = info.notice;
  for (const std::string_view maker : kMakers) {
    if (notice.find(maker) != std::string_view::npos) return std::string(maker);
  }
  return "";
}

std::string VendorOf(FT_Face face) {
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  if (!os2 || os2->version == 0xFFFF) return "";
  std::string vendor;
  for (const FT_Char c : os2->achVendID) {
    if (c >= 0x20 && c < 0x7F) vendor.push_back(static_cast<char>(c));
  }
  vendor = platform::TrimWhitespace(vendor);
  return vendor == "UKWN" ? "" : vendor;  // the registry's own tag for an unknown vendor
}

// Documents store "unknown", in any case, as "--"; the record must do the same to be recognised.
std::string FoundryOf(FT_Face face, const std::string& manufacturer) {
  constexpr const char* kNoFoundry = "--";
  for (const std::string& foundry : {manufacturer, MakerInNotice(face), VendorOf(face)}) {
    if (platform::EqualCaseless(foundry, "unknown")) return kNoFoundry;
    if (!foundry.empty()) return foundry;
  }
  return kNoFoundry;
}

std::string SfntVersion(FT_Face face) {
  std::string version = WithoutVersionWord(SfntName(face, TT_NAME_ID_VERSION_STRING));
  const auto* head = static_cast<const TT_Header*>(FT_Get_Sfnt_Table(face, FT_SFNT_HEAD));
  if (version.empty() && head) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", static_cast<double>(head->Font_Revision) / 65536.0);
    version = text;
  }
  return version;
}

std::string SfntKind(const SfntTables& tables) {
  if (tables.Has("CFF ") || tables.Has("CFF2")) return "OpenType - PS";
  for (const char* tag : {"GSUB", "GPOS", "GDEF", "BASE", "JSTF", "DSIG"}) {
    if (tables.Has(tag)) return "OpenType - TT";
  }
  return "TrueType";
}

// Returns 0 beyond the end.
uint64_t UInt16(std::string_view bytes, size_t at) {
  return at + 2 > bytes.size() ? 0 : platform::ReadBigEndian(bytes, at, 2);
}

// The number of bytes processed for one face. Any number of names may share bytes, and FreeType copies each; any number
// of character maps may share bytes, and it checks each.
uint64_t CostOf(const SfntTables& tables) {
  constexpr size_t kHeaderSize = 6, kRecordSize = 12, kLengthInRecord = 8;
  const std::string_view names = tables.Table("name"), maps = tables.Table("cmap");
  uint64_t cost = tables.DirectorySize() + tables.Table("kern").size() + UInt16(maps, 2) * maps.size();
  const size_t count = UInt16(names, 2);
  for (size_t i = 0; i < count; ++i) cost += UInt16(names, kHeaderSize + i * kRecordSize + kLengthInRecord);
  return cost;
}

uint32_t KerningChecksum(const SfntTables& tables, FileReading& reading) {
  if (!tables.Has("kern") && !tables.Has("GPOS")) return 0;
  const uint32_t whole = reading.Crc32(tables.Table("GPOS"), reading.Crc32(tables.Table("kern"), 0));
  return std::max(1u, (whole ^ whole >> 20) & 0xFFFFFu);
}

// The place distinguishes faces of a collection that share their outlines.
void SetOutlineChecksums(const std::vector<std::string_view>& outlines, std::string_view place, FileReading& reading,
                         FontFace& face) {
  uint32_t crc = 0;
  uint32_t fnv = kFnvStart;
  for (const std::string_view part : outlines) {
    crc = reading.Crc32(part, crc);
    fnv = reading.Fnv1a(part, fnv);
  }
  face.glyphsureChecksum = std::max(1u, Crc32(place, crc));
  face.checksum = std::max(1u, Fnv1a(place, fnv));
}

// Converts a text of unknown encoding.
std::string TextOf(const char* bytes) {
  const std::string given = bytes ? bytes : "";
  if (platform::IsValidUTF8(given)) return WithoutControls(given);
  return WithoutControls(platform::DecodeText(given, platform::TextEncoding::kMacRoman).value_or(""));
}

// Reads what both kinds of file have. Returns false with a problem if the face is unusable.
bool ReadCommon(FT_Face face, FontFace& out, std::string& problem) {
  out.postScriptName = TextOf(FT_Get_Postscript_Name(face));
  if (!FT_IS_SCALABLE(face)) problem = "has no outlines";
  if (out.postScriptName.empty()) problem = "has no PostScript name";
  if (!FT_IS_SCALABLE(face) || out.postScriptName.empty()) return false;
  out.family = TextOf(face->family_name);
  if (out.family.empty()) out.family = out.postScriptName;
  out.style = TextOf(face->style_name);
  out.traits = TraitsOf(face);
  out.coverage = CoverageReader::Shared().Read(face);
  return true;
}

}  // namespace

FreeTypeLibrary::FreeTypeLibrary() {
  if (FT_Init_FreeType(&library_) != 0) throw std::bad_alloc();
}
FreeTypeLibrary::~FreeTypeLibrary() { FT_Done_FreeType(library_); }

bool ReadSfntFace(const FreeTypeLibrary& library, std::string_view bytes, const SfntTables& tables, int index,
                  FileReading& reading, FontFace& out, std::string& problem) {
  problem = "its parts are shared too often to be read";
  if (!reading.Pay(CostOf(tables))) return false;
  const Face face = OpenFace(library, bytes, index, problem);
  if (!face || !ReadCommon(face.get(), out, problem)) return false;
  out.faceIndex = index;
  out.kind = SfntKind(tables);
  out.foundry = FoundryOf(face.get(), SfntName(face.get(), TT_NAME_ID_MANUFACTURER));
  out.version = SfntVersion(face.get());
  out.kerningChecksum = KerningChecksum(tables, reading);
  std::vector<std::string_view> outlines;
  for (const char* tag : {"CFF ", "CFF2", "glyf", "loca"}) outlines.push_back(tables.Table(tag));
  SetOutlineChecksums(outlines, SfntTables::IsCollection(bytes) ? std::to_string(index) : "", reading, out);
  return !reading.IsSpent();
}

bool ReadType1Face(const FreeTypeLibrary& library, std::string_view bytes, const std::string& fileName, FontFace& out,
                   std::string& problem) {
  const Face face = OpenFace(library, bytes, 0, problem);
  if (!face || !ReadCommon(face.get(), out, problem)) return false;
  out.kind = FT_HAS_MULTIPLE_MASTERS(face.get()) ? "PostScript - MM" : "Postscript";
  out.foundry = FoundryOf(face.get(), "");
  PS_FontInfoRec info{};
  if (FT_Get_PS_Font_Info(face.get(), &info) == 0 && info.version)
    out.version = WithoutVersionWord(TextOf(info.version));
  out.printerFont = ShownPath(fileName);
  FileReading reading(bytes);
  SetOutlineChecksums({bytes}, "", reading, out);
  return true;
}

}  // namespace agent
