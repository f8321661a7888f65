// Exact identity by the data of a slug, or by what an Adobe application wrote.
#include <cstdlib>

#include "GStringUtils.h"
#include "Identification/FontMatching.h"
#include "Identification/FontRecords.h"
#include "Services/DiagnosticLog.h"
#include "platform/TextEncoding.h"

namespace GlyphsureSupport {

using platform::Array;
using platform::Dictionary;
using platform::String;

namespace {

enum class Comparison { kText, kChecksum };

// The keys that are compared, in order. An equal, nonzero value of a proof ends the comparison as a match: later keys,
// such as the kerning checksum and the file size, are not compared.
struct IdentityKey {
  std::string_view key;
  Comparison comparison;
  bool isProof;
};

constexpr IdentityKey kIdentityKeys[] = {
    {kGS_KindKey, Comparison::kText, false},
    {kGS_FamilyKey, Comparison::kText, false},
    {kGS_PostScriptNameKey, Comparison::kText, false},
    {kGS_FoundryKey, Comparison::kText, false},
    {kGS_VersionKey, Comparison::kText, false},
    {kGS_PrinterFontKey, Comparison::kText, false},
    {kGS_Glyphsure_1_2_Key, Comparison::kChecksum, true},
    {kGS_ChecksumKey, Comparison::kChecksum, true},
    {kGS_KerningChecksumKey, Comparison::kChecksum, false},
    {kGS_OutlineFileSizeKey, Comparison::kText, false},
};
constexpr int kMostKeysWithoutMatch = 2;

// A 0 on either side means unknown.
bool AreSameChecksums(const std::string& wanted, const std::string& held) {
  const auto a = static_cast<uint32_t>(std::atoll(wanted.c_str()));
  const auto b = static_cast<uint32_t>(std::atoll(held.c_str()));
  if (a == 0 || b == 0 || a == b) return true;
  OutputIndentedAndFormattedString(0, "0x%08x != 0x%08x", a, b);
  return false;
}

// Increments `compared` if the source has the key, whatever the result is.
bool KeysHaveSameValueIfDefined(const Dictionary& source, const Dictionary& candidate, const IdentityKey& row,
                                int& compared) {
  if (!source.Contains(row.key)) return true;  // the document has no value
  ++compared;
  if (!candidate.Contains(row.key)) return false;
  const std::string wanted = platform::TrimWhitespace(source.GetString(row.key).View());
  const std::string held = platform::TrimWhitespace(candidate.GetString(row.key).View());
  if (wanted.empty() || held.empty()) return true;
  const bool isSame =
      row.comparison == Comparison::kChecksum ? AreSameChecksums(wanted, held) : AreEqualTexts(wanted, held);
  if (!isSame) {
    OutputIndentedAndFormattedString(0, "KeysHaveSameValueIfDefined found mismatch between '%s' and '%s'",
                                     wanted.c_str(), held.c_str());
  }
  return isSame;
}

bool HasEnoughToCompare(const Dictionary& source, const Dictionary& candidate) {
  if (source && candidate && source.Count() >= 2) return true;
  OutputIndentedAndFormattedString(
      0, "Source font (CFDictionaryRef 0x%08x) has %d element(s), so it must not have any Glyphsure data.",
      LowBits(source.Ref()), static_cast<int>(source.Count()));
  return false;
}

// Ignores the case of ASCII letters only. The third parameter has no effect; old callers pass it.
bool DoValuesExistAndMatch(const String& a, const String& b, bool) {
  return a && b && GStringUtils::OSToLowerCase(a.Text()) == GStringUtils::OSToLowerCase(b.Text());
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

// An XMP version is the whole text of the name table; the part after the first ";" is not compared.
bool DoVersionsMatch(const String& xmpVersion, const String& version) {
  if (!xmpVersion || !version) return false;
  const std::string_view text = xmpVersion.View().substr(0, xmpVersion.View().find(';'));
  return text.find(version.View()) != std::string_view::npos;
}

bool DoNamesMatch(const String& a, const String& b) { return DoValuesExistAndMatch(a, b, false); }

// The keys that are compared, and what a mismatch traces. All of them are compared, whatever the results.
struct XMPKey {
  std::string_view sourceKey;
  std::string_view candidateKey;
  bool (*compare)(const String& inSource, const String& inCandidate);
};

constexpr XMPKey kXMPKeys[] = {
    {kGS_PostScriptNameKey, kGS_PostScriptNameKey, DoNamesMatch},
    {kAdobeXMPFontData_FamilyKey, kGS_FamilyKey, DoNamesMatch},
    {kAdobeXMPFontData_TypeKey, kGS_KindKey, DoTypesMatch},
    {kAdobeXMPFontData_VersionStringKey, kGS_VersionKey, DoVersionsMatch},
};

void TraceMismatch(const XMPKey& row) {
  if (row.sourceKey == row.candidateKey) {
    OutputIndentedAndFormattedString(0, "Found mismatch on '%s'", row.sourceKey.data());
  } else {
    OutputIndentedAndFormattedString(0, "Found mismatch when trying to match XMP '%s' with Marquine '%s'",
                                     row.sourceKey.data(), row.candidateKey.data());
  }
}

}  // namespace

bool IsPerfectMatch(const Dictionary& source, const Dictionary& candidate) {
  if (!HasEnoughToCompare(source, candidate)) return false;
  int compared = 0;
  bool isMatch = true;
  for (const IdentityKey& row : kIdentityKeys) {
    if (!KeysHaveSameValueIfDefined(source, candidate, row, compared)) {
      OutputIndentedAndFormattedString(0, "Found mismatch on '%s'", row.key.data());
      isMatch = false;
      break;
    }
    if (row.isProof && KeyHasNonZeroValue(source, row.key) && KeyHasNonZeroValue(candidate, row.key)) break;
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
  bool isMatch = true;
  for (const XMPKey& row : kXMPKeys) {
    if (row.compare(source.GetString(row.sourceKey), candidate.GetString(row.candidateKey))) continue;
    TraceMismatch(row);
    isMatch = false;
  }
  if (isMatch) OutputIndentedAndFormattedString(0, "XMP match found.");
  return isMatch;
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
