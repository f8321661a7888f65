// Reads the font names of an open document from its file, because the host offers no list of them.
#include "GString.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"
#include "photoshop/PhotoshopFontUtils.h"

using namespace host_sdk;

namespace {

constexpr std::string_view kNameBegin = "/Name (";
constexpr size_t kByteOrderMarkSize = 2;

// Removes an escaping backslash at either position of a byte pair. A backslash at the second position shifts the pairs
// by one byte for the rest of the name. Do not make it a general unescape: the names in old documents depend on it.
std::string Unescape(std::string_view text) {
  std::string name;
  for (size_t at = 0; at + 1 < text.size(); at += 2) {
    const char a = text[at], c = text[at + 1];
    if (c == '\\') {
      name.push_back('\0');
    } else if (a == '\\') {
      name.push_back(c);
    } else {
      name.push_back(a);
      name.push_back(c);
    }
  }
  // A shift can leave half a unit at the end; drop it.
  if (name.size() % 2 != 0) name.pop_back();
  return name;
}

OffsetRanges FindNames(DocumentBytes& bytes) {
  OffsetRanges sets, names;
  EndFinder setEnd(bytes, "]"), nameEnd(bytes, ")");
  CommonFunctionality::FindPatternsBetweenOffsets(bytes, 0, bytes.Size(), "/FontSet [", setEnd, sets);
  for (size_t i = 0; i < sets.size(); i += 2) {
    CommonFunctionality::FindPatternsBetweenOffsets(bytes, sets[i], sets[i + 1], kNameBegin, nameEnd, names);
  }
  return names;
}

}  // namespace

void PhotoshopFontUtils::GetDocumentFonts(const std::string& path, std::vector<std::string>& fontNames,
                                          bool bOpeningNewDocument) {
  if (bOpeningNewDocument) replaceSubstitutes = 1;
  DocumentBytes bytes;
  if (path.empty() || bytes.Open(path)) return;
  const size_t before = fontNames.size();
  const OffsetRanges names = FindNames(bytes);
  NameBudget budget(bytes.Size());
  for (size_t i = 0; i < names.size(); i += 2) {
    const size_t start = names[i] + kNameBegin.size() + kByteOrderMarkSize, end = names[i + 1];
    if (!budget.Take(end - names[i])) break;
    const std::string name = GString::OSUtf16BigEndianToUtf8(Unescape(bytes.Copy(start, end)));
    OutputIndentedAndFormattedString(0, "In %s(), adding '%s'", __func__, name.c_str());
    fontNames.push_back(name);
  }
  if (!bytes.HasFailed()) return;
  fontNames.resize(before);
  OutputIndentedAndFormattedString(0, "Unable to read %016x bytes from '%s'", static_cast<unsigned>(bytes.Size()),
                                   path.c_str());
}

SPErr PhotoshopFontUtils::PlayreplaceSubstitutes() {
  if (replaceSubstitutes != 1) return kNoErr;
  for (const char* event : {"updateLayouts", "replaceSubstitutes"}) {
    FourCharCode code = 0;
    ScopedDescriptor result;
    SPErr error = sPSActionControl->StringIDToTypeID(event, &code);
    if (error == kNoErr) error = sPSActionControl->Play(code, nullptr, kSilentDialogMode, result.Out());
    if (error != kNoErr) return error;
  }
  return kNoErr;
}

SPErr PhotoshopFontUtils::GetPhotoshopFonts(std::vector<std::string>& names) {
  FourCharCode fontList = 0, postScriptNames = 0;
  ScopedDescriptor fonts;
  ScopedList list;
  HostValue object, entries;
  object.object = &fonts;
  entries.list = &list;
  SPErr error = sPSActionControl->StringIDToTypeID("fontList", &fontList);
  if (error == kNoErr) error = sPSActionControl->StringIDToTypeID("fontPostScriptName", &postScriptNames);
  if (error == kNoErr) error = PIUGetInfo(Code("capp"), fontList, object);
  if (error == kNoErr && fonts) error = PIUGetSingleItemFromDescriptor(fonts.Get(), postScriptNames, entries);
  uint32_t count = 0;
  if (error == kNoErr && list) error = sPSActionList->GetCount(list.Get(), &count);
  for (uint32_t i = 0; error == kNoErr && i < count; ++i) {
    uint32_t length = 0;
    error = sPSActionList->GetStringLength(list.Get(), i, &length);
    std::vector<char> buffer(length + 1);
    if (error == kNoErr) {
      error = sPSActionList->GetString(list.Get(), i, buffer.data(), static_cast<uint32_t>(buffer.size()));
    }
    if (error == kNoErr) names.emplace_back(buffer.data());
  }
  return error;
}
