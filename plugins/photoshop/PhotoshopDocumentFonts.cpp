// Reading the font names of an open document from its file: the host offers no list of them.
#include "GFile.h"
#include "GString.h"
#include "Readers/CommonFunctionality.h"
#include "Services/DiagnosticLog.h"
#include "photoshop/PhotoshopFontUtils.h"

using namespace host_sdk;

namespace {

constexpr std::string_view kFontSetBegin = "/FontSet [";
constexpr std::string_view kFontSetEnd = "]";
constexpr std::string_view kNameBegin = "/Name (";
constexpr std::string_view kNameEnd = ")";
constexpr size_t kByteOrderMarkSize = 2;

int replaceSubstitutes = 0;

// Takes an escaping backslash away in either place of a pair. A backslash in the second place shifts the pairs by one byte
// for the rest of the name; names of old documents were read so, and it is no general unescape.
std::string Unescape(const std::vector<char>& bytes, size_t begin, size_t end) {
  std::string name;
  if (end == 0) return name;
  for (size_t at = begin + kNameBegin.size() + kByteOrderMarkSize; at < end - 1; at += 2) {
    const char a = bytes[at], c = bytes[at + 1];
    if (c == '\\') {
      name.push_back('\0');
    } else if (a == '\\') {
      name.push_back(c);
    } else {
      name.push_back(a);
      name.push_back(c);
    }
  }
  return name;
}

bool ReadWholeFile(const std::string& path, std::vector<char>& bytes) {
  GFile file;
  unsigned long long size = 0;
  if (file.Open(path, GFile::eRead | GFile::eBinary) != 0 || file.GetFileSize(size) != 0) return false;
  if (file.Read(size, bytes) == 0) return true;
  OutputIndentedAndFormattedString(0, "Unable to read %016llx bytes from '%s'", size, path.c_str());
  return false;
}

}  // namespace

void PhotoshopFontUtils::GetDocumentFonts(const std::string& path, std::vector<std::string>& fontNames,
                                          bool bOpeningNewDocument) {
  if (bOpeningNewDocument) replaceSubstitutes = 1;
  std::vector<char> bytes;
  if (path.empty() || !ReadWholeFile(path, bytes)) return;
  OffsetRanges sets;
  CommonFunctionality::FindPatternsBetweenOffsets(bytes, 0, bytes.size(), kFontSetBegin, kFontSetEnd, sets);
  if (sets.empty() || sets.size() % 2 != 0) return;
  OffsetRanges names;
  for (size_t i = 0; i < sets.size(); i += 2) {
    CommonFunctionality::FindPatternsBetweenOffsets(bytes, sets[i], sets[i + 1], kNameBegin, kNameEnd, names);
  }
  for (size_t i = 0; i + 1 < names.size(); i += 2) {
    const std::string name = GString::OSUtf16BigEndianToUtf8(Unescape(bytes, names[i], names[i + 1]));
    OutputIndentedAndFormattedString(0, "In %s(), adding '%s'", __func__, name.c_str());
    fontNames.push_back(name);
  }
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
