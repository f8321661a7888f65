// Exact identity, by the identification data of a slug or by what an Adobe application wrote.
#include <cctype>
#include <cstdlib>

#include "Identification/FontMatching.h"
#include "Services/DiagnosticLog.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

constexpr std::string_view kPerfectMatchKeys[] = {
    kGS_KindKey,        kGS_FamilyKey,         kGS_PostScriptNameKey, kGS_FoundryKey,         kGS_VersionKey,
    kGS_PrinterFontKey, kGS_Glyphsure_1_2_Key, kGS_ChecksumKey,       kGS_KerningChecksumKey, kGS_OutlineFileSizeKey,
};
constexpr int kMostKeysWithoutMatch = 2;

bool IsChecksum(std::string_view key) {
  return key == kGS_Glyphsure_1_2_Key || key == kGS_ChecksumKey || key == kGS_KerningChecksumKey;
}

uint32_t ChecksumOfText(std::string_view text) { return static_cast<uint32_t>(std::atoll(std::string(text).c_str())); }

uint32_t ChecksumOf(const Dictionary& record, std::string_view key) {
  return ChecksumOfText(record.GetString(key).View());
}

bool AreSameTexts(std::string_view a, std::string_view b) { return a.size() == b.size() && platform::EqualCaseless(a, b); }

bool KeysHaveSameValueIfDefined(const Dictionary& source, const Dictionary& candidate, std::string_view key, int& compared) {
  if (!source.Contains(key)) return true;  // the document does not say
  ++compared;
  if (!candidate.Contains(key)) return false;
  const std::string wanted = platform::TrimWhitespace(source.GetString(key).View());
  const std::string held = platform::TrimWhitespace(candidate.GetString(key).View());
  if (wanted.empty() || held.empty()) return true;
  bool isSame = false;
  if (IsChecksum(key)) {
    const uint32_t a = ChecksumOfText(wanted), b = ChecksumOfText(held);
    isSame = a == 0 || b == 0 || a == b;
    if (!isSame) OutputIndentedAndFormattedString(0, "0x%08x != 0x%08x", a, b);
  } else {
    isSame = AreSameTexts(wanted, held);
  }
  if (!isSame) {
    OutputIndentedAndFormattedString(0, "KeysHaveSameValueIfDefined found mismatch between '%s' and '%s'", wanted.c_str(),
                                     held.c_str());
  }
  return isSame;
}

bool HasEnoughToCompare(const Dictionary& source, const Dictionary& candidate) {
  if (source && candidate && source.Count() >= 2) return true;
  OutputIndentedAndFormattedString(
      0,
      "Source font (CFDictionaryRef 0x%08x) has %d element(s), so it must not have any Glyphsure data.",
      LowBits(source.Ref()), static_cast<int>(source.Count()));
  return false;
}

std::string LoweredBytes(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

// The third parameter has no effect; callers of old passed it.
bool DoValuesExistAndMatch(const String& a, const String& b, bool) {
  return a && b && LoweredBytes(a.View()) == LoweredBytes(b.View());
}

struct AcceptedKind {
  std::string_view xmpType;
  std::string_view kind;
};
constexpr AcceptedKind kAcceptedKinds[] = {
    {"open type", "opentype - ps"}, {"open type", "opentype - tt"}, {"truetype", "opentype - tt"},
    {"truetype", "truetype"},       {"type 1", "postscript"},       {"type 2", "postscript"},
    {"type 3", "postscript"},       {"postscript", "postscript"},
};

bool DoTypesMatch(const String& xmpType, const String& kind) {
  if (!xmpType || !kind) return false;
  const std::string type = platform::ToLowercase(xmpType.View());
  const std::string lowered = platform::ToLowercase(kind.View());
  for (const AcceptedKind& accepted : kAcceptedKinds) {
    if (type == accepted.xmpType && lowered == accepted.kind) return true;
  }
  return false;
}

// An XMP version is the name table's whole text; what stands behind the first ";" is no version.
bool DoVersionsMatch(const String& xmpVersion, const String& version) {
  if (!xmpVersion || !version) return false;
  const std::string_view text = xmpVersion.View().substr(0, xmpVersion.View().find(';'));
  return text.find(version.View()) != std::string_view::npos;
}

bool NoteXMP(bool isSame, std::string_view xmpKey, std::string_view key) {
  if (!isSame) {
    OutputIndentedAndFormattedString(0, "Found mismatch when trying to match XMP '%s' with Marquine '%s'",
                                     std::string(xmpKey).c_str(), std::string(key).c_str());
  }
  return isSame;
}

}  // namespace

bool IsPerfectMatch(const Dictionary& source, const Dictionary& candidate) {
  if (!HasEnoughToCompare(source, candidate)) return false;
  int compared = 0;
  bool isMatch = true;
  for (const std::string_view key : kPerfectMatchKeys) {
    if (!KeysHaveSameValueIfDefined(source, candidate, key, compared)) {
      OutputIndentedAndFormattedString(0, "Found mismatch on '%s'", std::string(key).c_str());
      isMatch = false;
      break;
    }
    // An equal identification checksum is proof; the keys behind it are not looked at.
    const bool isProof = key == kGS_Glyphsure_1_2_Key || key == kGS_ChecksumKey;
    if (isProof && ChecksumOf(source, key) != 0 && ChecksumOf(candidate, key) != 0) break;
  }
  if (compared <= kMostKeysWithoutMatch) {
    OutputIndentedAndFormattedString(0, "source document lacks enough keys for a match.");
    return false;
  }
  if (isMatch) OutputIndentedAndFormattedString(0, "Perfect match.");
  return isMatch;
}

bool IsXMPMatch(const Dictionary& source, const Dictionary& candidate) {
  if (!HasEnoughToCompare(source, candidate)) return false;
  const bool sameName = DoValuesExistAndMatch(source.GetString(kGS_PostScriptNameKey),
                                              candidate.GetString(kGS_PostScriptNameKey), false);
  if (!sameName) {
    OutputIndentedAndFormattedString(0, "Found mismatch on '%s'", std::string(kGS_PostScriptNameKey).c_str());
  }
  const bool sameFamily = NoteXMP(DoValuesExistAndMatch(source.GetString(kAdobeXMPFontData_FamilyKey),
                                                        candidate.GetString(kGS_FamilyKey), false),
                                  kAdobeXMPFontData_FamilyKey, kGS_FamilyKey);
  const bool sameType =
      NoteXMP(DoTypesMatch(source.GetString(kAdobeXMPFontData_TypeKey), candidate.GetString(kGS_KindKey)),
              kAdobeXMPFontData_TypeKey, kGS_KindKey);
  const bool sameVersion =
      NoteXMP(DoVersionsMatch(source.GetString(kAdobeXMPFontData_VersionStringKey), candidate.GetString(kGS_VersionKey)),
              kAdobeXMPFontData_VersionStringKey, kGS_VersionKey);
  if (!sameName || !sameFamily || !sameType || !sameVersion) return false;
  OutputIndentedAndFormattedString(0, "XMP match found.");
  return true;
}

bool AdobeXMPMatchesExactlyOnePossibleReplacement(const Dictionary& source, const Array& candidates,
                                                  Dictionary* outMatch) {
  int matches = 0;
  *outMatch = Dictionary();
  for (size_t i = 0; i < candidates.Count(); ++i) {
    const Dictionary candidate(candidates.At(i));
    if (!IsXMPMatch(source, candidate)) continue;
    *outMatch = ++matches == 1 ? candidate : Dictionary();
  }
  return matches == 1;
}

}  // namespace GlyphsureSupport
